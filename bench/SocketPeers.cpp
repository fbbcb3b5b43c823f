#include "bench/SocketPeers.h"

#include <boost/asio/write.hpp>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace bench {
namespace {

using boost::asio::ip::tcp;
using boost::system::error_code;

/// One connection of the echo server: it reads bytes, writes them back, and reads again.
class CEchoSession : public std::enable_shared_from_this<CEchoSession> {
public:
    explicit CEchoSession(tcp::socket socket) : m_socket(std::move(socket)) {
        m_socket.set_option(tcp::no_delay(true));
    }
    void read() {
        m_socket.async_read_some(boost::asio::buffer(m_bytes),
                                 [self = shared_from_this()](const error_code& error, std::size_t count) {
                                     if (!error) self->write(count);
                                 });
    }

private:
    void write(std::size_t count) {
        boost::asio::async_write(m_socket, boost::asio::buffer(m_bytes, count),
                                 [self = shared_from_this()](const error_code& error, std::size_t) {
                                     if (!error) self->read();
                                 });
    }

    tcp::socket m_socket;
    std::array<char, 65536> m_bytes{};
};

[[noreturn]] void fail(const char* what) {
    std::perror(what);
    std::exit(1);
}

} // namespace

COneProcessor::COneProcessor() {
    ::sched_getaffinity(0, sizeof m_before, &m_before);
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(::sched_getcpu(), &one);
    ::sched_setaffinity(0, sizeof one, &one);
}

COneProcessor::~COneProcessor() {
    ::sched_setaffinity(0, sizeof m_before, &m_before);
}

CDoorHost::CDoorHost() {
    if (!TC::installHost(m_host.services()).isSuccess()) std::abort();
}

CDoorHost::~CDoorHost() {
    TC::releaseHost();
}

CDoor::CDoor() : m_wrapper("127.0.0.1", 0, "", "", m_gate, m_registry, {}) {
    m_wrapper.server()->start(false);
    m_nPort = m_wrapper.server()->port();
    m_thread = std::thread([this] { m_wrapper.run(); });
}

CDoor::~CDoor() {
    m_wrapper.stop();
    m_thread.join();
}

CEcho::CEcho() : m_acceptor(m_io, {boost::asio::ip::address_v4::loopback(), 0}) {
    accept();
    m_thread = std::thread([this] { m_io.run(); });
}

CEcho::~CEcho() {
    m_io.stop();
    m_thread.join();
}

void CEcho::accept() {
    m_acceptor.async_accept([this](const error_code& error, tcp::socket socket) {
        if (error) return;
        std::make_shared<CEchoSession>(std::move(socket))->read();
        accept();
    });
}

CClient::CClient(unsigned short port, std::size_t greeting)
    : m_nSocket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::connect(m_nSocket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        fail("connect");
    const int on = 1;
    ::setsockopt(m_nSocket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    receiveAll(greeting);
}

CClient::~CClient() {
    ::close(m_nSocket);
}

void CClient::send(const char* bytes, std::size_t count) const {
    if (::send(m_nSocket, bytes, count, MSG_NOSIGNAL) != static_cast<ssize_t>(count)) fail("send");
}

std::size_t CClient::receive() const {
    char bytes[65536];
    const ssize_t count = ::recv(m_nSocket, bytes, sizeof bytes, 0);
    if (count <= 0) fail("recv");
    return static_cast<std::size_t>(count);
}

void CClient::receiveAll(std::size_t count) const {
    for (std::size_t received = 0; received < count;)
        received += receive();
}

} // namespace bench
