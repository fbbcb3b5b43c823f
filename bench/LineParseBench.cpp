// line_parse: nanoseconds per plain stock line, from the bytes of a file to COrderParam. The baseline reads
// the same file with fgets, splits it and converts its numbers, and builds no record.
#include "bench/BenchHost.h"
#include "bench/Figure.h"
#include "orderservice/intake/LineReader.h"
#include "orderservice/intake/OrderFileParser.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>

namespace {

constexpr int kLines = 100000;

/// A port for the grammar that does nothing, because the file does not need it.
class CNoPort : public TC::ILinePort {
public:
    void terminateTask(int) override {}
    void cancelOrders(std::vector<std::string>&) override {}
    bool readTradeParam(const std::string&, TC::COrderTradeParam&) override { return false; }
    std::string defaultRemark(const TC::COrderStrategyParam&) override { return {}; }
    bool areRemarksAllowed() override { return false; }
    std::optional<TC::CBasketSetting> findBasket(std::string_view) override { return std::nullopt; }
    bool hasAccounts(const TC::COrderStrategyParam&) override { return false; }
    QString sourceLabel(TC::EOrderStrategyType) override { return {}; }
    QString sourceTitle(TC::EOrderStrategyType) override { return {}; }
    void showNote(const QString&) override {}
};

std::size_t parseFile(std::FILE* stream) {
    const TC::COrderStrategyParam strategy;
    CNoPort port;
    TC::COrderFileParser parser(strategy, 1, port);
    parser.expectBytes(static_cast<long long>(bench::stockLines(1).size()) * kLines);
    TC::CLineReader reader(stream);
    std::string line;
    while (reader.readLine(line))
        parser.parseLineParam(line);
    return static_cast<std::size_t>(parser.takeOrders().size());
}

template<typename Read>
void measure(benchmark::State& state, const Read& read) {
    const std::string folder = bench::makeFolder();
    const std::string path = folder + "/orders.txt";
    std::ofstream(path, std::ios::binary) << bench::stockLines(kLines);
    double seconds = 0;
    for (auto _ : state) {
        const auto begin = std::chrono::steady_clock::now();
        std::FILE* stream = std::fopen(path.c_str(), "r");
        if (read(stream) != kLines) state.SkipWithError("lines were lost");
        std::fclose(stream);
        seconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    }
    bench::report(
        state, seconds * 1e9 / (static_cast<double>(kLines) * static_cast<double>(state.iterations())), "ns");
    bench::removeFolder(folder);
}

void lineParse(benchmark::State& state) {
    measure(state, parseFile);
}
void lineParseBaseline(benchmark::State& state) {
    measure(state, bench::splitLines);
}

BENCHMARK(lineParse)->Name("line_parse")->Repetitions(5);
BENCHMARK(lineParseBaseline)->Name("line_parse/baseline")->Repetitions(5);

} // namespace
