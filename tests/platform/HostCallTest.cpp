#include "orderservice/platform/HostCall.h"

#include "orderservice/platform/ExchangeClient.h"
#include "orderservice/platform/TradeClient.h"
#include "orderservice/platform/TradingRules.h"
#include "orderservice/platform/UserConfig.h"
#include "tests/support/FakeHost.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace {

using namespace TC;

// The compiler computes the name, so no work is left for run time.
static_assert(operationName<&CTradeClient::cancelTask>() == "CTradeClient::cancelTask");
static_assert(operationName<&CUserConfig::hasUserAuth>() == "CUserConfig::hasUserAuth");

TEST(HostCall, OperationOfAServiceHasTheServicesName) {
    EXPECT_EQ(operationName<&CUserManager::getUserConfig>(), "CUserManager::getUserConfig");
    EXPECT_EQ(operationName<&CExchangeClient::getMaxTradingDay>(), "CExchangeClient::getMaxTradingDay");
    EXPECT_EQ(operationName<&CPriceData::getOriginPrice>(), "CPriceData::getOriginPrice");
}

// Reports do not show the base classes of a large service, because their readers know only the service.
TEST(HostCall, OperationOfAThemeHasTheServicesName) {
    EXPECT_EQ(operationName<&CUserConfig::getUserName>(), "CUserConfig::getUserName");
    EXPECT_EQ(operationName<&CUserConfig::getAccountData>(), "CUserConfig::getAccountData");
    EXPECT_EQ(operationName<&CUserConfig::getStrategyMap>(), "CUserConfig::getStrategyMap");
    EXPECT_EQ(operationName<&CTradingRules::qdStockKey>(), "CTradingRules::qdStockKey");
    EXPECT_EQ(operationName<&CTradingRules::isBuy>(), "CTradingRules::isBuy");
    EXPECT_EQ(operationName<&CTradingRules::knPriceTypeToString>(), "CTradingRules::knPriceTypeToString");
    EXPECT_EQ(operationName<&CExchangeClient::hasGold>(), "CExchangeClient::hasGold");
    EXPECT_EQ(operationName<&CUserRights::getUserName>(), "CUserConfig::getUserName");
}

/// The text of the CHostError that the call throws; empty if it throws none.
template<typename Call>
std::string errorOf(const Call& call) {
    try {
        call();
    } catch (const CHostError& error) {
        return error.what();
    }
    return {};
}

class CThrowingUser : public fake::CUser {
public:
    std::string getUserName() const override { throw std::runtime_error("no name"); }
    CBasketMap getBaskets() const override { throw 1; }
};

class CThrowingExchange : public fake::CExchange {
public:
    bool hasGold(const QString&) override { throw std::runtime_error("no list"); }
};

TEST(HostCall, ExceptionOfAThemesOperationNamesTheService) {
    const CThrowingUser user;
    const CUserConfig& config = user;
    EXPECT_EQ(errorOf([&] { hostCall<&CUserConfig::getUserName>.on(config); }),
              "CUserConfig::getUserName: no name");
    EXPECT_EQ(errorOf([&] { hostCall<&CUserConfig::getBaskets>.on(config); }),
              "CUserConfig::getBaskets: an exception of an unknown type");
}

TEST(HostCall, OperationOfAThemeReachesTheInstalledService) {
    CFakeHost host;
    host.exchange.addOther("gold", QStringLiteral("GOLDAu99"));
    EXPECT_TRUE(hostCall<&CExchangeClient::hasGold>(QStringLiteral("GOLDAu99")));
    EXPECT_FALSE(hostCall<&CExchangeClient::hasGold>(QStringLiteral("GOLDAg99")));
    releaseHost();

    CThrowingExchange exchange;
    CHost services = host.services();
    services.exchangeClient = &exchange;
    ASSERT_TRUE(installHost(services).isSuccess());
    EXPECT_EQ(errorOf([] { hostCall<&CExchangeClient::hasGold>(QStringLiteral("GOLDAu99")); }),
              "CExchangeClient::hasGold: no list");
}

} // namespace
