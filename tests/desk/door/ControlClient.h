#pragma once

#include "desk/door/ControlSocket.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/read_until.hpp>
#include <boost/asio/write.hpp>

#include <stdexcept>
#include <string>

namespace desk {

/// The client's end of a control door. The calls block; if a door never answers, the time limit of the test
/// run stops the test.
class CControlClient {
public:
    explicit CControlClient(const std::string& folder) : m_socket(m_io) {
        const utils::KNError connected = connectToControlSocket(folder, m_socket);
        if (!connected.isSuccess()) throw std::runtime_error(connected.errorMsg());
    }

    /// Returns whether the door has taken all bytes.
    bool send(const std::string& bytes) {
        boost::system::error_code error;
        boost::asio::write(m_socket, boost::asio::buffer(bytes), error);
        return !error;
    }
    /// Returns the next line without its newline, or "-" if the door has closed the connection.
    std::string readLine() {
        boost::system::error_code error;
        const std::size_t end =
            boost::asio::read_until(m_socket, boost::asio::dynamic_buffer(m_strReceived), '\n', error);
        if (error) return "-";
        std::string line = m_strReceived.substr(0, end - 1);
        m_strReceived.erase(0, end);
        return line;
    }
    std::string ask(const std::string& line) { return send(line + '\n') ? readLine() : "not sent"; }

    boost::asio::local::stream_protocol::socket& socket() { return m_socket; }

private:
    boost::asio::io_context m_io;
    boost::asio::local::stream_protocol::socket m_socket;
    std::string m_strReceived;
};

} // namespace desk
