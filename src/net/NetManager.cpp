#include "orderservice/net/NetManager.h"

#include <boost/asio/buffer.hpp>
#include <boost/asio/error.hpp>
#include <boost/make_shared.hpp>

#include <algorithm>

namespace net {
namespace {

using boost::system::error_code;

constexpr std::size_t kReceiveSize = 64 * 1024;

} // namespace

NetManager::NetManager(boost::asio::io_service& io) : m_io(io), m_received(kReceiveSize) {}

NetManager::~NetManager() = default;

void NetManager::onReleased(NetConnectionPtr) {}

void NetManager::onPackageReceived(const std::vector<unsigned char>&, NetConnectionPtr) {}

void NetManager::onDataSend(int, NetConnectionPtr) {}

NetConnectionPtr NetManager::createConnection(boost::asio::ip::tcp::socket socket) {
    return boost::make_shared<NetConnection>(std::move(socket), *this);
}

void NetManager::removeConnection(const NetConnectionPtr& conn) {
    conn->finish();
}

void NetManager::open(const NetConnectionPtr& conn) {
    try {
        onConnected(conn);
        conn->waitForData();
    } catch (...) {
        fail(conn, boost::system::errc::not_enough_memory);
    }
}

/// Reads into the shared buffer at `begin` without waiting. Sets m_bPeerEnded at the end of the stream.
std::size_t NetManager::readInto(NetConnection& conn, std::size_t begin, error_code& error) {
    const auto room = boost::asio::buffer(m_received) + begin;
    const std::size_t length = conn.m_socket.read_some(room, error);
    if (error == boost::asio::error::eof) conn.m_bPeerEnded = true;
    return length;
}

/// Passes on the bytes that were read, together with further bytes that are available. The end of the stream
/// and errors end the connection. If the peer has closed only its own side, the buffered replies are still
/// sent.
void NetManager::receive(const NetConnectionPtr& conn, error_code error, std::size_t length) {
    std::copy_n(conn->m_first.begin(), length, m_received.begin());
    if (length == conn->m_first.size()) length += readInto(*conn, length, error);
    if (error == boost::asio::error::would_block || error == boost::asio::error::interrupted) error.clear();
    conn->m_bPeerEnded = conn->m_bPeerEnded || error == boost::asio::error::eof;
    try {
        if (length > 0) onDataReceived(m_received, static_cast<int>(length), conn);
        if (!error || conn->m_bFinishing) return;
        // The end of the stream is detected again when the connection is released.
        if (conn->m_bPeerEnded && conn->isHeld()) return;
        if (!conn->m_bPeerEnded) return fail(conn, error.value());
        onDisconnected(0, conn);
    } catch (...) {
        // The replies up to this point are still sent.
        onDisconnected(boost::system::errc::not_enough_memory, conn);
    }
    conn->finish();
}

void NetManager::resume(const NetConnectionPtr& conn) {
    try {
        onReleased(conn);
    } catch (...) {
        onDisconnected(boost::system::errc::not_enough_memory, conn);
        conn->finish();
    }
}

/// Without this limit, peers that never close their side would keep many sockets open. Connections with
/// unsent replies are closed last.
void NetManager::boundEnding(const NetConnectionPtr& conn) {
    if (m_nMaxEnding == 0) return;
    const auto ofWeak = [](const boost::weak_ptr<NetConnection>& weak) { return weak.lock(); };
    m_ending.remove_if([&](const auto& weak) {
        const NetConnectionPtr other = ofWeak(weak);
        return !other || !other->isOpen();
    });
    if (!conn->isOpen()) return;
    m_ending.push_back(conn);
    if (m_ending.size() <= m_nMaxEnding) return;
    const auto sent = std::find_if(m_ending.begin(), m_ending.end(),
                                   [&](const auto& weak) { return !ofWeak(weak)->hasUnsent(); });
    const auto victim = sent != m_ending.end() ? sent : m_ending.begin();
    ofWeak(*victim)->close();
    m_ending.erase(victim);
}

void NetManager::fail(const NetConnectionPtr& conn, int code) {
    if (!conn->isOpen()) return;
    const bool isKnown = !conn->m_bFinishing;
    conn->close();
    // An ending connection was removed, or its end was reported already. So its end is not reported here.
    if (isKnown) onDisconnected(code, conn);
}

} // namespace net
