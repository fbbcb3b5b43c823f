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

/// A client of the order socket that never rests: it logs in, sends bursts of orders, cancels and nonsense,
/// now and then a flood of them, whole or in two pieces, checks every reply, leaves in order or drops the
/// connection anywhere within a burst, and comes back. What it does follows from the seed; all on the
/// io_service's thread.
class CSoakClient {
public:
    /// number: which of `clients` it is, so that its orders and cancels are
    /// its own. isOver: it leaves for good as soon
    /// as that is true.
    CSoakClient(boost::asio::io_service& io, unsigned short port, COrderLedger& ledger, const bool& isOver,
                unsigned seed, int number, int clients);

    void join();

private:
    /// One line of a burst, what it must be answered with, and its mark where a record must come of it.
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
    std::string m_bytes; ///< on their way out
    std::deque<CLine> m_awaited;
};
