#include "orderservice/net/NetConnection.h"

#include "orderservice/net/NetManager.h"

#include <poll.h>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace net {
namespace {

namespace asio = boost::asio;
using boost::system::error_code;

/// If there are more unsent bytes than this, nothing is read from the peer. Sent bytes are removed from the
/// buffer when there are this many of them.
constexpr std::size_t kCrowded = 256 * 1024;

/// How long an ending connection waits for a peer that accepts nothing, and how long for a slow peer.
constexpr std::chrono::seconds kEndLimit{5};
constexpr std::chrono::seconds kSlowEndLimit{60};

constexpr int kReadsPerTurn = 16;

/// Buffer size for replies that a connection keeps between reads, in bytes.
constexpr std::size_t kKept = 4096;

} // namespace

NetConnection::NetConnection(asio::ip::tcp::socket socket, NetManager& manager)
    : m_socket(std::move(socket)), m_manager(manager) {
    error_code ignored;
    const auto peer = m_socket.remote_endpoint(ignored);
    m_strPeerAddress = peer.address().to_string();
    m_nPeerPort = peer.port();
    m_socket.non_blocking(true, ignored);
    m_socket.set_option(asio::ip::tcp::no_delay(true), ignored);
}

NetConnection::~NetConnection() = default;

void NetConnection::send(const std::vector<unsigned char>& bytes, int count, bool /*wait*/) {
    if (!isOpen() || m_bFinishing) return;
    m_unsent.insert(m_unsent.end(), bytes.begin(), bytes.begin() + count);
    if (!m_bHandling) flush();
}

bool NetConnection::isCrowded() const {
    return m_unsent.size() - m_nSent > kCrowded;
}

void NetConnection::waitForData() {
    if (m_bReading || m_bHeld || !isOpen() || isCrowded()) return;
    m_bReading = true;
    // This reads directly instead of waiting for readiness first. If the peer is busy, its next line is
    // available already, and the extra wait would only cost time.
    m_socket.async_read_some(asio::buffer(m_first), [self = shared_from_this(), keep = m_manager.keepAlive()](
                                                        const error_code& error, std::size_t length) {
        self->m_bReading = false;
        self->onRead(error, length);
    });
}

void NetConnection::onRead(const error_code& error, std::size_t length) {
    if (!isOpen()) return;
    if (m_bFinishing) {
        m_bPeerEnded = m_bPeerEnded || error == asio::error::eof;
        if (!m_bWriting) discard();
        return;
    }
    const NetConnectionPtr self = shared_from_this();
    m_bHandling = true;
    m_manager.receive(self, error, length);
    m_bHandling = false;
    flush();
    if (!m_bFinishing) waitForData();
}

void NetConnection::hold() {
    m_bHeld = !m_bFinishing;
}

void NetConnection::release() {
    if (!m_bHeld) return;
    m_bHeld = false;
    const NetConnectionPtr self = shared_from_this();
    m_bHandling = true;
    m_manager.resume(self);
    m_bHandling = false;
    flush();
    if (!m_bFinishing) waitForData();
}

bool NetConnection::isPeerGone() {
    if (!isOpen()) return true;
    pollfd state{m_socket.native_handle(), POLLRDHUP, 0};
    return ::poll(&state, 1, 0) > 0;
}

/// Passes as many bytes to the system as it accepts.
void NetConnection::flush() {
    if (m_bWriting) return;
    error_code error;
    bool hasMoved = false;
    while (hasUnsent() && isOpen() && !error) {
        const std::size_t count =
            m_socket.write_some(asio::buffer(m_unsent.data() + m_nSent, m_unsent.size() - m_nSent), error);
        m_nSent += count;
        hasMoved = hasMoved || count > 0;
        if (count > 0) m_manager.onDataSend(static_cast<int>(count), shared_from_this());
    }
    if (hasMoved && m_bFinishing) limitTheEnd();
    if (error == asio::error::would_block) {
        dropSent();
        return waitForRoom();
    }
    if (error) return m_manager.fail(shared_from_this(), error.value());
    m_nSent = 0;
    m_unsent.clear();
    // An idle connection must not keep a large buffer.
    if (m_unsent.capacity() > kKept) std::vector<unsigned char>().swap(m_unsent);
    if (m_bFinishing) drain();
}

/// Removes sent bytes from the buffer. Otherwise the buffer would grow without limit if the peer never
/// accepts all of it.
void NetConnection::dropSent() {
    if (m_nSent < kCrowded) return;
    m_unsent.erase(m_unsent.begin(), m_unsent.begin() + static_cast<std::ptrdiff_t>(m_nSent));
    m_nSent = 0;
}

void NetConnection::waitForRoom() {
    m_bWriting = true;
    m_socket.async_wait(asio::ip::tcp::socket::wait_write,
                        [self = shared_from_this(), keep = m_manager.keepAlive()](const error_code& error) {
                            self->m_bWriting = false;
                            if (error) return;
                            self->flush();
                            if (!self->m_bFinishing) self->waitForData();
                        });
}

/// Ends the connection after the buffered bytes are sent.
void NetConnection::finish() {
    if (m_bFinishing || !isOpen()) return;
    m_bFinishing = true;
    m_bHeld = false;
    m_lastEnd = std::chrono::steady_clock::now() + kSlowEndLimit;
    m_endLimit = std::make_unique<asio::steady_timer>(m_socket.get_executor());
    limitTheEnd();
    flush();
    m_manager.boundEnding(shared_from_this());
}

void NetConnection::drain() {
    if (!isOpen()) return;
    error_code ignored;
    m_socket.shutdown(asio::ip::tcp::socket::shutdown_send, ignored);
    discard();
}

/// Reads and discards the data that the peer still sends.
void NetConnection::discard() {
    error_code error;
    for (int i = 0; i < kReadsPerTurn && !m_bPeerEnded && !error; ++i)
        m_manager.readInto(*this, 0, error);
    if (!m_bPeerEnded && (!error || error == asio::error::would_block)) return waitForData();
    close();
}

/// Restarts the time limit for the peer. The limit never exceeds m_lastEnd.
void NetConnection::limitTheEnd() {
    m_endLimit->expires_at(std::min(std::chrono::steady_clock::now() + kEndLimit, m_lastEnd));
    m_endLimit->async_wait([self = shared_from_this()](const error_code& error) {
        // If the timer has expired already, setting a new time does not cancel this callback.
        const bool isOver = self->m_endLimit->expiry() <= std::chrono::steady_clock::now();
        if (!error && isOver) self->close();
    });
}

void NetConnection::close() {
    error_code ignored;
    m_socket.shutdown(asio::ip::tcp::socket::shutdown_both, ignored);
    m_socket.close(ignored);
    if (m_endLimit) m_endLimit->cancel(ignored);
}

} // namespace net
