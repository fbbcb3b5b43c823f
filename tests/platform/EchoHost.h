#pragma once

#include "tests/support/FakeHost.h"

#include <gtest/gtest.h>

#include <string>

/// A host whose rules and types return their arguments. So a test sees that a function passes each argument
/// and the answer on unchanged.
namespace echo {

/// Rules that return their arguments.
class CRules : public fake::CRules {
public:
    QString qdStockKey(const QString& market, const QString& code) override {
        return QStringLiteral("key ") + market + code;
    }
    TC::EQDBrokerType orderStrategyTradeTypeToBrokerType(TC::EOrderStrategyTradeType type) override {
        return static_cast<TC::EQDBrokerType>(static_cast<int>(type) + 1000);
    }
    void orderSettingToParam(const TC::COrderSetting& setting, TC::CCodeOrderParam& record,
                             TC::EOperationType operation, int volume, double price,
                             const TC::CPriceDataPtr& quote) override {
        record.m_ePriceType = setting.m_ePriceType;
        record.m_eOperationType = operation;
        record.m_nVolume = volume;
        record.m_dPrice = price;
        lastQuote = quote;
    }

    TC::CPriceDataPtr lastQuote;
};

/// Types that return their arguments.
class CTypes : public fake::CTypes {
public:
    int getTradeMinUnit(const std::string& market, const std::string& code,
                        TC::EOperationType operation) override {
        asked = market + " " + code + " " + std::to_string(static_cast<int>(operation));
        return 200;
    }
    int getUiMinUnit(const std::string& market, const std::string& code, bool forTrade) override {
        asked = market + " " + code + (forTrade ? " trade" : " show");
        return 10;
    }

    std::string asked;
};

/// Installs a fake host with these rules and types.
class CEchoHost : public testing::Test {
protected:
    CEchoHost() {
        TC::releaseHost();
        TC::CHost services = host.services();
        services.tradingRules = &rules;
        services.instrumentTypes = &types;
        EXPECT_TRUE(TC::installHost(services).isSuccess());
    }

    CFakeHost host;
    CRules rules;
    CTypes types;
};

} // namespace echo
