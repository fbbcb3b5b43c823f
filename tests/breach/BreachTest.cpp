// Breaks each operation of the host in each possible way, while the library calls it.
#include "tests/breach/BreachRows.h"

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <future>
#include <iterator>
#include <memory>
#include <regex>
#include <set>
#include <stdexcept>

namespace {

using namespace breach;

constexpr std::chrono::seconds kDeadline{60};

class Breach : public testing::TestWithParam<CBreachRow> {
protected:
    void SetUp() override {
        if (row().m_pfnPrepare != nullptr) row().m_pfnPrepare(run);
        if (!row().m_bLoads) run.load();
    }
    const CBreachRow& row() const { return GetParam(); }

    /// Arms the operation and makes the library call it. The operation stays armed until it is disarmed.
    void reachWith(const std::function<void()>& act) {
        run.host.breaches.arm(row().m_pszOperation, act);
        row().m_pfnReach(run);
    }

    /// Expects that the next valid order goes out. First repeats a failed load and replaces a service that
    /// drops its orders.
    void expectGoodOrder() {
        run.host.breaches.disarm();
        run.waitForService();
        if (row().m_bLoads) run.load();
        if (row().m_bDrops) run.renewService();
        const std::size_t before = run.commandCount();
        run.place(CBreachRun::order(3));
        EXPECT_TRUE(run.waitForCommands(before + 1));
    }

    /// The operation fails: a report or the error of the call names it, no command goes out, and the service
    /// continues to work.
    void expectReported(const std::function<void()>& act) {
        reachWith(act);
        if (row().m_bOnlyThrows)
            EXPECT_NE(run.hostError.find(row().m_pszOperation), std::string::npos);
        else
            EXPECT_TRUE(run.host.waitForReport(row().m_pszOperation));
        // Another thread may have reported the failure first. The order must meet the failure too.
        run.waitForService();
        run.host.breaches.disarm();
        EXPECT_EQ(run.commandCount(), 0u);
        expectGoodOrder();
    }

    CBreachRun run;
};

TEST_P(Breach, ThrowsAnExceptionOfTheStandardLibrary) {
    expectReported([] { throw std::runtime_error("broken"); });
}

TEST_P(Breach, ThrowsAnExceptionOfAnotherType) {
    struct CForeign {};
    expectReported([] { throw CForeign(); });
}

/// Inside the operation the host ends the service, asks for strategies and places orders.
TEST_P(Breach, CallsBack) {
    // Shared ownership: a thread of the service may read it after the test is over.
    const auto hasCalled = std::make_shared<std::atomic<bool>>(false);
    const auto called = std::make_shared<std::promise<void>>();
    reachWith([this, hasCalled, called] {
        if (hasCalled->exchange(true)) return;
        auto& service = run.service();
        service.shutdown();
        TC::COrderService::release();
        TC::releaseHost();
        const int id = service.addOrderStrategy(TC::EOrderStrategyType::File);
        QString error;
        EXPECT_EQ(service.startOrderStrategy(999, error, true), -1);
        EXPECT_EQ(service.stopOrderStrategy(999, error), 0);
        EXPECT_EQ(service.removeOrderStrategy(id), id != -1 ? 0 : -1);
        (void)service.getStrategyMap();
        (void)service.getStatusBarTip();
        service.placeorder(CBreachRun::order(999));
        service.cancelOrder(999);
        called->set_value();
    });
    EXPECT_EQ(called->get_future().wait_for(kDeadline), std::future_status::ready);
    ASSERT_NE(TC::COrderService::instance(), nullptr);
    ASSERT_TRUE(TC::isHostInstalled());
    EXPECT_TRUE(run.host.waitForReport("不能在下单服务的线程或回调中关闭下单服务"));
    expectGoodOrder();
}

/// Other threads continue to work meanwhile, and the operation returns when the host allows it.
TEST_P(Breach, WaitsForAnotherThread) {
    const auto hasWaited = std::make_shared<std::atomic<bool>>(false);
    const auto entered = std::make_shared<std::promise<void>>();
    std::promise<void> goOn;
    std::shared_future<void> released = goOn.get_future();
    auto reaching = std::async(std::launch::async, [&] {
        reachWith([hasWaited, entered, released] {
            if (hasWaited->exchange(true)) return;
            entered->set_value();
            released.wait_for(kDeadline);
        });
    });
    EXPECT_EQ(entered->get_future().wait_for(kDeadline), std::future_status::ready);
    run.service().placeorder(CBreachRun::order(999));
    (void)run.service().hasRunning();
    (void)run.service().strategyOf(3);
    goOn.set_value();
    reaching.get();
    expectGoodOrder();
}

std::string rowName(const testing::TestParamInfo<CBreachRow>& info) {
    return std::regex_replace(std::string(info.param.m_pszOperation), std::regex("::"), "_");
}

INSTANTIATE_TEST_SUITE_P(Operations, Breach, testing::ValuesIn(kBreachRows), rowName);

/// Collects the operations of the classes in a header: every virtual function except destructors. A
/// large service has its operations in base classes. They are listed under the service.
void collectOperations(const std::filesystem::path& header, std::set<std::string>& operations) {
    std::ifstream file(header);
    const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    const std::regex words(
        R"(\n(?:class|struct) (?:ORDERSERVICE_EXPORT )?(\w+)[^;{]*\{|\n\s*using CService = (\w+);|\n\s*virtual [^;{(]*?(\w+)\()");
    std::string service;
    for (std::sregex_iterator it(text.begin(), text.end(), words), end; it != end; ++it) {
        if ((*it)[1].matched || (*it)[2].matched)
            service = (*it)[1].str() + (*it)[2].str();
        else if ((*it)[0].str().find('~') == std::string::npos)
            operations.insert(service + "::" + (*it)[3].str());
    }
}

/// An operation without a row has no test of its failure.
TEST(BreachTable, EveryOperationOfTheBoundaryHasARow) {
    std::set<std::string> operations;
    for (const auto& entry : std::filesystem::directory_iterator(ORDERSERVICE_SOURCE_DIR "/src/platform")) {
        if (entry.path().extension() == ".h") collectOperations(entry.path(), operations);
    }
    collectOperations(ORDERSERVICE_SOURCE_DIR "/src/records/Account.h", operations);
    operations.insert("CAccountInfo::getKey"); // declared for every record; the library calls it on accounts
    std::set<std::string> rows;
    for (const CBreachRow& row : kBreachRows)
        EXPECT_TRUE(rows.insert(row.m_pszOperation).second) << row.m_pszOperation;
    // Only a confirmation in a window calls these operations, so no order of this program reaches them.
    for (const char* name :
         {"CAccountData::getCanOrderVolume", "CTradingRules::isLong", "CUserConfig::getAccountProduct",
          "CUserConfig::getTableLayout", "CUserConfig::saveTableLayout", "CUserConfig::testGlobalOrderHint",
          "CUserConfig::testHintBeforeOrderFlag"}) {
        if (rows.count(name) == 0) operations.erase(name);
    }
    EXPECT_EQ(rows, operations);
}

} // namespace
