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

/// The client's end of a TCP connection. The calls block. Reads have no timeout: if a server never answers,
/// the time limit of the test run stops the test.
class CTestSocket {
public:
    explicit CTestSocket(unsigned short port, const char* ownAddress = "127.0.0.1")
        : m_socket(m_io, {boost::asio::ip::make_address_v4(ownAddress), 0}) {
        m_socket.connect({boost::asio::ip::address_v4::loopback(), port});
        m_socket.set_option(boost::asio::ip::tcp::no_delay(true));
    }

    void send(const std::string& bytes) { boost::asio::write(m_socket, boost::asio::buffer(bytes)); }

    /// Returns the next line with its line feed. If the stream ends first, returns what was received before.
    std::string readLine() {
        boost::system::error_code error;
        const std::size_t length = boost::asio::read_until(m_socket, m_received, '\n', error);
        return take(error ? m_received.size() : length);
    }
    /// Returns everything up to the end of the stream.
    std::string readAll() {
        boost::system::error_code error;
        boost::asio::read(m_socket, m_received, error);
        return take(m_received.size());
    }
    /// Sends a line and returns the reply. The greeting must have been read before.
    std::string ask(const std::string& line) {
        send(line + "\r\n");
        return readLine();
    }
    /// Waits at most this time. Returns whether there is data to read or the end of the stream.
    bool waitForData(std::chrono::milliseconds time) {
        if (m_received.size() > 0) return true;
        pollfd state{m_socket.native_handle(), POLLIN, 0};
        return ::poll(&state, 1, static_cast<int>(time.count())) > 0;
    }
    /// Waits until the server closes the connection. Returns whether nothing more was received.
    bool isClosedByServer() { return readAll().empty(); }

    void finishSending() { m_socket.shutdown(boost::asio::ip::tcp::socket::shutdown_send); }
    /// Closes the connection abruptly: the peer gets a reset.
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

/// A port without a listener at the time of the call.
inline unsigned short freePort() {
    boost::asio::io_service io;
    const boost::asio::ip::tcp::acceptor acceptor(io, {boost::asio::ip::address_v4::loopback(), 0});
    return acceptor.local_endpoint().port();
}

/// The number of open sockets of this process.
inline std::ptrdiff_t openSockets() {
    std::ptrdiff_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code ignored; // the descriptor of this listing may be gone by now
        if (std::filesystem::read_symlink(entry, ignored).string().rfind("socket:", 0) == 0) ++count;
    }
    return count;
}
