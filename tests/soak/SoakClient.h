#pragma once

#include "tests/soak/OrderLedger.h"

#include <boost/asio/io_service.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/streambuf.hpp>

#include <cstddef>
#include <deque>
#include <optional>
#include <random>
#include <string>
#include <vector>

/// A client of the order socket that works without a pause. It logs in and sends bursts of orders, cancels
/// and invalid lines, sometimes a very long burst. A burst is sent whole or in two pieces. It checks every
/// reply. It leaves with `quit` or drops the connection anywhere in a burst, and then connects again. The
/// seed decides all its actions. Everything runs on the io_service's thread.
class CSoakClient {
public:
    /// number: the index of this client among `clients`. It keeps the orders and cancels of the clients
    /// different. isOver: the client ends as soon as this is true.
    CSoakClient(boost::asio::io_service& io, unsigned short port, COrderLedger& ledger, const bool& isOver,
                unsigned seed, int number, int clients);

    void join();

private:
    /// One line of a burst and its expected reply. It has a mark if a journal record must follow.
    struct CLine {
        std::string text;
        std::string reply;
        std::optional<COrderLedger::CMark> mark = std::nullopt;
    };

    int pick(int first, int last) { return std::uniform_int_distribution<int>(first, last)(m_random); }
    void act();
    CLine makeLine();
    int nextNumber(int& count) const { return count++ * m_nClients + m_nNumber; }
    std::vector<CLine> makeBurst();
    void sendBurst();
    void dropWithin(const std::vector<CLine>& burst);
    void leave();
    void send(std::string first, std::string second);
    void await();
    void takeReply(const std::string& reply);
    void close();
    void rest(void (CSoakClient::*next)());
    void fail(const std::string& text);

    boost::asio::ip::tcp::socket m_socket;
    boost::asio::steady_timer m_rest;
    boost::asio::streambuf m_received;
    const unsigned short m_nPort;
    COrderLedger& m_ledger;
    const bool& m_isOver;
    std::mt19937 m_random;
    const int m_nNumber;
    const int m_nClients;
    int m_nOrders = 0;
    int m_nCancels = 0;
    bool m_bLeaving = false;
    std::string m_bytes; ///< bytes that are being sent
    std::deque<CLine> m_awaited;
};
