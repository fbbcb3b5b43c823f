#pragma once

#include "orderservice/net/NetManager.h"

#include <boost/asio/steady_timer.hpp>
#include <boost/enable_shared_from_this.hpp>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <string>

namespace net {

/// Listens on one address and accepts connections. It must be owned by a shared pointer.
class NetServer : public NetManager, public boost::enable_shared_from_this<NetServer> {
public:
    /// `ip` is a numeric address. The two flags select framings that are not supported here; both must be
    /// false.
    NetServer(boost::asio::io_service& io, std::string ip, unsigned short port, bool isFramed,
              bool isCompressed);
    ~NetServer() override;

    /// Starts to listen. The flag is ignored; all callers pass false. Throws boost::system::system_error if
    /// the address is not valid or is in use. Returns 0.
    virtual int start(bool reuse);
    /// Stops listening at once, so the address is free again. Existing connections stay open until the
    /// io_service ends. May be called from any thread and more than once. Returns 0.
    virtual int stop();
    /// A connection was accepted.
    virtual void onAccept(NetConnectionPtr conn);

    /// The port of the listener. If port 0 was requested, it is the port that the system chose.
    unsigned short port() const;

protected:
    /// Blocks the calling thread until stop is called.
    void waitForStop();
    bool isStopped() const { return m_bStopped; }

private:
    boost::shared_ptr<void> keepAlive() override { return shared_from_this(); }
    void waitForClient();
    void acceptSome();
    bool acceptOne();
    void pauseAccepting();

    const std::string m_strIp;
    const unsigned short m_nPort;

    mutable std::mutex m_mutex; ///< guards the members below, because stop is called on other threads
    std::condition_variable m_stopSignal;
    boost::asio::ip::tcp::acceptor m_acceptor;
    std::atomic<bool> m_bStopped{false}; ///< is also read without the mutex

    boost::asio::steady_timer m_pause; ///< runs while the process has no free descriptors
};

} // namespace net
