#pragma once

#include "orderservice/net/NetConnection.h"

#include <boost/asio/io_service.hpp>

#include <boost/weak_ptr.hpp>

#include <cstddef>
#include <list>
#include <vector>

namespace net {

/// Controls the life cycle of connections and reports their events. All callbacks are called on the thread
/// that runs the io_service, one at a time. If a callback throws, only its connection is ended.
class NetManager {
public:
    explicit NetManager(boost::asio::io_service& io);
    virtual ~NetManager();
    NetManager(const NetManager&) = delete;
    NetManager& operator=(const NetManager&) = delete;

    /// A connection was made. Nothing has been read from it yet.
    virtual void onConnected(NetConnectionPtr conn) = 0;
    /// The peer closed the connection, or an error ended it. `code` is the system's error number, 0 for an
    /// orderly end. Not called for connections that removeConnection closed.
    virtual void onDisconnected(int code, NetConnectionPtr conn) = 0;
    /// The first `length` bytes of `data` are new. The manager owns `data`; it is valid during the call only.
    virtual void onDataReceived(const std::vector<unsigned char>& data, int length,
                                NetConnectionPtr conn) = 0;
    /// A held connection was released. Called before anything more is read from it. It is also called if the
    /// peer has gone meanwhile.
    virtual void onReleased(NetConnectionPtr conn);
    /// A whole package was received. Plain streams have no packages and never call it.
    virtual void onPackageReceived(const std::vector<unsigned char>& package, NetConnectionPtr conn);
    /// `count` bytes were passed to the system.
    virtual void onDataSend(int count, NetConnectionPtr conn);
    /// Creates the connection for an accepted socket.
    virtual NetConnectionPtr createConnection(boost::asio::ip::tcp::socket socket);

    /// Sends the buffered bytes, closes the connection and releases it. Does not wait.
    void removeConnection(const NetConnectionPtr& conn);

protected:
    boost::asio::io_service& ioService() { return m_io; }

    /// Starts a connection: calls onConnected, then begins to read.
    void open(const NetConnectionPtr& conn);

    /// Limits how many connections may wait for their peers to close after removeConnection. If there are
    /// more, one is closed: the oldest connection that has sent all its bytes, or the oldest if none has. 0,
    /// the default, means no limit.
    void limitEnding(std::size_t count) { m_nMaxEnding = count; }

private:
    friend class NetConnection;

    /// Returns a pointer that keeps the manager alive while one of its connections has a pending operation.
    virtual boost::shared_ptr<void> keepAlive() = 0;
    std::size_t readInto(NetConnection& conn, std::size_t begin, boost::system::error_code& error);
    void receive(const NetConnectionPtr& conn, boost::system::error_code error, std::size_t length);
    void resume(const NetConnectionPtr& conn);
    void fail(const NetConnectionPtr& conn, int code);
    void boundEnding(const NetConnectionPtr& conn);

    boost::asio::io_service& m_io;
    std::size_t m_nMaxEnding = 0;
    std::list<boost::weak_ptr<NetConnection>> m_ending; ///< the oldest first; empty if there is no limit
    /// shared by all connections, because they are served one at a time
    std::vector<unsigned char> m_received;
};

} // namespace net
