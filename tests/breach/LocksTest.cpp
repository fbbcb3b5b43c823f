// Finds the operations that the library calls while it holds the lock of an account's data. docs/host.md must
// list them.
#include "tests/breach/BreachRows.h"
#include "tests/docs/PageTable.h"

#include <limits>

namespace {

using namespace breach;

class BreachLocks : public testing::Test {
protected:
    static constexpr int kBasketChannel = 12;

    void SetUp() override {
        const auto position = boost::make_shared<knservice::CPositionStatics>();
        position->m_account = run.host.user.accounts.at("A1");
        position->m_strMarket = "SH";
        position->m_strCode = "600000";
        position->m_nPositionVolume = position->m_nAvailableVolume = 700;
        run.host.tasks.position = position;
    }
    /// Loads the strategies; the basket strategy uses this price type.
    void load(TC::EPriceType priceType) {
        run.host.user.strategies[kBasketChannel].setting(TC::ESettingSlot::StockBasket).m_ePriceType =
            priceType;
        run.load();
    }
    /// Sells all positions. The host sets this price on each record.
    void sellAllAt(double price) {
        run.host.rules.onFixTimeRange = [=](TC::CCodeOrderParam& record) { record.m_dPrice = price; };
        TC::COrderParam order = COrderBuilder(26).channel(kBasketChannel);
        order.m_bAll = true;
        run.place(order);
        run.waitForService();
    }
    void expectOnThePage() {
        const std::set<std::string> onPage = operationsWithTheDataOnThePage();
        for (const std::string& operation : run.host.breaches.underDataLock())
            EXPECT_EQ(onPage.count(operation), 1u) << operation;
    }
    static std::set<std::string> operationsWithTheDataOnThePage() {
        std::set<std::string> operations;
        for (const CTableRow& row : readTable(std::string(ORDERSERVICE_SOURCE_DIR) + "/docs/host.md",
                                              "## Threads, locks and call-backs")) {
            if (row.at("Locks held").find("data") == std::string::npos) continue;
            for (const std::string& operation : codeSpans(row.at("Operations")))
                operations.insert(operation);
        }
        return operations;
    }
    bool isCalled(const char* operation) { return run.host.breaches.underDataLock().count(operation) == 1; }

    CBreachRun run;
};

TEST_F(BreachLocks, SaleOfAllPositionsAtAQuotesPrice) {
    load(TC::EPriceType::Latest);
    sellAllAt(10.5);
    EXPECT_EQ(run.commandCount(), 1u);
    EXPECT_TRUE(isCalled("getOriginPrice"));
    EXPECT_TRUE(isCalled("orderSettingToParam"));
    expectOnThePage();
}

TEST_F(BreachLocks, SaleOfAllPositionsThatIsRefusedForItsPrice) {
    load(TC::EPriceType::Specified);
    sellAllAt(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(run.commandCount(), 0u);
    EXPECT_TRUE(isCalled("knPriceTypeToString"));
    sellAllAt(0.0);
    EXPECT_EQ(run.commandCount(), 0u);
    EXPECT_TRUE(isCalled("showTradeError"));
    EXPECT_TRUE(isCalled("hasUserAuth"));
    expectOnThePage();
}

TEST_F(BreachLocks, TargetPositions) {
    run.host.switches.on.insert("mdl_order_compose_basket_buy_sell");
    load(TC::EPriceType::Latest);
    run.place(CBreachRun::order(kBasketChannel, 34, 10.5, 300));
    run.waitForService();
    EXPECT_EQ(run.commandCount(), 1u);
    EXPECT_TRUE(isCalled("getVector"));
    expectOnThePage();
}

} // namespace
