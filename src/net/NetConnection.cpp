#include "net/NetConnection.h"

#include "net/NetManager.h"

#include <utility>

namespace net {
namespace {

namespace asio = boost::asio;
using boost::system::error_code;

/// So many unsent bytes and nothing more is read from the peer until it has taken most of them.
constexpr std::size_t kCrowded = 256 * 1024;

/// Room for replies that a connection keeps between reads.
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
    if (m_bReading || m_bFinishing || !isOpen() || isCrowded()) return;
    m_bReading = true;
    // Reading rather than waiting to read: a busy peer's next line is there already and costs no look at
    // what is ready.
    m_socket.async_read_some(asio::buffer(m_first), [self = shared_from_this(), keep = m_manager.keepAlive()](
                                                        const error_code& error, std::size_t length) {
        self->m_bReading = false;
        self->onRead(error, length);
    });
}

void NetConnection::onRead(const error_code& error, std::size_t length) {
    if (!isOpen() || m_bFinishing) return;
    const NetConnectionPtr self = shared_from_this();
    m_bHandling = true;
    m_manager.receive(self, error, length);
    m_bHandling = false;
    flush();
    waitForData();
}

/// Hands the system as much as it takes.
void NetConnection::flush() {
    if (m_bWriting) return;
    error_code error;
    while (hasUnsent() && isOpen() && !error) {
        const std::size_t count =
            m_socket.write_some(asio::buffer(m_unsent.data() + m_nSent, m_unsent.size() - m_nSent), error);
        m_nSent += count;
        if (count > 0) m_manager.onDataSend(static_cast<int>(count), shared_from_this());
    }
    if (error == asio::error::would_block) return waitForRoom();
    if (error) return m_manager.fail(shared_from_this(), error.value());
    m_nSent = 0;
    m_unsent.clear();
    // An idle connection keeps little.
    if (m_unsent.capacity() > kKept) std::vector<unsigned char>().swap(m_unsent);
    if (m_bFinishing) close();
}

void NetConnection::waitForRoom() {
    m_bWriting = true;
    m_socket.async_wait(asio::ip::tcp::socket::wait_write,
                        [self = shared_from_this(), keep = m_manager.keepAlive()](const error_code& error) {
                            self->m_bWriting = false;
                            if (error) return;
                            self->flush();
                            self->waitForData();
                        });
}

/// Closes the connection behind what is left to send.
void NetConnection::finish() {
    m_bFinishing = true;
    flush();
}

void NetConnection::close() {
    error_code ignored;
    m_socket.shutdown(asio::ip::tcp::socket::shutdown_both, ignored);
    m_socket.close(ignored);
}

} // namespace net
