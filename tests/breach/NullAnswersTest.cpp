// A host that returns null or nothing although a value is expected.
#include "tests/breach/BreachRows.h"
#include "tests/support/ServicePeer.h"

#include <atomic>

namespace {

using namespace breach;

class NullAnswers : public testing::Test {
protected:
    void expectGoodOrder() {
        const std::size_t before = road.commandCount();
        road.place(CBreachRoad::order(3));
        EXPECT_TRUE(road.waitForCommands(before + 1));
    }
    bool hasReport(const std::string& text) const {
        for (const std::string& report : road.host.reports()) {
            if (report.find(text) != std::string::npos) return true;
        }
        return false;
    }

    CBreachRoad road;
};

TEST_F(NullAnswers, WithoutAMapOfStrategiesNoneIsBound) {
    road.host.user.strategyMap = nullptr;
    road.load();
    EXPECT_TRUE(hasReport("CUserConfig::getStrategyMap: there is no map of strategies"));
    EXPECT_FALSE(road.service().hasRunning());
    EXPECT_EQ(road.service().addOrderStrategy(TC::EOrderStrategyType::File), -1);
    road.place(CBreachRoad::order(3));
    EXPECT_TRUE(road.host.waitForReport("no user is loaded"));
    EXPECT_EQ(road.commandCount(), 0u);
    road.host.user.strategyMap = &road.host.user.strategies;
    road.load();
    expectGoodOrder();
}

TEST_F(NullAnswers, WithoutAUserNothingGoesOut) {
    road.load();
    road.host.user.loggedIn = false;
    road.place(CBreachRoad::order(3));
    road.start(5);
    EXPECT_EQ(road.startResult, -1);
    road.cancel();
    road.waitForService();
    EXPECT_EQ(road.commandCount(), 0u);
    road.host.user.loggedIn = true;
    expectGoodOrder();
}

TEST_F(NullAnswers, NullTaskIsPassedOver) {
    std::atomic<int> operated{0};
    road.host.breaches.arm("CTask::operate", [&] { ++operated; });
    road.load();
    road.drop("cancel 7\n23,0,10.5,600000,100\n");
    EXPECT_TRUE(road.waitForCommands(1));
    EXPECT_EQ(operated, 1);
    EXPECT_FALSE(hasReport("there is no such task"));
    road.host.tasks.hasOnlyNullTasks = true;
    road.drop("cancel 8\n23,0,10.5,600000,100\n");
    EXPECT_TRUE(road.waitForCommands(2));
    EXPECT_EQ(operated, 1);
    EXPECT_TRUE(hasReport("there is no such task"));
}

TEST_F(NullAnswers, NullAccountsGetNothing) {
    road.host.user.nullAccount = true;
    road.load();
    expectGoodOrder();
    road.host.user.accounts["A1"] = nullptr;
    road.place(CBreachRoad::order(3));
    road.waitForService();
    const auto commands = road.host.records.snapshot([this] { return road.host.orders.commands; });
    for (const auto& command : commands) {
        for (const TC::CCodeOrderParam& code : command->m_codes)
            EXPECT_NE(code.m_account, nullptr);
    }
}

TEST_F(NullAnswers, EntriesOfTablesThatAreNoneArePassedOver) {
    road.host.tasks.tables[knservice::kPortfolioTable]["1____x"] = nullptr;
    road.load();
    road.ask("placeorder 36,4,1_x");
    EXPECT_EQ(road.reply, "+OK\r\n");
    road.host.breaches.arm("CAccountData::getVector", [] {}); // the only entry is null
    TC::COrderSingleParam target;
    target.m_strCode = QStringLiteral("600000");
    target.m_nVolume = 300;
    QVector<TC::COrderSingleParam> rows{target};
    TC::COrderServicePeer::exchangePosition(road.service(), road.host.user.accounts.at("A1"), rows);
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows.at(0).m_nVolume, 300); // unchanged, because no position is held
    road.waitForService();
    EXPECT_EQ(road.commandCount(), 0u);
}

/// The portfolio order of the socket needs the global account data to find its positions.
TEST_F(NullAnswers, WithoutGlobalDataAPortfolioOrderHasNoLine) {
    road.host.tasks.hasGlobalData = false;
    road.load();
    road.ask("placeorder 36,4,1_x");
    EXPECT_EQ(road.reply, "+OK\r\n");
    road.waitForService();
    EXPECT_EQ(road.commandCount(), 0u);
    expectGoodOrder();
}

} // namespace
