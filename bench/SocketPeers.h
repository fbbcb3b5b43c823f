#pragma once

#include "examples/minimal_host/MinimalHost.h"

#include "gates/OrderGate.h"
#include "gates/StrategyRegistry.h"
#include "socket/OrderSocketServerWrapper.h"

#include <boost/asio/io_service.hpp>
#include <boost/asio/ip/tcp.hpp>

#include <sched.h>

#include <atomic>
#include <cstddef>
#include <string>
#include <thread>
#include <vector>

namespace bench {

/// Counts the orders and does nothing with them, so that the door alone is measured.
class CCountingGate final : public TC::IOrderGate {
public:
    void placeorder(TC::COrderParam) override { ++orders; }
    void placeOrders(QVector<TC::COrderParam> batch) override { orders += batch.size(); }
    void cancelOrder(int) override {}
    void cancelOrders(std::vector<std::string>&) override {}
    QString getOrderStrategyText(TC::EOrderStrategyType) const override { return {}; }
    std::string defaultRemark(const TC::COrderStrategyParam&) const override { return {}; }

    std::atomic<long long> orders{0};
};

class CNoStrategies final : public TC::IStrategyRegistry {
public:
    void visitStrategies(const std::function<void(int, const TC::COrderStrategyParam&)>&) override {}
    std::optional<TC::COrderStrategyParam> copyStrategy(int) override { return std::nullopt; }
};

/// Keeps this thread, and those that it starts, on one processor for as long as the object lives: the two
/// ends of a connection take turns anyhow, and how long one processor takes to wake another is not the door's
/// doing.
class COneProcessor {
public:
    COneProcessor();
    ~COneProcessor();
    COneProcessor(const COneProcessor&) = delete;
    COneProcessor& operator=(const COneProcessor&) = delete;

private:
    cpu_set_t m_before{};
};

/// A host for as long as the object lives: the door asks it for its switches and tells its audit.
class CDoorHost {
public:
    CDoorHost();
    ~CDoorHost();
    CDoorHost(const CDoorHost&) = delete;
    CDoorHost& operator=(const CDoorHost&) = delete;

private:
    std::ostream m_nowhere{nullptr};
    minimal::CMinimalHost m_host{m_nowhere};
};

/// A listener without a login, on a thread of its own.
class CDoor {
public:
    CDoor();
    ~CDoor();
    unsigned short port() const { return m_nPort; }

    /// What a connection says first, and what it says to an accepted order.
    static constexpr std::size_t kGreetingSize = 47;
    static constexpr std::size_t kReplySize = 5;

private:
    CDoorHost m_host;
    CCountingGate m_gate;
    CNoStrategies m_registry;
    TC::COrderSocketServerWrapper m_wrapper;
    unsigned short m_nPort = 0;
    std::thread m_thread;
};

/// The baseline of all that crosses the network: a server that sends back what it gets, with the plain means
/// of Boost.Asio, on a thread of its own.
class CEcho {
public:
    CEcho();
    ~CEcho();
    unsigned short port() const { return m_acceptor.local_endpoint().port(); }

private:
    void accept();

    boost::asio::io_service m_io{1};
    boost::asio::ip::tcp::acceptor m_acceptor;
    std::thread m_thread;
};

/// A client's end: a bare descriptor, so that it costs the same beside either server and takes no memory of
/// the process's own.
class CClient {
public:
    /// Connects and reads `greeting` bytes.
    CClient(unsigned short port, std::size_t greeting);
    ~CClient();
    CClient(const CClient&) = delete;
    CClient& operator=(const CClient&) = delete;

    int descriptor() const { return m_nSocket; }
    void send(const char* bytes, std::size_t count) const;
    /// Takes what has arrived, waiting for the first of it; gives how many bytes that were.
    std::size_t receive() const;
    void receiveAll(std::size_t count) const;

private:
    int m_nSocket = -1;
};

} // namespace bench
