#include "orderservice/intake/OrderFileSource.h"

#include "tests/support/Builders.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeHost.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace TC;

class OrderFileSource : public testing::Test {
protected:
    static constexpr int kFileChannel = 3;

    COrderStrategyParam strategy() const {
        return CStrategyBuilder().channel(kFileChannel).file(folder.path("a.txt"));
    }
    std::unique_ptr<ILineSource> take() { return kind.take(kFileChannel, strategy()); }
    void turnGuardOn() { host.switches.on.insert("mdl_order_file_guard"); }
    const CIntakeReport& report(std::size_t index = 0) const { return host.audit.reports.at(index); }

    static std::vector<std::string> linesOf(ILineSource& source) {
        std::vector<std::string> lines;
        std::string line;
        for (int row = -1; source.readLine(line, row); row = -1) {
            EXPECT_EQ(row, 0);
            lines.push_back(line);
        }
        return lines;
    }

    CTempFolder folder;
    CFakeClock clock;
    CFakeHost host;
    COrderFileSourceKind kind;
};

using CLines = std::vector<std::string>;

TEST_F(OrderFileSource, ServesFileStrategiesWithAPath) {
    EXPECT_TRUE(kind.serves(strategy()));
    COrderStrategyParam batch = strategy();
    batch.m_eStrategyType = EOrderStrategyType::BatchPending;
    EXPECT_TRUE(kind.serves(batch));

    COrderStrategyParam table = strategy();
    table.m_nAccountMode = COrderStrategyParam::kTableMode;
    EXPECT_FALSE(kind.serves(table));
    COrderStrategyParam socket = strategy();
    socket.m_eStrategyType = EOrderStrategyType::Signal;
    EXPECT_FALSE(kind.serves(socket));
    COrderStrategyParam pathless = strategy();
    pathless.m_strSignalSource.clear();
    EXPECT_FALSE(kind.serves(pathless));
}

TEST_F(OrderFileSource, GivesTheLinesOfTheFileAndDeletesItWhenItLetsGo) {
    folder.write("a.txt", "23,0,10.5,600000,100\r\n24,0\n25");
    auto source = take();
    ASSERT_NE(source, nullptr);
    EXPECT_FALSE(folder.exists("a.txt"));
    EXPECT_TRUE(folder.exists("a.txt.tmp"));
    EXPECT_EQ(source->bytes(), 29);
    EXPECT_EQ(linesOf(*source), (CLines{"23,0,10.5,600000,100\n", "24,0\n", "25"}));
    CIntakeReport reported;
    source->finish(reported);
    EXPECT_TRUE(folder.exists("a.txt.tmp"));
    source.reset();
    EXPECT_FALSE(folder.exists("a.txt.tmp"));
    EXPECT_FALSE(reported.m_bCutShort);
    EXPECT_TRUE(host.audit.reports.empty());
}

/// The orders of the batch may have gone out already.
TEST_F(OrderFileSource, ABatchThatIsNotReadToItsEndIsNotOfferedAgain) {
    folder.write("a.txt", "23,0,10.5,600000,100\n");
    take().reset();
    EXPECT_EQ(take(), nullptr);
    EXPECT_FALSE(folder.exists("a.txt"));
    EXPECT_FALSE(folder.exists("a.txt.tmp"));
}

TEST_F(OrderFileSource, NothingIsTakenOrReportedWithoutAFile) {
    EXPECT_EQ(take(), nullptr);
    EXPECT_TRUE(host.audit.reports.empty());
}

TEST_F(OrderFileSource, AnErrorWhileReadingIsThrownAfterTheLinesBeforeIt) {
    std::filesystem::create_symlink("/proc/self/mem", folder.path("a.txt"));
    const auto source = take();
    ASSERT_NE(source, nullptr);
    EXPECT_THROW(linesOf(*source), std::runtime_error);
}

TEST_F(OrderFileSource, ADamagedFileIsRefusedUnderTheGuardOnly) {
    folder.write("a.txt", "23,0,10.5,600000,1");
    EXPECT_NE(take(), nullptr);
    turnGuardOn();
    folder.write("a.txt", "23,0,10.5,600000,1");
    EXPECT_EQ(take(), nullptr);
    ASSERT_EQ(host.audit.reports.size(), 1u);
    EXPECT_TRUE(report().m_bRejected);
    EXPECT_EQ(report().m_nChannel, kFileChannel);
    EXPECT_FALSE(report().m_strKeptAs.isEmpty());
    EXPECT_FALSE(folder.exists("a.txt.tmp"));
}

TEST_F(OrderFileSource, BytesWrittenAfterTheCheckOfTheGuardAreNotRead) {
    turnGuardOn();
    folder.write("a.txt", "23,0\n");
    auto source = take();
    ASSERT_NE(source, nullptr);
    folder.write("a.txt.tmp", "23,0\n24,0\n");
    EXPECT_EQ(linesOf(*source), CLines{"23,0\n"});
    CIntakeReport reported;
    source->finish(reported);
    EXPECT_TRUE(reported.m_bCutShort);
    EXPECT_TRUE(reported.m_strKeptAs.contains(QStringLiteral("a.txt.cut.")));
    source.reset();
    EXPECT_TRUE(std::filesystem::exists(reported.m_strKeptAs.toStdString()));
}

/// The link's target is deleted after the file was checked and before it is taken.
TEST_F(OrderFileSource, AFileThatIsGoneWhenItIsTakenIsReportedAsRefused) {
    turnGuardOn();
    folder.write("a.txt.tmp", "left over");
    folder.write("target.txt", "23,0\n");
    std::filesystem::create_symlink("target.txt", folder.path("a.txt"));
    host.audit.onRecord = [this] { std::filesystem::remove(folder.path("target.txt")); };
    EXPECT_EQ(take(), nullptr);
    ASSERT_EQ(host.audit.reports.size(), 2u);
    EXPECT_TRUE(report(0).m_bLeftOver);
    EXPECT_TRUE(report(1).m_bRejected);
    EXPECT_TRUE(report(1).m_strCause.isEmpty());
    EXPECT_TRUE(std::filesystem::is_symlink(report(1).m_strKeptAs.toStdString()));
}

TEST_F(OrderFileSource, KindKnowsBetweenPassesWhatItHasReported) {
    std::filesystem::create_directory(folder.path("a.txt"));
    EXPECT_EQ(take(), nullptr);
    EXPECT_EQ(take(), nullptr);
    ASSERT_EQ(host.audit.reports.size(), 1u);
    EXPECT_TRUE(report().m_bLeftWaiting);
}

} // namespace
