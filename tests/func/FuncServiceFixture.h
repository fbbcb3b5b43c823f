#pragma once

#include "orderservice/func/OrderFuncService.h"
#include "tests/func/RoutineFixture.h"

#include <string>

/// Calls the service with a parameter text, as a model does. The defaults buy 300 SH600000 on A1 at 10.4.
class FuncServiceFixture : public RoutineFixture {
protected:
    FuncServiceFixture() {
        addQuote(QStringLiteral("SH600000"), 10.5, 9, 11);
        addQuote(QStringLiteral("SZ000001"), 10.5, 9, 11);
        defaults = {{"opType", "23"},
                    {"orderType", "1101"},
                    {"prType", "11"},
                    {"modelPrice", "\"10.4\""},
                    {"modelVolume", "\"300\""},
                    {"accountID", "\"A1\""},
                    {"orderCode", "\"600000\""},
                    {"tradeKey", "\"x|key|7\""}};
        service.registOrderFailedCallback(
            [this](const int& id, const std::string& key, const utils::KNError& error) {
                failures.push_back({id, key, error.errorMsg()});
            });
    }
    void pass(const std::map<std::string, std::string>& changes = {}) {
        service.doParserOrder("passorder", textOf(changes), {});
    }
    /// A failure whose text reached the user and the caller, but no window. Nothing was sent.
    void expectPlain(const QString& text) {
        EXPECT_TRUE(host.commands().empty());
        expectReports({text}, {}, {text});
        EXPECT_EQ(failures.at(0).id, 7);
        EXPECT_EQ(failures.at(0).key, "key");
    }

    TC::COrderFuncService service;
};
