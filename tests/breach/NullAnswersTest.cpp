// A host that returns null or nothing although a value is expected.
#include "tests/breach/BreachRows.h"
#include "tests/support/ServicePeer.h"

#include <atomic>

namespace {

using namespace breach;

class NullAnswers : public testing::Test {
protected:
    void expectGoodOrder() {
        const std::size_t before = run.commandCount();
        run.place(CBreachRun::order(3));
        EXPECT_TRUE(run.waitForCommands(before + 1));
    }
    bool hasReport(const std::string& text) const {
        for (const std::string& report : run.host.reports()) {
            if (report.find(text) != std::string::npos) return true;
        }
        return false;
    }

    CBreachRun run;
};

TEST_F(NullAnswers, WithoutAMapOfStrategiesNoneIsBound) {
    run.host.user.strategyMap = nullptr;
    run.load();
    EXPECT_TRUE(hasReport("CUserConfig::getStrategyMap: there is no map of strategies"));
    EXPECT_FALSE(run.service().hasRunning());
    EXPECT_EQ(run.service().addOrderStrategy(TC::EOrderStrategyType::File), -1);
    run.place(CBreachRun::order(3));
    EXPECT_TRUE(run.host.waitForReport("no user is loaded"));
    EXPECT_EQ(run.commandCount(), 0u);
    run.host.user.strategyMap = &run.host.user.strategies;
    run.load();
    expectGoodOrder();
}

TEST_F(NullAnswers, WithoutAUserNothingGoesOut) {
    run.load();
    run.host.user.loggedIn = false;
    run.place(CBreachRun::order(3));
    run.start(5);
    EXPECT_EQ(run.startResult, -1);
    run.cancel();
    run.waitForService();
    EXPECT_EQ(run.commandCount(), 0u);
    run.host.user.loggedIn = true;
    expectGoodOrder();
}

TEST_F(NullAnswers, NullTaskIsPassedOver) {
    std::atomic<int> operated{0};
    run.host.breaches.arm("CTask::operate", [&] { ++operated; });
    run.load();
    run.drop("cancel 7\n23,0,10.5,600000,100\n");
    EXPECT_TRUE(run.waitForCommands(1));
    EXPECT_EQ(operated, 1);
    EXPECT_FALSE(hasReport("there is no such task"));
    run.host.tasks.hasOnlyNullTasks = true;
    run.drop("cancel 8\n23,0,10.5,600000,100\n");
    EXPECT_TRUE(run.waitForCommands(2));
    EXPECT_EQ(operated, 1);
    EXPECT_TRUE(hasReport("there is no such task"));
}

TEST_F(NullAnswers, NullAccountsGetNothing) {
    run.host.user.nullAccount = true;
    run.load();
    expectGoodOrder();
    run.host.user.accounts["A1"] = nullptr;
    run.place(CBreachRun::order(3));
    run.waitForService();
    const auto commands = run.host.records.snapshot([this] { return run.host.orders.commands; });
    for (const auto& command : commands) {
        for (const TC::CCodeOrderParam& code : command->m_codes)
            EXPECT_NE(code.m_account, nullptr);
    }
}

TEST_F(NullAnswers, EntriesOfTablesThatAreNoneArePassedOver) {
    run.host.tasks.tables[knservice::kPortfolioTable]["1____x"] = nullptr;
    run.load();
    run.ask("placeorder 36,4,1_x");
    EXPECT_EQ(run.reply, "+OK\r\n");
    run.host.breaches.arm("CAccountData::getVector", [] {}); // the only entry is null
    TC::COrderSingleParam target;
    target.m_strCode = QStringLiteral("600000");
    target.m_nVolume = 300;
    QVector<TC::COrderSingleParam> rows{target};
    TC::COrderServicePeer::exchangePosition(run.service(), run.host.user.accounts.at("A1"), rows);
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows.at(0).m_nVolume, 300); // unchanged, because no position is held
    run.waitForService();
    EXPECT_EQ(run.commandCount(), 0u);
}

/// The portfolio order of the socket needs the global account data to find its positions.
TEST_F(NullAnswers, WithoutGlobalDataAPortfolioOrderHasNoLine) {
    run.host.tasks.hasGlobalData = false;
    run.load();
    run.ask("placeorder 36,4,1_x");
    EXPECT_EQ(run.reply, "+OK\r\n");
    run.waitForService();
    EXPECT_EQ(run.commandCount(), 0u);
    expectGoodOrder();
}

} // namespace
