#pragma once

#include "examples/minimal_host/MinimalHost.h"

#include "orderservice/gates/OrderGate.h"
#include "orderservice/gates/StrategyRegistry.h"
#include "orderservice/socket/OrderSocketServerWrapper.h"

#include <boost/asio/io_service.hpp>
#include <boost/asio/ip/tcp.hpp>

#include <sched.h>

#include <atomic>
#include <cstddef>
#include <string>
#include <thread>
#include <vector>

namespace bench {

/// Sizes in bytes of the order socket's greeting and of its reply to an accepted line.
inline constexpr std::size_t kGreetingSize = 47;
inline constexpr std::size_t kReplySize = 5;

/// The properties of a server that its clients need.
struct CPeer {
    unsigned short port;
    std::size_t greeting; ///< bytes that the server sends at the start
    std::size_t reply;    ///< bytes of the reply to a line
};

/// Counts the orders and discards them, so that only the order socket is measured.
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
    TC::COrderStrategyPtr strategyOf(int) override { return nullptr; }
    std::uint64_t revision() const override { return 0; }
};

/// Keeps this thread, and the threads that it starts, on one processor while the object exists. The two ends
/// of a connection take turns, so one processor is enough. The time that one processor needs to wake another
/// must not be measured.
class COneProcessor {
public:
    COneProcessor();
    ~COneProcessor();
    COneProcessor(const COneProcessor&) = delete;
    COneProcessor& operator=(const COneProcessor&) = delete;

private:
    cpu_set_t m_before{};
};

/// Installs a host while the object exists. The order socket reads its switches and reports to its audit.
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

/// A listener without a login, on its own thread.
class CDoor {
public:
    CDoor();
    ~CDoor();
    unsigned short port() const { return m_nPort; }

private:
    CDoorHost m_host;
    CCountingGate m_gate;
    CNoStrategies m_registry;
    TC::COrderSocketServerWrapper m_wrapper;
    unsigned short m_nPort = 0;
    std::thread m_thread;
};

/// The baseline for all figures over the network: a simple Boost.Asio server on its own thread that sends
/// back all bytes that it receives.
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

/// A client connection. It is only a socket descriptor, so it costs the same with both servers and uses no
/// heap memory.
class CClient {
public:
    /// Connects and reads `greeting` bytes.
    CClient(unsigned short port, std::size_t greeting);
    ~CClient();
    CClient(const CClient&) = delete;
    CClient& operator=(const CClient&) = delete;

    int descriptor() const { return m_nSocket; }
    void send(const char* bytes, std::size_t count) const;
    /// Waits until bytes arrive and reads them. Returns the number of bytes.
    std::size_t receive() const;
    void receiveAll(std::size_t count) const;

private:
    int m_nSocket = -1;
};

} // namespace bench
