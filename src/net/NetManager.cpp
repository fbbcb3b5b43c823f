#include "net/NetManager.h"

#include <boost/asio/buffer.hpp>
#include <boost/asio/error.hpp>
#include <boost/make_shared.hpp>

namespace net {
namespace {

using boost::system::error_code;

constexpr std::size_t kReceiveSize = 64 * 1024;

} // namespace

NetManager::NetManager(boost::asio::io_service& io) : m_io(io), m_received(kReceiveSize) {}

NetManager::~NetManager() = default;

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

/// Reads into the shared buffer and marks the end of the stream.
std::size_t NetManager::readInto(NetConnection& conn, error_code& error) {
    const std::size_t length = conn.m_socket.read_some(boost::asio::buffer(m_received), error);
    if (error == boost::asio::error::eof) conn.m_bPeerEnded = true;
    return length;
}

/// Reads what is there and hands it on. The end of the stream and errors end the connection; what the peer
/// has not read yet is still sent where it has only closed its own side.
void NetManager::receive(const NetConnectionPtr& conn) {
    error_code error;
    const std::size_t length = readInto(*conn, error);
    if (error == boost::asio::error::would_block || error == boost::asio::error::interrupted) return;
    if (error && !conn->m_bPeerEnded) return fail(conn, error.value());
    try {
        if (!conn->m_bPeerEnded) return onDataReceived(m_received, static_cast<int>(length), conn);
        onDisconnected(0, conn);
    } catch (...) {
        // What was answered up to here still goes out.
        onDisconnected(boost::system::errc::not_enough_memory, conn);
    }
    conn->finish();
}

void NetManager::fail(const NetConnectionPtr& conn, int code) {
    if (!conn->isOpen()) return;
    const bool isKnown = !conn->m_bFinishing;
    conn->close();
    // One that was removed or has told its end is only being emptied.
    if (isKnown) onDisconnected(code, conn);
}

} // namespace net
