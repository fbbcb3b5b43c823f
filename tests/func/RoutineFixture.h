#pragma once

#include "orderservice/func/FuncParser.h"
#include "orderservice/func/FuncStrategy.h"
#include "orderservice/func/OrderRoutines.h"
#include "tests/func/AccountFakes.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeHost.h"

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <cfloat>
#include <map>
#include <string>
#include <utility>
#include <vector>

/// What the failure call-back of a caller got.
struct CFailure {
    int id;
    std::string key, text;
};

/// Calls an order routine with a parameter text, as a caller of function trading does.
class RoutineFixture : public testing::Test {
protected:
    RoutineFixture() {
        for (const char* key : {"A1", "A2"})
            addData(key);
        host.user.kind = 90;
    }
    /// Gives an account data without a limit.
    CFakeFuncAccount& addData(const std::string& key) {
        const auto account = boost::make_shared<CFakeFuncAccount>(host.user.accounts.at(key));
        account->m_dUsable = DBL_MAX;
        host.tasks.accountData[key] = account;
        accounts[key] = account;
        return *account;
    }
    void addFutureAccount(const std::string& key) {
        host.user.addAccount(key, TC::EQDBrokerType::Future);
        addData(key);
    }
    fake::CQuote& addQuote(const QString& key, double price, double low, double high) {
        const auto quote = boost::make_shared<fake::CQuote>();
        quote->all(price);
        quote->m_dFallbackPrice = low;
        quote->m_dUpperLimit = high;
        host.quotes.quotes[key] = quote;
        return *quote;
    }
    /// The parameter text of a call: the defaults with these changes.
    std::string textOf(const std::map<std::string, std::string>& changes = {}) const {
        auto keys = defaults;
        for (const auto& [key, value] : changes)
            keys[key] = value;
        std::string text = "{";
        for (const auto& [key, value] : keys)
            text += (text.size() > 1 ? ",\"" : "\"") + key + "\":" + value;
        return text + "}";
    }
    using CRoutine = void (*)(const TC::COrderFuncParam&, const TC::COrderStrategyParam&,
                              const TC::CFuncReporter&);
    /// Reads the keys over those of `defaults`, and runs the routine.
    void call(CRoutine routine, const std::map<std::string, std::string>& changes = {}) {
        param = TC::COrderFuncParam();
        param.m_strFuncName = QStringLiteral("passorder");
        std::string error;
        TC::parserParam(param, textOf(changes), error);
        EXPECT_EQ(error, "");
        callParsed(routine);
    }
    void callParsed(CRoutine routine) {
        std::string error;
        strategy = TC::getStrategy(param, error);
        EXPECT_EQ(error, "");
        failures.clear();
        const TC::COrderFailedCallback callback = [this](const int& id, const std::string& key,
                                                         const utils::KNError& failure) {
            failures.push_back({id, key, failure.errorMsg()});
        };
        routine(param, strategy, TC::CFuncReporter(param.m_strTradeKey, callback));
    }
    /// Forgets what reached the host.
    void forget() {
        host.orders.commands.clear();
        host.orders.errors.clear();
        host.messages.messages.clear();
    }
    TC::COrderComandParamPtr onlyCommand() {
        EXPECT_EQ(host.commands().size(), 1u);
        if (host.commands().empty()) return boost::make_shared<TC::COrderComandParam>();
        return host.commands().back();
    }
    /// The only failure: its text reached the user, a window and the caller. Nothing was sent.
    void expectFull(const QString& text) {
        EXPECT_TRUE(host.commands().empty());
        expectReports({text}, {text}, {text});
    }
    /// Texts of the message panel, of windows, and of the call-back.
    void expectReports(const std::vector<QString>& messages, const std::vector<QString>& windows,
                       const std::vector<QString>& calls) {
        EXPECT_EQ(textsOf(host.messageTexts()), textsOf(messages));
        EXPECT_EQ(textsOf(host.errorTexts()), textsOf(windows));
        std::vector<std::string> called;
        for (const CFailure& failure : failures)
            called.push_back(failure.text);
        EXPECT_EQ(called, textsOf(calls));
    }
    static std::vector<std::string> textsOf(const std::vector<QString>& texts) {
        std::vector<std::string> result;
        for (const QString& text : texts)
            result.push_back(text.toStdString());
        return result;
    }

    CFakeClock clock;
    CFakeHost host;
    std::map<std::string, boost::shared_ptr<CFakeFuncAccount>> accounts;
    std::map<std::string, std::string> defaults; ///< the keys of a call that succeeds
    TC::COrderFuncParam param;
    TC::COrderStrategyParam strategy;
    std::vector<CFailure> failures;
};
