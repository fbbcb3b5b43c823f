#pragma once

#include "net/NetManager.h"

#include <boost/asio/steady_timer.hpp>
#include <boost/enable_shared_from_this.hpp>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <string>

namespace net {

/// Listens on one address and takes connections. Held by shared pointer.
class NetServer : public NetManager, public boost::enable_shared_from_this<NetServer> {
public:
    /// `ip` is a numeric address. The two flags of the client's own servers choose framings that are not
    /// served here; both are false.
    NetServer(boost::asio::io_service& io, std::string ip, unsigned short port, bool isFramed,
              bool isCompressed);
    ~NetServer() override;

    /// Listens from now on. The flag is false at all callers. Throws boost::system::system_error where the
    /// address is none or is taken. Gives 0.
    virtual int start(bool reuse);
    /// Stops listening at once, so that the address is free again; connections stay until the io_service
    /// ends. Any thread, any number of times. Gives 0.
    virtual int stop();
    /// A connection was taken.
    virtual void onAccept(NetConnectionPtr conn);

    /// The port that is listened on; where 0 was asked for, the one that the system chose.
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

    mutable std::mutex m_mutex; ///< guards what stands below: stop comes from other threads
    std::condition_variable m_stopSignal;
    boost::asio::ip::tcp::acceptor m_acceptor;
    std::atomic<bool> m_bStopped{false}; ///< read without the mutex too

    boost::asio::steady_timer m_pause; ///< runs while the process has no descriptors left
};

} // namespace net
