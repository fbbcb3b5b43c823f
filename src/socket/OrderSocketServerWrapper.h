#pragma once

#include "socket/OrderSocketServer.h"

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

    /// The body of the listener's thread; returns after stop. Throws where the event loop fails.
    void run();

    /// Closes the listener at once and lets run return; its connections close with the wrapper. Any thread
    /// but the listener's own; does not wait for that thread.
    void stop();

    /// Null after stop.
    const boost::shared_ptr<COrderSocketServer>& server() const { return m_pServer; }

private:
    boost::asio::io_service m_ioService;
    boost::shared_ptr<COrderSocketServer> m_pServer; ///< declared behind the loop that it lives on
};

} // namespace TC
