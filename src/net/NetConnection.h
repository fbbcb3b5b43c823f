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

/// One TCP connection of a manager. Lives as long as somebody holds it; the socket is closed when the manager
/// forgets the connection or the peer goes. All operations are for the manager's io_service thread.
///
/// What is sent goes out at once, or, while the manager handles data of this connection, in one piece
/// behind that. Bytes that the peer does not take yet wait here, and while too many wait nothing is read from
/// the peer: a slow reader holds up itself only.
///
/// A connection that is to end first sends what waits, then tells the peer that nothing more comes, and takes
/// what the peer still sends without a look: a socket that closes over unread bytes would take back replies
/// that are on their way. A peer that takes nothing is cut off after a few seconds, a slow
/// one after a minute.
class NetConnection : public boost::enable_shared_from_this<NetConnection> {
public:
    /// Takes an accepted socket. The manager outlives the connection's last call-back.
    NetConnection(boost::asio::ip::tcp::socket socket, NetManager& manager);
    virtual ~NetConnection();

    /// Sends the first `count` bytes. `wait` is true at all callers of this system and means nothing here. A
    /// connection that is broken drops the bytes; its end is told by onDisconnected.
    virtual void send(const std::vector<unsigned char>& bytes, int count, bool wait);

    /// Sends now what has gathered while data of this connection is handled.
    void flush();

    /// Reads nothing more from the peer until release is called: what it sends waits in the system's buffers,
    /// and then at the peer. Replies still go out. Only while the manager handles data of this connection.
    void hold();
    /// Ends a hold: calls onReleased of the manager and then reads on, unless the connection was held again.
    void release();
    bool isHeld() const { return m_bHeld; }

    /// Whether the peer has closed or reset the connection, as far as the system knows. Reads nothing, so it
    /// can be asked of a connection that is held.
    bool isPeerGone();

    /// The peer's address as text and its port, as they were when the connection was made.
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
    std::array<unsigned char, 1024> m_first; ///< the front of what is read; the rest is the manager's
    std::vector<unsigned char> m_unsent;     ///< bytes to send, gone out up to m_nSent
    std::size_t m_nSent = 0;
    bool m_bHandling = false;  ///< data is being handled: what is sent waits for the end of that
    bool m_bHeld = false;      ///< nothing is read until release
    bool m_bReading = false;   ///< waits for data of the peer
    bool m_bWriting = false;   ///< waits for the peer to make room
    bool m_bFinishing = false; ///< to be closed: sends what waits and takes nothing more
    bool m_bPeerEnded = false; ///< the peer sends nothing more
    std::unique_ptr<boost::asio::steady_timer> m_endLimit; ///< made for the end alone
    std::chrono::steady_clock::time_point m_lastEnd;       ///< what the limit is never moved beyond
};

using NetConnectionPtr = boost::shared_ptr<NetConnection>;

} // namespace net
