// The behaviour of the file service with any source of lines, tested with a source in memory.
#include "orderservice/intake/FileService.h"
#include "tests/support/Builders.h"
#include "tests/support/DoorFakes.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeHost.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace TC;

using CSteps = std::vector<std::string>;

/// A batch in memory. The positions of its rows start at 1.
struct CBatch {
    CSteps lines;
    bool failsAtEnd = false;
};

class CMemorySource final : public ILineSource {
public:
    CMemorySource(CBatch batch, CSteps& steps) : m_batch(std::move(batch)), m_steps(steps) {}
    ~CMemorySource() override { m_steps.emplace_back("let go"); }

    bool readLine(std::string& line, int& rowPosition) override {
        if (m_nNext < m_batch.lines.size()) {
            line = m_batch.lines[m_nNext++];
            rowPosition = static_cast<int>(m_nNext);
            return true;
        }
        m_steps.emplace_back("end");
        if (m_batch.failsAtEnd) throw std::runtime_error("torn");
        return false;
    }
    long long bytes() const override { return 0; }
    void finish(CIntakeReport& report) override {
        m_steps.push_back("finish after " + std::to_string(report.m_nOrders) + " orders");
        report.m_strKeptAs = QStringLiteral("shelf");
    }

private:
    const CBatch m_batch;
    CSteps& m_steps;
    std::size_t m_nNext = 0;
};

/// Serves the strategies of one channel.
class CMemoryKind final : public ILineSourceKind {
public:
    CMemoryKind(int channel, CSteps& steps) : m_nChannel(channel), m_steps(steps) {}
    bool serves(const COrderStrategyParam& strategy) const override {
        return strategy.m_nChannel == m_nChannel;
    }
    std::unique_ptr<ILineSource> take(int, const COrderStrategyParam&) override {
        m_steps.emplace_back("take");
        if (waiting.empty()) return nullptr;
        CBatch batch = std::move(waiting.front());
        waiting.erase(waiting.begin());
        return std::make_unique<CMemorySource>(std::move(batch), m_steps);
    }

    std::vector<CBatch> waiting;

private:
    const int m_nChannel;
    CSteps& m_steps;
};

class LineSource : public testing::Test {
protected:
    void SetUp() override {
        host.audit.onRecord = [this] { steps.emplace_back("report"); };
        gate.onPlace = [this] { steps.emplace_back("gate"); };
    }
    /// Adds a table strategy with its own kind of source.
    CMemoryKind& add(int channel) {
        registry.strategies.insert(channel, CStrategyBuilder().channel(channel).file("table"));
        registry.strategies[channel].m_nAccountMode = COrderStrategyParam::kTableMode;
        auto kind = std::make_unique<CMemoryKind>(channel, steps);
        CMemoryKind& added = *kind;
        kinds.push_back(std::move(kind));
        return added;
    }
    void runPass() {
        if (!service) service = std::make_unique<CFileService>(gate, registry, std::move(kinds));
        service->tryOrder();
    }

    CFakeClock clock;
    CFakeHost host;
    CRecordingGate gate;
    CPlainRegistry registry;
    CSteps steps;
    std::vector<std::unique_ptr<ILineSourceKind>> kinds;
    std::unique_ptr<CFileService> service;
};

TEST_F(LineSource, IsReadReportedHandedOverAndThenLetGo) {
    add(3).waiting.push_back({{"23,1,10.5,600000,100", "24,1,10.6,000001,200"}});
    runPass();
    EXPECT_EQ(steps, (CSteps{"take", "end", "finish after 2 orders", "report", "gate", "let go"}));
    EXPECT_EQ(host.audit.reports.at(0).m_nLines, 2);
    EXPECT_EQ(host.audit.reports.at(0).m_strKeptAs, QStringLiteral("shelf"));
}

TEST_F(LineSource, RowsKeepTheirPositions) {
    add(3).waiting.push_back({{"23,1,10.5,600000,100", "24,1,10.6,000001,200"}});
    runPass();
    const QVector<COrderParam>& orders = gate.batches.at(0);
    EXPECT_EQ(orders.at(0).m_eStrategyType, EOrderStrategyType::BatchPending);
    EXPECT_EQ(orders.at(0).m_orders.at(0).m_nOverFreqMode, 1);
    EXPECT_EQ(orders.at(1).m_orders.at(0).m_nOverFreqMode, 2);
}

TEST_F(LineSource, WithoutABatchNothingIsReportedOrPlaced) {
    add(3);
    runPass();
    EXPECT_EQ(steps, CSteps{"take"});
}

TEST_F(LineSource, AFailureAfterTheLinesKeepsTheirOrders) {
    add(3).waiting.push_back({{"23,1,10.5,600000,100"}, true});
    runPass();
    EXPECT_EQ(steps, (CSteps{"take", "end", "finish after 1 orders", "report", "gate", "let go"}));
    EXPECT_TRUE(host.audit.reports.at(0).m_bCutShort);
    EXPECT_EQ(host.audit.reports.at(0).m_strCause, QStringLiteral("line 1: torn"));
    EXPECT_EQ(gate.batches.at(0).size(), 1);
}

TEST_F(LineSource, IsLetGoAlsoIfTheGateThrows) {
    add(3).waiting.push_back({{"23,1,10.5,600000,100"}});
    gate.onPlace = [] { throw std::runtime_error("refused"); };
    EXPECT_THROW(runPass(), std::runtime_error);
    EXPECT_EQ(steps.back(), "let go");
}

TEST_F(LineSource, EachStrategyReadsFromTheFirstKindThatServesIt) {
    add(3).waiting.push_back({{"23,1,10.5,600000,100"}});
    add(4).waiting.push_back({{"24,1,10.6,000001,200"}});
    auto spare = std::make_unique<CMemoryKind>(3, steps);
    spare->waiting.push_back({{"24,1,10.6,000001,200"}});
    kinds.push_back(std::move(spare));
    runPass();
    ASSERT_EQ(gate.batches.size(), 2u);
    EXPECT_EQ(gate.batches[0].at(0).m_nChannel, 3);
    EXPECT_EQ(gate.batches[0].at(0).m_nOrderType, 23);
    EXPECT_EQ(gate.batches[1].at(0).m_nChannel, 4);
    runPass();
    EXPECT_EQ(gate.batches.size(), 2u);
}

TEST_F(LineSource, AStoppedStrategyIsNotServed) {
    add(3).waiting.push_back({{"23,1,10.5,600000,100"}});
    registry.strategies[3].m_nStatus = COrderStrategyParam::kStopped;
    runPass();
    EXPECT_TRUE(steps.empty());
}

} // namespace
