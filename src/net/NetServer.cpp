#include "orderservice/net/NetServer.h"

#include <boost/asio/ip/address.hpp>

#include <chrono>
#include <utility>

namespace net {
namespace {

namespace asio = boost::asio;
using asio::ip::tcp;
using boost::system::error_code;

/// How long accepting pauses if the process has no descriptor or memory for another connection.
constexpr std::chrono::milliseconds kAcceptPause{100};

constexpr int kAcceptsPerTurn = 16;

} // namespace

NetServer::NetServer(asio::io_service& io, std::string ip, unsigned short port, bool /*isFramed*/,
                     bool /*isCompressed*/)
    : NetManager(io), m_strIp(std::move(ip)), m_nPort(port), m_acceptor(io), m_pause(io) {}

NetServer::~NetServer() = default;

int NetServer::start(bool /*reuse*/) {
    const tcp::endpoint endpoint(asio::ip::make_address(m_strIp), m_nPort);
    const std::lock_guard lock(m_mutex);
    m_acceptor.open(endpoint.protocol());
    // Without this option, connections of an earlier listener that are still closing would block the address.
    m_acceptor.set_option(tcp::acceptor::reuse_address(true));
    m_acceptor.bind(endpoint);
    m_acceptor.listen(tcp::acceptor::max_listen_connections);
    m_acceptor.non_blocking(true);
    waitForClient();
    return 0;
}

int NetServer::stop() {
    const std::lock_guard lock(m_mutex);
    m_bStopped = true;
    error_code ignored;
    m_acceptor.close(ignored);
    m_stopSignal.notify_all();
    return 0;
}

void NetServer::onAccept(NetConnectionPtr conn) {
    open(conn);
}

unsigned short NetServer::port() const {
    const std::lock_guard lock(m_mutex);
    error_code ignored;
    return m_acceptor.local_endpoint(ignored).port();
}

void NetServer::waitForStop() {
    std::unique_lock lock(m_mutex);
    m_stopSignal.wait(lock, [this] { return isStopped(); });
}

/// The caller holds m_mutex.
void NetServer::waitForClient() {
    if (m_bStopped) return;
    m_acceptor.async_wait(tcp::acceptor::wait_read, [self = shared_from_this()](const error_code& error) {
        if (!error) self->acceptSome();
    });
}

/// Accepts a limited number of the waiting connections, so that many new connections do not delay the
/// existing ones.
void NetServer::acceptSome() {
    for (int i = 0; i < kAcceptsPerTurn; ++i) {
        if (!acceptOne()) return;
    }
    const std::lock_guard lock(m_mutex);
    waitForClient();
}

/// Accepts one connection. Returns false if accepting must stop for now: no connection is waiting, the server
/// is stopped, or accepting is paused. The next wait has been started, unless the server is stopped.
bool NetServer::acceptOne() {
    tcp::socket socket(ioService());
    error_code error;
    {
        const std::lock_guard lock(m_mutex);
        if (m_bStopped) return false;
        m_acceptor.accept(socket, error);
        if (error == asio::error::would_block) waitForClient();
    }
    if (error == asio::error::would_block) return false;
    const bool isGone = error == asio::error::connection_aborted || error == asio::error::interrupted;
    if (error && !isGone) pauseAccepting();
    if (error) return isGone;
    try {
        onAccept(createConnection(std::move(socket)));
    } catch (...) {
        // Out of memory for this connection. The next one may succeed.
    }
    return true;
}

void NetServer::pauseAccepting() {
    m_pause.expires_after(kAcceptPause);
    m_pause.async_wait([self = shared_from_this()](const error_code& error) {
        if (!error) self->acceptSome();
    });
}

} // namespace net
