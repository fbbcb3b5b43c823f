#pragma once

#include <boost/asio/io_service.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>

#include <array>
#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace net {

class NetManager;

/// One TCP connection of a manager. It is owned by shared pointers. The socket is closed when the manager
/// removes the connection or the peer ends it. All operations must be called on the manager's io_service
/// thread.
///
/// Data is sent at once. While the manager handles data of this connection, replies are collected and sent
/// together afterwards. Bytes that the peer does not accept yet are buffered here. If too many bytes are
/// buffered, nothing is read from the peer, so a slow reader delays only itself.
///
/// When a connection is ended, its buffered bytes are sent first. Then its sending side is shut down. Further
/// data from the peer is read and discarded, because closing a socket with unread bytes would discard replies
/// that are still on their way. If the peer accepts nothing, the connection is closed after a few seconds. If
/// the peer is slow, it is closed after a minute.
class NetConnection : public boost::enable_shared_from_this<NetConnection> {
public:
    /// Takes an accepted socket. The manager must outlive the connection's last callback.
    NetConnection(boost::asio::ip::tcp::socket socket, NetManager& manager);
    virtual ~NetConnection();

    /// Sends the first `count` bytes. `wait` is ignored; all callers pass true. If the connection is broken,
    /// the bytes are discarded and onDisconnected reports the end.
    virtual void send(const std::vector<unsigned char>& bytes, int count, bool wait);

    /// Sends at once the replies that were collected while data of this connection is handled.
    void flush();

    /// Stops reading from the peer until release is called. Meanwhile the peer's data waits in the system's
    /// buffers, and when they are full, at the peer. Replies are still sent. Call it only while the manager
    /// handles data of this connection.
    void hold();
    /// Ends a hold. Calls onReleased of the manager and then continues to read, unless the connection was
    /// held again.
    void release();
    bool isHeld() const { return m_bHeld; }

    /// Whether the system knows that the peer has closed or reset the connection. It reads nothing, so it can
    /// be called for a held connection.
    bool isPeerGone();

    /// The peer's address as text and its port, stored when the connection was accepted.
    const std::string& peerAddress() const { return m_strPeerAddress; }
    int peerPort() const { return m_nPeerPort; }

private:
    friend class NetManager;

    void waitForData();
    void onRead(const boost::system::error_code& error, std::size_t length);
    void dropSent();
    void waitForRoom();
    void finish();
    void drain();
    void discard();
    void limitTheEnd();
    void close();
    bool isOpen() const { return m_socket.is_open(); }
    bool hasUnsent() const { return m_nSent < m_unsent.size(); }
    bool isCrowded() const;

    boost::asio::ip::tcp::socket m_socket;
    NetManager& m_manager;
    std::string m_strPeerAddress;
    int m_nPeerPort = 0;
    /// the first bytes of a read; the rest goes to the manager's buffer
    std::array<unsigned char, 1024> m_first;
    std::vector<unsigned char> m_unsent; ///< bytes to send; the first m_nSent are sent
    std::size_t m_nSent = 0;
    bool m_bHandling = false;  ///< data is being handled; replies are collected until it is done
    bool m_bHeld = false;      ///< nothing is read until release
    bool m_bReading = false;   ///< waits for data of the peer
    bool m_bWriting = false;   ///< waits until the system accepts more bytes
    bool m_bFinishing = false; ///< is ending: sends the buffered bytes and accepts no new ones
    bool m_bPeerEnded = false; ///< the peer sends nothing more
    std::unique_ptr<boost::asio::steady_timer> m_endLimit; ///< created when the connection begins to end
    std::chrono::steady_clock::time_point m_lastEnd;       ///< latest time for the limit
};

using NetConnectionPtr = boost::shared_ptr<NetConnection>;

} // namespace net
