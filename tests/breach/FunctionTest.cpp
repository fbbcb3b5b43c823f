// Breaks each operation of the host while function trading calls it.
#include "tests/breach/BreachRows.h"
#include "tests/breach/FunctionCalls.h"
#include "tests/docs/PageTable.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>
#include <future>
#include <memory>
#include <ostream>
#include <regex>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using namespace breach;

/// What the failure of an operation does to the call.
enum class EEnd {
    Thrown,     ///< the call ends: its caller gets the error, and the user one message
    OnlyThrown, ///< the same without a message
    Reported,   ///< the user gets the message, and the call goes on
};

/// An operation of the host, and a function call that reaches it.
struct CFunctionRow {
    const char* m_pszOperation;
    void (*m_pfnCall)(CBreachRun& run);
    EEnd m_eEnd = EEnd::Thrown;
};

std::ostream& operator<<(std::ostream& out, const CFunctionRow& row) {
    return out << row.m_pszOperation;
}

const std::vector<CFunctionRow> kFunctionRows = {
    {"CUserManager::getUserConfig", calls::stock},
    {"CUserConfig::getDefaultOrderSettings", calls::stock},
    {"CUserConfig::getAccounts", calls::stock},
    {"CUserConfig::hasAccount", calls::stock},
    {"CUserConfig::getAccountGroupConst", calls::group},
    {"CUserConfig::getAccountsWeights", calls::stock},
    {"CUserConfig::getMsgFlags", calls::stock},
    {"CUserConfig::getUserName", calls::stock},
    {"CUserConfig::getUserKind", calls::stock},
    {"CUserConfig::getBaskets", calls::stockBasket},
    {"CAccount::toInfo", calls::stock},
    {"CAccount::key", calls::stock},
    {"CAccountInfo::getKey", calls::stock},
    {"CAccountInfo::keyWith", calls::smart},
    {"CTradingRules::accountDisplayIDQs", calls::stock},
    {"CTradingRules::orderStrategyTradeTypeToBrokerType", calls::stock},
    {"CTradingRules::orderStrategyOrderTypeToString", calls::stock},
    {"CTradingRules::orderStrategyTradeTypeToString", calls::stock},
    {"CTradingRules::orderStrategyTypeToOrderTitle", calls::optionOnAStock},
    {"CTradingRules::knPriceTypeToString", calls::stockWithoutPrice},
    {"CTradingRules::orderSettingToParam", calls::stock},
    {"CTradingRules::fixTimeRange", calls::stock},
    {"CTradingRules::isBuy", calls::smart},
    {"CTradingRules::operationTypeToEntrustType", calls::credit},
    {"CTradingRules::qdStockKey", calls::stockBasket},
    {"CTradeClient::getLoginStatus", calls::stock},
    {"CTradeClient::splitEntrusts", calls::option},
    {"CTradeClient::cancelOrder", calls::cancelAll},
    {"CExchangeClient::hasStock", calls::stock},
    {"CExchangeClient::hasFuture", calls::future},
    {"CExchangeClient::hasOption", calls::option},
    {"CExchangeClient::hasHkstock", calls::unknownConnectCode},
    {"CExchangeClient::hasSkstock", calls::unknownConnectCode},
    {"CExchangeClient::getCodeInfo", calls::stock},
    {"CQuoteClient::getStockPrice", calls::stock},
    {"CQuoteClient::subscribe", calls::stock},
    {"CPriceData::getOriginPrice", calls::latest},
    {"CPriceData::getPriceForCalc", calls::latest},
    {"CPriceData::getPriceForOrder", calls::latest},
    {"CInstrumentTypes::isTypedStock", calls::stock},
    {"CInstrumentTypes::getTradeMinUnit", calls::stock},
    {"TraderCenter::getDataCenter", calls::stock},
    {"TraderCenter::getCalculator", calls::volumeOfARepayment, EEnd::OnlyThrown},
    {"ICalculator::getVolumeLimit", calls::volumeOfARepayment, EEnd::OnlyThrown},
    {"CDataCenter::getAccountData", calls::stock},
    {"CDataCenter::getAccountKey", calls::cancelAll},
    {"CAccountData::getUsableVolume", calls::stock},
    {"CAccountData::getAccountDetail", calls::stockBasketByRatio},
    {"CAccountData::getAccountInfo", calls::cancelAll},
    {"CAccountData::getVector", calls::cancelAll},
    {"CAccountData::getMapDataRef", calls::futureBasketByMoney},
    {"CAccountData::lock", calls::futureBasketByMoney},
    {"CAccountData::unlock", calls::futureBasketByMoney, EEnd::Reported},
    {"CTimeService::currentMilliseconds", calls::smart},
    {"LuaModuleCtrl::checkModule", calls::stock},
    {"CMsgService::showMsg", calls::stock},
    {"COrderClient::showTradeError", calls::stockWithoutPrice},
    {"COrderClient::orderCommands", calls::stock},
    {"CIntakeAudit::recordIncident", calls::basketWithoutRows, EEnd::Reported},
    {"CFormulaManager::registerOrderCallBack", calls::init, EEnd::OnlyThrown},
};

class FunctionBreach : public testing::TestWithParam<CFunctionRow> {
protected:
    std::string operation() const { return GetParam().m_pszOperation; }

    /// The messages and audit reports that name the operation.
    std::ptrdiff_t reports() const {
        const auto texts = run.host.reports();
        return std::count_if(texts.begin(), texts.end(), [&](const std::string& text) {
            return text.find(operation()) != std::string::npos;
        });
    }
    std::size_t cancels() const {
        return run.host.records.snapshot([this] { return run.host.trade.cancelledOrders.size(); });
    }
    void expectGoodCall() {
        const std::size_t before = run.commandCount();
        calls::stock(run);
        EXPECT_EQ(run.hostError, "");
        EXPECT_EQ(run.commandCount(), before + 1);
    }
    /// The operation throws during the call. cause: the text of the exception.
    void expectEnd(const std::function<void()>& act, const std::string& cause) {
        const EEnd end = GetParam().m_eEnd;
        const std::size_t commands = run.commandCount();
        const std::ptrdiff_t before = reports();
        int failures = 0;
        TC::COrderFuncService::instance()->registOrderFailedCallback(
            [&](const int&, const std::string&, const utils::KNError&) { ++failures; });
        run.host.breaches.arm(operation(), act);
        GetParam().m_pfnCall(run);
        run.host.breaches.disarm();
        EXPECT_EQ(run.hostError, end == EEnd::Reported ? "" : operation() + ": " + cause);
        EXPECT_EQ(reports() - before, end == EEnd::OnlyThrown ? 0 : 1);
        EXPECT_EQ(run.commandCount(), end == EEnd::Reported ? commands + 1 : commands);
        EXPECT_EQ(cancels(), 0u);
        EXPECT_EQ(failures, 0) << "the caller has the error already";
        TC::COrderFuncService::instance()->registOrderFailedCallback({});
        if (run.hostError.find("registerOrderCallBack") != std::string::npos) run.renewFunctions();
        expectGoodCall();
    }

    CBreachRun run;
};

TEST_P(FunctionBreach, ErrorReachesTheCallerAndTheUserAndNothingIsSent) {
    expectEnd([] { throw std::runtime_error("broken"); }, "broken");
    expectEnd([] { throw 1; }, "an exception of an unknown type");
}

/// Inside the operation the host orders by another call, and ends function trading, which is refused.
TEST_P(FunctionBreach, OperationMayOrderAndCannotEndTheService) {
    bool hasCalled = false;
    run.host.breaches.arm(operation(), [&] {
        if (std::exchange(hasCalled, true)) return;
        TC::COrderFuncService::release();
        TC::releaseHost();
        calls::stock(run);
    });
    GetParam().m_pfnCall(run);
    run.host.breaches.disarm();
    EXPECT_TRUE(hasCalled);
    EXPECT_EQ(run.hostError, "");
    ASSERT_NE(TC::COrderFuncService::instance(), nullptr);
    ASSERT_TRUE(TC::isHostInstalled());
    EXPECT_TRUE(run.host.waitForReport("不能在回调中关闭函数交易服务"));
    EXPECT_GE(run.commandCount(), 1u);
    expectGoodCall();
}

/// Meanwhile calls of other threads go on.
TEST_P(FunctionBreach, OperationThatWaitsHoldsUpOnlyItsOwnCall) {
    constexpr std::chrono::seconds kLongest{60};
    const auto hasWaited = std::make_shared<std::atomic<bool>>(false);
    const auto entered = std::make_shared<std::promise<void>>();
    std::promise<void> goOn;
    std::shared_future<void> released = goOn.get_future();
    run.host.breaches.arm(operation(), [=] {
        if (hasWaited->exchange(true)) return;
        entered->set_value();
        released.wait_for(kLongest);
    });
    std::thread waiting([this] { GetParam().m_pfnCall(run); });
    EXPECT_EQ(entered->get_future().wait_for(kLongest), std::future_status::ready);
    const std::size_t before = run.commandCount();
    TC::COrderFuncService::instance()->doParserOrder("passorder", calls::orderText(), {});
    EXPECT_EQ(run.commandCount(), before + 1);
    goOn.set_value();
    waiting.join();
    EXPECT_EQ(run.hostError, "");
}

std::string functionRowName(const testing::TestParamInfo<CFunctionRow>& info) {
    return std::regex_replace(std::string(info.param.m_pszOperation), std::regex("::"), "_");
}

INSTANTIATE_TEST_SUITE_P(Operations, FunctionBreach, testing::ValuesIn(kFunctionRows), functionRowName);

class FunctionTrading : public testing::Test {
protected:
    /// The operations that all calls of the table reach together.
    std::set<std::string> reached() {
        run.host.breaches.forgetCalls();
        for (const CFunctionRow& row : kFunctionRows)
            row.m_pfnCall(run);
        return run.host.breaches.called();
    }
    CBreachRun run;
};

TEST_F(FunctionTrading, EveryOperationThatACallReachesHasARow) {
    std::set<std::string> rows;
    for (const CFunctionRow& row : kFunctionRows)
        EXPECT_TRUE(rows.insert(row.m_pszOperation).second) << row.m_pszOperation;
    for (const std::string& operation : reached())
        EXPECT_EQ(rows.count(operation), 1u) << operation;
}

/// The operations in the page's rows that have one of the words in this column.
std::set<std::string> operationsOnThePage(const std::string& column, const std::vector<std::string>& words) {
    std::set<std::string> operations;
    for (const CTableRow& row : readTable(std::string(ORDERSERVICE_SOURCE_DIR) + "/docs/host.md",
                                          "## Threads, locks and call-backs")) {
        const std::string& cell = row.at(column);
        if (std::none_of(words.begin(), words.end(),
                         [&](const std::string& word) { return cell.find(word) != std::string::npos; }))
            continue;
        for (const std::string& operation : codeSpans(row.at("Operations")))
            operations.insert(operation);
    }
    return operations;
}

TEST_F(FunctionTrading, PageSaysWhichOperationsACallReaches) {
    std::set<std::string> reachedNames;
    for (const std::string& operation : reached())
        reachedNames.insert(operation.substr(operation.rfind(':') + 1));
    reachedNames.erase("registerOrderCallBack"); // of init
    const std::set<std::string> onPage = operationsOnThePage("Thread", {"function", "any"});
    for (const std::string& operation : reachedNames)
        EXPECT_EQ(onPage.count(operation), 1u) << operation;
    std::set<std::string> named = operationsOnThePage("Thread", {"function"});
    named.erase("registOrderFailedCallback"); // of the library
    for (const std::string& operation : named)
        EXPECT_EQ(reachedNames.count(operation), 1u) << operation;
    const std::set<std::string> withData = operationsOnThePage("Locks held", {"data"});
    for (const std::string& operation : run.host.breaches.underDataLock())
        EXPECT_EQ(withData.count(operation), 1u) << operation;
}

/// The message about one cancelled order must not keep the other orders open.
TEST_F(FunctionTrading, PanelThatFailsKeepsNoOrderOpen) {
    for (const char* operation : {"CMsgService::showMsg", "CUserConfig::getMsgFlags"}) {
        run.host.trade.cancelledOrders.clear();
        run.host.breaches.arm(operation, [] { throw std::runtime_error("broken"); });
        calls::cancelAll(run);
        run.host.breaches.disarm();
        EXPECT_EQ(run.hostError, std::string(operation) + ": broken");
        EXPECT_EQ(run.host.trade.cancelledOrders.size(), 2u);
    }
}

/// Of several accounts none gets an order, if the host throws at one of them.
TEST_F(FunctionTrading, ErrorAtTheSecondAccountSendsNothingForTheFirst) {
    run.host.user.groups.clear();
    run.host.user.addGroup(TC::EQDBrokerType::Stock, "G", {{"A1", 1.0}, {"A1", 1.0}});
    int asked = 0;
    run.host.breaches.arm("CAccountData::getUsableVolume", [&] {
        if (++asked == 2) throw std::runtime_error("broken");
    });
    calls::group(run);
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(run.hostError, "CAccountData::getUsableVolume: broken");
    EXPECT_EQ(run.commandCount(), 0u);
}

TEST_F(FunctionTrading, InitMayBeRepeatedAfterAnError) {
    run.host.breaches.arm("CFormulaManager::registerOrderCallBack",
                          [] { throw std::runtime_error("broken"); });
    run.renewFunctions();
    EXPECT_EQ(run.hostError, "CFormulaManager::registerOrderCallBack: broken");
    int refusals = 0;
    TC::COrderFuncService::instance()->registOrderFailedCallback(
        [&](const int&, const std::string&, const utils::KNError&) { ++refusals; });
    const auto command = boost::make_shared<knservice::COrderCommand>();
    command->m_strTradeKey = "x|key|7";
    emit run.host.trade.sigOrderCheckFailed(command, utils::KNError(3, "no money"));
    EXPECT_EQ(refusals, 0);
    run.host.breaches.disarm();
    run.attempt([](TC::COrderFuncService& functions) { functions.init(); });
    EXPECT_EQ(run.hostError, "");
    emit run.host.trade.sigOrderCheckFailed(command, utils::KNError(3, "no money"));
    EXPECT_EQ(refusals, 1);
}

TEST_F(FunctionTrading, EachOfTenCallersGetsItsOwnErrors) {
    constexpr int kCallers = 10;
    constexpr int kCalls = 20;
    thread_local bool t_isBroken = false;
    run.host.breaches.arm("CAccountData::getUsableVolume", [] {
        if (t_isBroken) throw std::runtime_error("broken");
    });
    std::atomic<int> wrong{0};
    std::vector<std::thread> callers;
    for (int caller = 0; caller < kCallers; ++caller) {
        callers.emplace_back([&wrong, caller] {
            t_isBroken = caller % 2 == 0;
            for (int call = 0; call < kCalls; ++call) {
                bool hasThrown = false;
                try {
                    TC::COrderFuncService::instance()->doParserOrder("passorder", calls::orderText(), {});
                } catch (const TC::CHostError&) {
                    hasThrown = true;
                }
                if (hasThrown != t_isBroken) ++wrong;
            }
        });
    }
    for (std::thread& caller : callers)
        caller.join();
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(run.commandCount(), static_cast<std::size_t>(kCallers / 2 * kCalls));
}

/// A formula manager may call back at once, before init has returned.
TEST_F(FunctionTrading, ModelMayOrderWhileItsCallbackIsRegistered) {
    run.host.breaches.arm("CFormulaManager::registerOrderCallBack",
                          [this] { run.host.formulas.callback("passorder", calls::orderText()); });
    run.renewFunctions();
    EXPECT_EQ(run.hostError, "");
    EXPECT_EQ(run.commandCount(), 1u);
}

/// The models' callback throws what the call throws. The formula manager lets it pass, so init ends.
TEST_F(FunctionTrading, ErrorOfACallInsideInitEndsInit) {
    run.host.breaches.arm("CFormulaManager::registerOrderCallBack", [this] {
        run.host.breaches.arm("CUserConfig::getAccounts", [] { throw std::runtime_error("broken"); });
        run.host.formulas.callback("passorder", calls::orderText());
    });
    run.renewFunctions();
    EXPECT_EQ(run.hostError, "CUserConfig::getAccounts: broken");
    EXPECT_EQ(run.commandCount(), 0u);
    run.host.breaches.disarm();
    run.attempt([](TC::COrderFuncService& functions) { functions.init(); });
    EXPECT_EQ(run.hostError, "");
    run.host.formulas.callback("passorder", calls::orderText());
    EXPECT_EQ(run.commandCount(), 1u);
}

} // namespace
