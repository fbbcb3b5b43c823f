#include "net/NetServer.h"

#include <boost/asio/ip/address.hpp>

#include <chrono>
#include <utility>

namespace net {
namespace {

namespace asio = boost::asio;
using asio::ip::tcp;
using boost::system::error_code;

/// How long taking connections rests when the process has no descriptors or memory for another one.
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
    // Connections of an earlier listener that are still closing do not hold the address.
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

/// The mutex is held.
void NetServer::waitForClient() {
    if (m_bStopped) return;
    m_acceptor.async_wait(tcp::acceptor::wait_read, [self = shared_from_this()](const error_code& error) {
        if (!error) self->acceptSome();
    });
}

/// Takes some of the connections that wait, so that a crowd at the door leaves the others their turn.
void NetServer::acceptSome() {
    for (int i = 0; i < kAcceptsPerTurn; ++i) {
        if (!acceptOne()) return;
    }
    const std::lock_guard lock(m_mutex);
    waitForClient();
}

/// Takes one connection; false where none waits, and then the next wait is on its way.
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
        // No memory for this one; the next may come.
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
