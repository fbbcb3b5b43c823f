#include "tests/soak/SoakClient.h"

#include <boost/asio/read_until.hpp>
#include <boost/asio/write.hpp>

#include <chrono>
#include <cstdio>
#include <utility>

namespace {

using boost::asio::ip::tcp;
using boost::system::error_code;

constexpr int kMaxRestMs = 250;
constexpr int kMaxBurst = 8;
constexpr int kFlood = 300; ///< lines of a burst that the guard delays
const std::string kOk = "+OK\r\n";

std::string orderLine(const COrderLedger::CMark& mark) {
    const auto [volume, cents] = mark;
    char text[80];
    std::snprintf(text, sizeof text, "placeorder 23,1,%d.%02d,600000,%d\r\n", cents / 100, cents % 100,
                  volume);
    return text;
}

} // namespace

CSoakClient::CSoakClient(boost::asio::io_service& io, unsigned short port, COrderLedger& ledger,
                         const bool& isOver, unsigned seed, int number, int clients)
    : m_socket(io), m_rest(io), m_nPort(port), m_ledger(ledger), m_isOver(isOver), m_nNumber(number),
      m_nClients(clients) {
    std::seed_seq seeds{seed, static_cast<unsigned>(number)};
    m_random.seed(seeds);
}

void CSoakClient::join() {
    m_bLeaving = false;
    m_socket.async_connect({boost::asio::ip::address_v4::loopback(), m_nPort},
                           [this](const error_code& error) {
                               if (error) return fail("connect: " + error.message());
                               m_socket.set_option(tcp::no_delay(true));
                               m_awaited = {{"", "+OK Welcom to Lumo Order Server Version 0.0.3\r\n"},
                                            {"user trader", kOk},
                                            {"pass secret", kOk}};
                               send("user trader\r\npass secret\r\n", {});
                           });
}

void CSoakClient::act() {
    if (m_isOver) return leave();
    const int dice = pick(1, 100);
    if (dice <= 70) return sendBurst();
    if (dice <= 90) return dropWithin(makeBurst());
    leave();
}

CSoakClient::CLine CSoakClient::makeLine() {
    const int dice = pick(1, 100);
    if (dice <= 10) {
        const COrderLedger::CMark mark = COrderLedger::markOfCancel(nextNumber(m_nCancels));
        return {"cancel " + std::to_string(mark.first) + "\r\n", kOk, mark};
    }
    if (dice <= 15) return {"nonsense\r\n", "-ERR Bad Command\r\n"};
    if (dice <= 20) return {"placeorder 23,1,1e,600000,100\r\n", "-ERR Bad Param\r\n"};
    const COrderLedger::CMark mark = COrderLedger::markOfOrder(nextNumber(m_nOrders));
    return {orderLine(mark), kOk, mark};
}

std::vector<CSoakClient::CLine> CSoakClient::makeBurst() {
    const int count = pick(1, 100) == 1 ? kFlood : pick(1, kMaxBurst);
    std::vector<CLine> burst(static_cast<std::size_t>(count));
    for (CLine& line : burst)
        line = makeLine();
    return burst;
}

void CSoakClient::sendBurst() {
    std::string bytes;
    for (CLine& line : makeBurst()) {
        if (line.mark) m_ledger.sent(*line.mark);
        bytes += line.text;
        m_awaited.push_back(std::move(line));
    }
    const std::size_t cut =
        pick(1, 4) == 1 ? static_cast<std::size_t>(pick(0, static_cast<int>(bytes.size()))) : bytes.size();
    send(bytes.substr(0, cut), bytes.substr(cut));
}

/// Sends the burst up to a random byte and closes the connection without reading the replies.
void CSoakClient::dropWithin(const std::vector<CLine>& burst) {
    std::string bytes;
    for (const CLine& line : burst)
        bytes += line.text;
    const auto cut = static_cast<std::size_t>(pick(0, static_cast<int>(bytes.size())));
    std::size_t end = 0;
    for (const CLine& line : burst) {
        end += line.text.size();
        if (!line.mark) continue;
        end <= cut ? m_ledger.sent(*line.mark) : m_ledger.cut(*line.mark);
    }
    m_bytes = bytes.substr(0, cut);
    boost::asio::async_write(m_socket, boost::asio::buffer(m_bytes),
                             [this](const error_code& error, std::size_t) {
                                 if (error) return fail("write: " + error.message());
                                 error_code ignored;
                                 if (pick(1, 2) == 1)
                                     m_socket.set_option(boost::asio::socket_base::linger(true, 0), ignored);
                                 close();
                             });
}

void CSoakClient::leave() {
    m_bLeaving = true;
    m_awaited.push_back({"quit", kOk});
    send("quit\r\n", {});
}

void CSoakClient::send(std::string first, std::string second) {
    m_bytes = std::move(first);
    boost::asio::async_write(m_socket, boost::asio::buffer(m_bytes),
                             [this, second = std::move(second)](const error_code& error, std::size_t) {
                                 if (error) return fail("write: " + error.message());
                                 second.empty() ? await() : send(second, {});
                             });
}

void CSoakClient::await() {
    boost::asio::async_read_until(
        m_socket, m_received, '\n', [this](const error_code& error, std::size_t length) {
            if (m_awaited.empty()) {
                // After the reply to `quit` only the end of the stream may follow.
                return error == boost::asio::error::eof ? close()
                                                        : fail("no end of stream: " + error.message());
            }
            if (error) return fail("read: " + error.message());
            const auto begin = boost::asio::buffers_begin(m_received.data());
            const std::string reply(begin, begin + static_cast<std::ptrdiff_t>(length));
            m_received.consume(length);
            takeReply(reply);
        });
}

void CSoakClient::takeReply(const std::string& reply) {
    const CLine line = m_awaited.front();
    m_awaited.pop_front();
    if (reply != line.reply) return fail("reply to " + line.text + ": " + reply);
    if (line.mark) m_ledger.accepted(*line.mark);
    if (m_awaited.empty() && !m_bLeaving) return rest(&CSoakClient::act);
    await();
}

/// Closes this connection and connects again, unless the soak is over.
void CSoakClient::close() {
    error_code ignored;
    m_socket.close(ignored);
    m_awaited.clear();
    m_received.consume(m_received.size());
    if (!m_isOver) rest(&CSoakClient::join);
}

void CSoakClient::rest(void (CSoakClient::*next)()) {
    m_rest.expires_after(std::chrono::milliseconds(pick(0, kMaxRestMs)));
    m_rest.async_wait([this, next](const error_code& error) {
        if (!error) (this->*next)();
    });
}

/// Reports the error. The client does not connect again.
void CSoakClient::fail(const std::string& text) {
    m_ledger.fail("client " + std::to_string(m_nNumber) + ": " + text);
    error_code ignored;
    m_socket.close(ignored);
}
