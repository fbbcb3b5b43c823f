#pragma once

#include "orderservice/socket/OrderSocketServer.h"

#include <boost/asio/io_service.hpp>
#include <boost/shared_ptr.hpp>

#include <memory>
#include <string>

namespace TC {

/// One listener: its server and the event loop that serves it.
class COrderSocketServerWrapper {
public:
    COrderSocketServerWrapper(std::string ip, unsigned short port, std::string user, std::string pass,
                              IOrderGate& gate, IStrategyRegistry& registry, QString source,
                              std::shared_ptr<COrderCredit> credit = nullptr);
    ~COrderSocketServerWrapper();
    COrderSocketServerWrapper(const COrderSocketServerWrapper&) = delete;
    COrderSocketServerWrapper& operator=(const COrderSocketServerWrapper&) = delete;

    /// The body of the listener's thread; returns after stop. Throws if the event loop fails.
    void run();

    /// Closes the listener at once and makes run return. The connections are closed when the wrapper is
    /// destroyed. May be called on any thread except the listener's own. Does not wait for that thread.
    void stop();

    /// Null after stop.
    const boost::shared_ptr<COrderSocketServer>& server() const { return m_pServer; }

private:
    boost::asio::io_service m_ioService;
    boost::shared_ptr<COrderSocketServer> m_pServer; ///< after the loop, so that it is destroyed first
};

} // namespace TC
