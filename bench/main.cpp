// Runs every figure and prints one line for each: name, value, unit, baseline, ratio. Exit code 1 if a figure
// could not be measured.
#include "bench/Figure.h"

#include <QApplication>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace {

const std::string kBaselineSuffix = "/baseline";

/// Collects the medians of the repetitions.
class CFigureReporter : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context&) override { return true; }

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            m_bFailed = m_bFailed || run.error_occurred;
            if (run.error_occurred)
                std::printf("%s failed: %s\n", run.benchmark_name().c_str(), run.error_message.c_str());
            if (run.run_type != Run::RT_Aggregate || run.aggregate_name != "median") continue;
            const auto value = run.counters.find(bench::kValue);
            if (value != run.counters.end()) add(run.run_name.function_name, value->second, run.report_label);
        }
    }

    void print() const {
        for (const auto& [name, value] : m_values) {
            if (isBaseline(name)) continue;
            const auto baseline = m_values.find(name + kBaselineSuffix);
            const double base = baseline != m_values.end() ? baseline->second : 0.0;
            std::printf("%s %.4g %s %.4g %.3g\n", name.c_str(), value, m_units.at(name).c_str(), base,
                        base > 0 ? value / base : 0.0);
        }
    }

    bool hasFailed() const { return m_bFailed; }

private:
    static bool isBaseline(const std::string& name) {
        return name.size() > kBaselineSuffix.size() &&
               name.compare(name.size() - kBaselineSuffix.size(), kBaselineSuffix.size(), kBaselineSuffix) ==
                   0;
    }

    void add(const std::string& name, double value, const std::string& unit) {
        m_values[name] = value;
        m_units[name] = unit;
    }

    std::map<std::string, double> m_values;
    std::map<std::string, std::string> m_units;
    bool m_bFailed = false;
};

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen"); // widgets are measured without a screen
    const QApplication app(argc, argv);
    // All repetitions run in random order, so that a busy machine slows a figure as much as its baseline.
    char interleave[] = "--benchmark_enable_random_interleaving=true";
    std::vector<char*> arguments(argv, argv + argc);
    arguments.insert(arguments.begin() + 1, interleave);
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 1;
    CFigureReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.print();
    return reporter.hasFailed() ? 1 : 0;
}
