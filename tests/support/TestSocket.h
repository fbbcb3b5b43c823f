#pragma once

#include <boost/asio/connect.hpp>
#include <boost/asio/io_service.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/read.hpp>
#include <boost/asio/read_until.hpp>
#include <boost/asio/streambuf.hpp>
#include <boost/asio/write.hpp>

#include <poll.h>

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <string>
#include <system_error>

/// A client's end of a TCP connection, with calls that wait. What should arrive is waited for without a
/// clock; a server that never answers is stopped by the test run's own time limit.
class CTestSocket {
public:
    explicit CTestSocket(unsigned short port, const char* ownAddress = "127.0.0.1")
        : m_socket(m_io, {boost::asio::ip::make_address_v4(ownAddress), 0}) {
        m_socket.connect({boost::asio::ip::address_v4::loopback(), port});
        m_socket.set_option(boost::asio::ip::tcp::no_delay(true));
    }

    void send(const std::string& bytes) { boost::asio::write(m_socket, boost::asio::buffer(bytes)); }

    /// The next line with its line feed; what came before the end of the stream where that comes first.
    std::string readLine() {
        boost::system::error_code error;
        const std::size_t length = boost::asio::read_until(m_socket, m_received, '\n', error);
        return take(error ? m_received.size() : length);
    }
    /// Everything up to the end of the stream.
    std::string readAll() {
        boost::system::error_code error;
        boost::asio::read(m_socket, m_received, error);
        return take(m_received.size());
    }
    /// The reply to a line of a connection that has read its greeting.
    std::string ask(const std::string& line) {
        send(line + "\r\n");
        return readLine();
    }
    /// Whether there is something to read, or the end of the stream, at the latest after the time.
    bool waitForData(std::chrono::milliseconds time) {
        if (m_received.size() > 0) return true;
        pollfd state{m_socket.native_handle(), POLLIN, 0};
        return ::poll(&state, 1, static_cast<int>(time.count())) > 0;
    }
    /// True once the server has closed the connection with nothing more to read.
    bool isClosedByServer() { return readAll().empty(); }

    void finishSending() { m_socket.shutdown(boost::asio::ip::tcp::socket::shutdown_send); }
    /// Ends the connection the hard way: the peer sees a reset.
    void reset() {
        m_socket.set_option(boost::asio::socket_base::linger(true, 0));
        m_socket.close();
    }

    boost::asio::ip::tcp::socket& socket() { return m_socket; }

private:
    std::string take(std::size_t length) {
        const auto begin = boost::asio::buffers_begin(m_received.data());
        const std::string text(begin, begin + static_cast<std::ptrdiff_t>(length));
        m_received.consume(length);
        return text;
    }

    boost::asio::io_service m_io;
    boost::asio::ip::tcp::socket m_socket;
    boost::asio::streambuf m_received;
};

/// A port that nobody listened on a moment ago.
inline unsigned short freePort() {
    boost::asio::io_service io;
    const boost::asio::ip::tcp::acceptor acceptor(io, {boost::asio::ip::address_v4::loopback(), 0});
    return acceptor.local_endpoint().port();
}

/// How many sockets this process has open.
inline std::ptrdiff_t openSockets() {
    std::ptrdiff_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code ignored; // the listing's own descriptor is gone by now
        if (std::filesystem::read_symlink(entry, ignored).string().rfind("socket:", 0) == 0) ++count;
    }
    return count;
}
