#pragma once

#include "net/NetConnection.h"

#include <boost/asio/io_service.hpp>

#include <boost/weak_ptr.hpp>

#include <cstddef>
#include <list>
#include <vector>

namespace net {

/// Owns the way of connections through their life and tells what happens to them. All call-backs come on the
/// thread that runs the io_service, one at a time; one that throws costs its connection and nothing else.
class NetManager {
public:
    explicit NetManager(boost::asio::io_service& io);
    virtual ~NetManager();
    NetManager(const NetManager&) = delete;
    NetManager& operator=(const NetManager&) = delete;

    /// A connection is there; nothing has been read from it.
    virtual void onConnected(NetConnectionPtr conn) = 0;
    /// The connection has ended by the peer's hand or an error; `code` is the system's error number, 0 for an
    /// orderly end. Not called for connections that removeConnection closed.
    virtual void onDisconnected(int code, NetConnectionPtr conn) = 0;
    /// `length` new bytes stand at the front of `data`, which is the manager's and valid during the call.
    virtual void onDataReceived(const std::vector<unsigned char>& data, int length,
                                NetConnectionPtr conn) = 0;
    /// A connection that was held goes on. Comes before anything more is read from it, and also for one whose
    /// peer has gone meanwhile.
    virtual void onReleased(NetConnectionPtr conn);
    /// A whole package of a protocol that has such; plain streams never call it.
    virtual void onPackageReceived(const std::vector<unsigned char>& package, NetConnectionPtr conn);
    /// So many bytes were handed to the system.
    virtual void onDataSend(int count, NetConnectionPtr conn);
    /// Makes the connection of an accepted socket.
    virtual NetConnectionPtr createConnection(boost::asio::ip::tcp::socket socket);

    /// Sends what is left to send, closes the connection and forgets it.
    void removeConnection(const NetConnectionPtr& conn);

protected:
    boost::asio::io_service& ioService() { return m_io; }

    /// Begins the life of a connection: onConnected, then its data.
    void open(const NetConnectionPtr& conn);

    /// Bounds how many connections may wait for their peers to close after removeConnection. Beyond that the
    /// oldest one whose last bytes have left is cut off. 0, the default, is no bound.
    void limitEnding(std::size_t count) { m_nMaxEnding = count; }

private:
    friend class NetConnection;

    /// Keeps the manager alive while one of its connections waits for something.
    virtual boost::shared_ptr<void> keepAlive() = 0;
    std::size_t readInto(NetConnection& conn, std::size_t begin, boost::system::error_code& error);
    void receive(const NetConnectionPtr& conn, boost::system::error_code error, std::size_t length);
    void resume(const NetConnectionPtr& conn);
    void fail(const NetConnectionPtr& conn, int code);
    void boundEnding(const NetConnectionPtr& conn);

    boost::asio::io_service& m_io;
    std::size_t m_nMaxEnding = 0;
    std::list<boost::weak_ptr<NetConnection>> m_ending; ///< the oldest first; empty without a bound
    std::vector<unsigned char> m_received; ///< shared by all connections: they are served one at a time
};

} // namespace net
