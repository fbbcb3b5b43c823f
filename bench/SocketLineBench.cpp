// socket_line: nanoseconds from the bytes of an order line to the bytes of its reply, through the server's
// buffer, the grammar and the order record, without the network. The baseline splits the same line and
// converts its numbers.
#include "bench/Figure.h"
#include "bench/SocketPeers.h"

#include <boost/make_shared.hpp>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

const std::string kLine = "placeorder 23,3,10.5,600000,100\r\n";
constexpr int kLines = 100000;
constexpr int kRepetitions = 31;

/// Stores the bytes that the server sends.
class CStoringConnection : public net::NetConnection {
public:
    CStoringConnection(boost::asio::io_service& io, net::NetManager& manager)
        : net::NetConnection(boost::asio::ip::tcp::socket(io), manager) {}
    void send(const std::vector<unsigned char>& bytes, int count, bool) override {
        stored.assign(bytes.begin(), bytes.begin() + count);
    }
    std::vector<unsigned char> stored;
};

template<typename Serve>
double nanosecondsPerLine(const Serve& serve) {
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < kLines; ++i)
        serve();
    const std::chrono::duration<double, std::nano> took = std::chrono::steady_clock::now() - begin;
    return took.count() / kLines;
}

void socketLine(benchmark::State& state) {
    const bench::CDoorHost host;
    boost::asio::io_service io;
    bench::CCountingGate gate;
    bench::CNoStrategies registry;
    const auto server = boost::make_shared<TC::COrderSocketServer>(io, "127.0.0.1", 0, "", "", gate, registry,
                                                                   QStringLiteral("127.0.0.1:0"));
    const auto conn = boost::make_shared<CStoringConnection>(io, *server);
    server->onConnected(conn);
    const std::vector<unsigned char> bytes(kLine.begin(), kLine.end());
    for (auto _ : state) {
        const double value =
            nanosecondsPerLine([&] { server->onDataReceived(bytes, static_cast<int>(bytes.size()), conn); });
        bench::report(state, value, "ns");
    }
    if (std::string(conn->stored.begin(), conn->stored.end()) != "+OK\r\n" || gate.orders == 0)
        state.SkipWithError("the line was not accepted");
    server->onDisconnected(0, conn);
}

void splitLine() {
    char line[64];
    std::memcpy(line, kLine.c_str(), kLine.size() + 1);
    char* rest = nullptr;
    benchmark::DoNotOptimize(strtok_r(line, " ", &rest));
    benchmark::DoNotOptimize(std::strtol(strtok_r(nullptr, ",", &rest), nullptr, 10));
    benchmark::DoNotOptimize(std::strtol(strtok_r(nullptr, ",", &rest), nullptr, 10));
    benchmark::DoNotOptimize(std::strtod(strtok_r(nullptr, ",", &rest), nullptr));
    benchmark::DoNotOptimize(strtok_r(nullptr, ",", &rest));
    benchmark::DoNotOptimize(std::strtol(strtok_r(nullptr, ",", &rest), nullptr, 10));
}

void socketLineBaseline(benchmark::State& state) {
    for (auto _ : state)
        bench::report(state, nanosecondsPerLine(splitLine), "ns");
}

BENCHMARK(socketLine)->Name("socket_line")->Iterations(1)->Repetitions(kRepetitions);
BENCHMARK(socketLineBaseline)->Name("socket_line/baseline")->Iterations(1)->Repetitions(kRepetitions);

} // namespace
