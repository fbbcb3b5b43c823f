#include "orderservice/socket/OrderSocketServerWrapper.h"

#include <boost/make_shared.hpp>
#include <boost/system/system_error.hpp>

#include <utility>

namespace TC {

COrderSocketServerWrapper::COrderSocketServerWrapper(std::string ip, unsigned short port, std::string user,
                                                     std::string pass, IOrderGate& gate,
                                                     IStrategyRegistry& registry, QString source,
                                                     std::shared_ptr<COrderCredit> credit)
    : m_ioService(1),
      m_pServer(boost::make_shared<COrderSocketServer>(m_ioService, std::move(ip), port, std::move(user),
                                                       std::move(pass), gate, registry, std::move(source),
                                                       std::move(credit))) {}

COrderSocketServerWrapper::~COrderSocketServerWrapper() = default;

void COrderSocketServerWrapper::run() {
    boost::system::error_code error;
    m_ioService.run(error);
    if (error) throw boost::system::system_error(error);
}

void COrderSocketServerWrapper::stop() {
    m_pServer->stop();
    m_ioService.stop();
    m_pServer.reset();
}

} // namespace TC
