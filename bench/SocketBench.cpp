// Figures of the order socket over the loopback. The baselines use an echo server that gets the same lines.
// socket_rtt: microseconds from one order line to its reply, one at a time. socket_pipelined: order lines per
// second on one connection with 64 lines in flight. socket_50: microseconds per order of 50 connections with
// one line in flight each. connection_memory: bytes that an idle connection uses in the process. Its baseline
// is the size of the scratch buffer in each connection's record.
#include "bench/Figure.h"
#include "bench/SocketCrowd.h"
#include "bench/SocketPeers.h"

#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <deque>
#include <string>
#include <vector>

namespace {

const std::string kLine = "placeorder 23,3,10.5,600000,100\r\n";

constexpr int kRoundTrips = 4000;
constexpr int kPipelined = 60000;
constexpr int kInFlight = 64;
constexpr int kRoundsEach = 200;
constexpr int kIdle = 500;
constexpr int kRepetitions = 31;

template<typename Work>
double secondsOf(const Work& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

void roundTrips(const bench::CClient& client, const bench::CPeer& peer, int count) {
    for (int i = 0; i < count; ++i) {
        client.send(kLine.data(), kLine.size());
        client.receiveAll(peer.reply);
    }
}

/// Sends a new line for each reply, so that kInFlight lines stay in flight until the end.
void pipeline(const bench::CClient& client, const bench::CPeer& peer, int count) {
    std::string lines;
    for (int i = 0; i < kInFlight; ++i)
        lines += kLine;
    client.send(lines.data(), lines.size());
    std::size_t bytes = 0;
    for (int sent = kInFlight, answered = 0; answered < count;) {
        bytes += client.receive();
        const int fresh = static_cast<int>(bytes / peer.reply);
        bytes %= peer.reply;
        answered += fresh;
        const int next = std::min(fresh, count - sent);
        if (next > 0) client.send(lines.data(), kLine.size() * static_cast<std::size_t>(next));
        sent += std::max(next, 0);
    }
}

bench::CPeer peerOf(const bench::CDoor& door) {
    return {door.port(), bench::kGreetingSize, bench::kReplySize};
}
bench::CPeer peerOf(const bench::CEcho& echo) {
    return {echo.port(), 0, kLine.size()};
}

template<typename Server>
void socketRtt(benchmark::State& state) {
    const bench::COneProcessor processor;
    const Server server;
    const bench::CPeer peer = peerOf(server);
    const bench::CClient client(peer.port, peer.greeting);
    roundTrips(client, peer, kRoundTrips / 10);
    for (auto _ : state) {
        const double seconds = secondsOf([&] { roundTrips(client, peer, kRoundTrips); });
        bench::report(state, seconds * 1e6 / kRoundTrips, "us");
    }
}

template<typename Server>
void socketPipelined(benchmark::State& state) {
    const bench::COneProcessor processor;
    const Server server;
    const bench::CPeer peer = peerOf(server);
    const bench::CClient client(peer.port, peer.greeting);
    pipeline(client, peer, kPipelined / 10);
    for (auto _ : state) {
        const double seconds = secondsOf([&] { pipeline(client, peer, kPipelined); });
        bench::report(state, kPipelined / seconds, "1/s");
    }
}

template<typename Server>
void socket50(benchmark::State& state) {
    const bench::COneProcessor processor;
    const Server server;
    bench::CCrowd crowd(peerOf(server), kLine);
    crowd.exchange(kRoundsEach / 10);
    for (auto _ : state) {
        const double seconds = secondsOf([&] { crowd.exchange(kRoundsEach); });
        bench::report(state, seconds * 1e6 / (bench::CCrowd::kConnections * kRoundsEach), "us");
    }
}

double usedBytes() {
    const struct mallinfo2 info = ::mallinfo2();
    return static_cast<double>(info.uordblks) + static_cast<double>(info.hblkhd);
}

/// The clients are only descriptors, so all additional heap memory belongs to the server's connections.
void connectionMemory(benchmark::State& state) {
    for (auto _ : state) {
        const bench::CDoor door;
        const bench::CPeer peer = peerOf(door);
        const bench::CClient first(peer.port, peer.greeting);
        std::deque<bench::CClient> clients;
        const double before = usedBytes();
        for (int i = 0; i < kIdle; ++i)
            clients.emplace_back(peer.port, peer.greeting);
        // A reply to the first client shows that the server has accepted the last one.
        roundTrips(first, peer, 1);
        bench::report(state, (usedBytes() - before) / kIdle, "bytes");
    }
}

void connectionMemoryBaseline(benchmark::State& state) {
    for (auto _ : state)
        bench::report(state, static_cast<double>(TC::ConnData::kScratchSize), "bytes");
}

/// One round is long enough to be measured. The median is taken over the repetitions.
void once(benchmark::internal::Benchmark* figure) {
    figure->Iterations(1)->Repetitions(kRepetitions);
}

BENCHMARK_TEMPLATE(socketRtt, bench::CDoor)->Name("socket_rtt")->Apply(once);
BENCHMARK_TEMPLATE(socketRtt, bench::CEcho)->Name("socket_rtt/baseline")->Apply(once);
BENCHMARK_TEMPLATE(socketPipelined, bench::CDoor)->Name("socket_pipelined")->Apply(once);
BENCHMARK_TEMPLATE(socketPipelined, bench::CEcho)->Name("socket_pipelined/baseline")->Apply(once);
BENCHMARK_TEMPLATE(socket50, bench::CDoor)->Name("socket_50")->Apply(once);
BENCHMARK_TEMPLATE(socket50, bench::CEcho)->Name("socket_50/baseline")->Apply(once);
BENCHMARK(connectionMemory)->Name("connection_memory")->Apply(once);
BENCHMARK(connectionMemoryBaseline)->Name("connection_memory/baseline")->Apply(once);

} // namespace
