// The answers of the kit for a host without its own answers. No answer may move money.
#include "orderservice/kit/DefaultServices.h"
#include "orderservice/kit/ExchangeClientBase.h"
#include "orderservice/kit/InstrumentTypesBase.h"
#include "orderservice/kit/QuoteBases.h"
#include "orderservice/kit/TradeClientBase.h"
#include "orderservice/kit/UserConfigBase.h"
#include "orderservice/records/OrderTypes.h"
#include "tests/support/FakeClock.h"

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <limits>

namespace {

using namespace TC;

class CUser : public kit::CUserConfigBase {
public:
    bool hasOrderService() const override { return true; }
    std::string getUserName() const override { return "tester"; }
    int getUserKind() const override { return 100; }
    int getMaxOrderServerNum() const override { return 5; }
    CAccountPtr getAccountData(const QString& key) const override {
        if (key != QLatin1String("A1")) return nullptr;
        return boost::make_shared<kit::CPlainAccount>("A1", EQDBrokerType::Stock);
    }
};

struct CFound {
    std::vector<CAccountInfoPtr> accounts;
    std::vector<double> ratios;
};

CFound find(EQDBrokerType broker, ESelectedAccountType kind, const char* name) {
    CFound found;
    CUser().getAccountsWeights(broker, kind, QLatin1String(name), found.accounts, found.ratios, false);
    return found;
}

TEST(KitUser, SingleAccountIsFoundWithRatioOne) {
    const CFound found = find(EQDBrokerType::Stock, ESelectedAccountType::Account, "A1");
    ASSERT_EQ(found.accounts.size(), 1u);
    EXPECT_EQ(found.accounts[0]->getKey(), "A1");
    EXPECT_EQ(found.accounts[0]->m_nBrokerType, static_cast<int>(EQDBrokerType::Stock));
    EXPECT_EQ(found.ratios, std::vector<double>{1.0});
    EXPECT_TRUE(CUser().hasAccount(QStringLiteral("A1")));
}

TEST(KitUser, AccountOfAnotherKindOrNameOrAGroupIsNotFound) {
    EXPECT_TRUE(find(EQDBrokerType::Credit, ESelectedAccountType::Account, "A1").accounts.empty());
    EXPECT_TRUE(find(EQDBrokerType::Stock, ESelectedAccountType::Account, "A2").accounts.empty());
    EXPECT_TRUE(find(EQDBrokerType::Stock, ESelectedAccountType::Account, "").accounts.empty());
    EXPECT_TRUE(find(EQDBrokerType::Stock, ESelectedAccountType::Group, "A1").accounts.empty());
    EXPECT_FALSE(CUser().hasAccount(QStringLiteral("A2")));
    EXPECT_EQ(CUser().getAccountGroupConst(EQDBrokerType::Stock, QStringLiteral("A1")), nullptr);
}

TEST(KitUser, OnlySpecifiedPricesAreAllowedAndSetByDefault) {
    const CUser user;
    for (int type = -1; type <= 60; ++type) {
        const auto priceType = static_cast<EPriceType>(type);
        EXPECT_EQ(user.isPriceTypeValid(priceType, EOperationType::Buy, EQDBrokerType::Stock, "SH", "600000",
                                        EOrderType::Plain),
                  priceType == EPriceType::Specified)
            << type;
    }
    EXPECT_EQ(user.getDefaultOrderSetting(EDefaultSetting::Stock).m_ePriceType, EPriceType::Specified);
}

TEST(KitUser, HasNoRightsGroupsBasketsOrOptionalServices) {
    CUser user;
    EXPECT_FALSE(user.hasUserAuth(EUserAuth::SignalOrders));
    EXPECT_FALSE(user.hasShowTradeFrameworkPermission());
    EXPECT_FALSE(user.hasOrderEncryptionService());
    EXPECT_FALSE(user.hasSimpleAccount(QStringLiteral("A1")));
    EXPECT_TRUE(user.getBaskets().isEmpty());
    EXPECT_EQ(user.getMaxOrderServerNumSocket(), 0);
    EXPECT_GE(user.getMinFileServiceInterval(), 11) << "below 11 the file thread does not sleep";
    EXPECT_EQ(user.getStrategyMap(), user.getStrategyMap());
    EXPECT_TRUE(user.getStrategyMap()->isEmpty());
}

TEST(KitUser, IsAskedBeforeEachBatch) {
    const CUser user;
    for (const int bit : {1, 16, 32, 1024}) {
        EXPECT_TRUE(user.testHintBeforeOrderFlag(bit)) << bit;
        EXPECT_FALSE(user.testGlobalOrderHint(bit)) << bit;
    }
}

class CTrade : public kit::CTradeClientBase {
public:
    EBROKER_LOGIN_STATUS getLoginStatus(const std::string&) override {
        return EBROKER_LOGIN_STATUS::LoggedIn;
    }
    void cancelTask(int, int, const std::string&, const std::string&, const std::string&,
                    const CCancelCallback&, int) override {}
};

class KitTrade : public testing::Test {
protected:
    static std::vector<CAccountInfoPtr> accounts(int count) {
        return std::vector<CAccountInfoPtr>(static_cast<std::size_t>(count),
                                            boost::make_shared<CAccountInfo>());
    }
    std::vector<int> split(int volume, int count) {
        return trade.splitEntrusts(volume, 10.5, EPriceType::Specified, accounts(count), {}, EPositionType{},
                                   "SH", "600000", EOperationType::Buy, EHedge_Flag_Type::Speculation, error);
    }
    std::vector<double> splitMoney(double amount, int count) {
        return trade.splitMoney(amount, accounts(count), {}, EPositionType{}, EOperationType::Buy, error);
    }

    CTrade trade;
    boost::shared_ptr<utils::KNError> error = boost::make_shared<utils::KNError>();
};

TEST_F(KitTrade, OneAccountGetsTheWholeVolumeAndTheWholeAmount) {
    EXPECT_EQ(split(300, 1), std::vector<int>{300});
    EXPECT_EQ(splitMoney(100000.01, 1), std::vector<double>{100000.01});
    EXPECT_TRUE(error->isSuccess());
}

TEST_F(KitTrade, SeveralAccountsFailWithAText) {
    EXPECT_TRUE(split(300, 2).empty());
    EXPECT_FALSE(error->isSuccess());
    error = boost::make_shared<utils::KNError>();
    EXPECT_TRUE(splitMoney(100, 2).empty());
    EXPECT_NE(error->errorMsg(), "");
}

TEST_F(KitTrade, VolumeOrAmountThatIsNotPositiveIsNotSplit) {
    for (const int volume : {kUnsetInt, 0, -100}) {
        error = boost::make_shared<utils::KNError>();
        EXPECT_TRUE(split(volume, 1).empty()) << volume;
        EXPECT_FALSE(error->isSuccess()) << volume;
    }
    const double infinite = std::numeric_limits<double>::infinity();
    for (const double amount :
         {kUnsetDouble, 0.0, -1.0, infinite, -infinite, std::numeric_limits<double>::quiet_NaN()}) {
        error = boost::make_shared<utils::KNError>();
        EXPECT_TRUE(splitMoney(amount, 1).empty()) << amount;
        EXPECT_FALSE(error->isSuccess()) << amount;
    }
}

TEST(KitExchange, KeyWithARecordIsAStock) {
    class CExchange : public kit::CExchangeClientBase {
    public:
        CInstrumentDetailPtr getCodeInfo(const QString& key) override {
            if (key != QLatin1String("SH600000")) return nullptr;
            return boost::make_shared<CInstrumentDetail>();
        }
        std::string getMaxTradingDay() override { return "20260105"; }
    } exchange;
    EXPECT_TRUE(exchange.hasStock(QStringLiteral("SH600000")));
    EXPECT_FALSE(exchange.hasStock(QStringLiteral("600000")));
    EXPECT_FALSE(exchange.hasFuture(QStringLiteral("SH600000")));
}

TEST(KitQuotes, AllPricesAreTheQuotedPriceAndASubscriptionIsNotNull) {
    class CQuote : public kit::CPriceDataBase {
    public:
        double getOriginPrice(EPriceType type, EOperationType) const override {
            return type == EPriceType::Latest ? 10.5 : kUnsetDouble;
        }
    } quote;
    EXPECT_EQ(quote.getPriceForCalc(EPriceType::Latest, EOperationType::Buy, 0, {}), 10.5);
    EXPECT_EQ(quote.getPriceForOrder(EPriceType::Latest, EOperationType::Buy, 0, {}), 10.5);
    EXPECT_EQ(quote.getPriceForOrder(EPriceType::Buy1, EOperationType::Buy, 0, {}), kUnsetDouble);
    class CQuotes : public kit::CQuoteClientBase {
    public:
        CPriceDataPtr getStockPrice(const QString&) override { return nullptr; }
    } quotes;
    EXPECT_TRUE(quotes.subscribe(QStringLiteral("SH600000"), {}, ESubscribeType::Plain));
}

TEST(KitTypes, UnitShownIsTheTradingUnit) {
    class CTypes : public kit::CInstrumentTypesBase {
    public:
        bool isTypedStock(int, const std::string&, const std::string&) override { return false; }
        int getTradeMinUnit(const std::string&, const std::string& code, EOperationType operation) override {
            return code == "688105" && isUnset(operation) ? 200 : 100;
        }
    } types;
    EXPECT_EQ(types.getUiMinUnit("SH", "688105", true), 200);
    EXPECT_EQ(types.getUiMinUnit("SH", "600000", false), 100);
}

TEST(KitRules, RecordWithAPartOfAUnitIsKept) {
    kit::CTradingRulesBase rules;
    std::vector<CCodeOrderParam> records(4);
    const double quantities[] = {0.5, 0.0, -1.0, kUnsetDouble};
    for (std::size_t i = 0; i < records.size(); ++i) {
        records[i].m_nVolume = 0;
        records[i].m_dQuantity = quantities[i];
    }
    rules.filterZeroStock(records);
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].m_dQuantity, 0.5);
}

TEST(KitRules, FrequencyModeStaysUnset) {
    kit::CTradingRulesBase rules;
    std::vector<CCodeOrderParam> records(1);
    rules.fillOverFreqOrderMode(records);
    EXPECT_TRUE(isUnset(records.at(0).m_nOverFreqMode));
}

TEST(KitRules, OnlyTheOperationBuyBuysAndNoOperationCloses) {
    kit::CTradingRulesBase rules;
    for (int operation = -1; operation <= 1100; ++operation) {
        const auto type = static_cast<EOperationType>(operation);
        EXPECT_EQ(rules.isBuy(type), type == EOperationType::Buy) << operation;
        EXPECT_FALSE(rules.isClose(type)) << operation;
        EXPECT_TRUE(isUnset(rules.operationTypeToEntrustType(type))) << operation;
    }
}

TEST(KitRules, OnlyOrderNumbers32And39RepayMoney) {
    kit::CTradingRulesBase rules;
    for (int number = 0; number <= 120; ++number) {
        EXPECT_EQ(rules.isDirectRepay(orderTypeToOperationType(number)), number == 32 || number == 39)
            << number;
    }
}

TEST(KitRules, SettingTextUnsetsThePriceTypeUnlessItIsEmpty) {
    kit::CTradingRulesBase rules;
    COrderSetting setting;
    rules.orderSettingFromString(setting, QString());
    EXPECT_EQ(setting.m_ePriceType, EPriceType::Latest);
    rules.orderSettingFromString(setting, QStringLiteral("price_type:5"));
    EXPECT_TRUE(isUnset(setting.m_ePriceType));
}

TEST(KitRules, TradeParametersNameNoAccount) {
    kit::CTradingRulesBase rules;
    EXPECT_TRUE(rules.getAccountFromOrderParam(QStringLiteral("A1"), QStringLiteral("1")).isEmpty());
}

TEST(KitServices, DefaultServicesAreSetAndAnswerThatThereIsNothing) {
    kit::CDefaultServices services;
    const CHost host = services.services();
    EXPECT_EQ(host.userManager, nullptr) << "who is logged in, only the host knows";
    EXPECT_EQ(host.orderClient, nullptr);
    CAlgorithmOrderSettingPtr setting;
    EXPECT_FALSE(host.algorithmTradeHelper->getAlgOrderSettingFromString("TWAP", setting));
    EXPECT_FALSE(setting);
    EXPECT_EQ(host.algorithmTradeHelper->getAlgParamsStr(EOrderType::Plain, {}, {}), "");
    EXPECT_TRUE(host.traderCenter->getTaskCenter().findTasks(1).empty());
    EXPECT_FALSE(host.traderCenter->getDataCenter().getAccountData("A1"));
    EXPECT_FALSE(host.traderCenter->getDataCenter().getGlobalAccountData());
    EXPECT_TRUE(host.tradeFrameworkSource->getAllInterfaces().empty());
}

TEST(KitServices, TimeIsInSecondsOfTheMachinesClock) {
    CFakeClock clock;
    EXPECT_EQ(kit::CTimeServiceBase().currentTime(), clock.currentDateTime().toSecsSinceEpoch());
}

TEST(KitServices, TheCommandGuardIsTheOnlySwitchThatIsOn) {
    kit::CLuaModuleCtrlBase switches;
    EXPECT_TRUE(switches.checkModule({"mdl_order", "mdl_order_command_guard"}));
    EXPECT_FALSE(switches.checkModule({"mdl_order", "mdl_order_service_force_confirm"}));
    EXPECT_FALSE(switches.checkModule({"mdl_order", "mdl_order_compose_basket_buy_sell"}));
    EXPECT_FALSE(switches.checkModule({"mdl_other", "mdl_order_command_guard"}));
    EXPECT_FALSE(switches.checkModule({"mdl_order", "mdl_order_command_guard", "more"}));
    EXPECT_FALSE(switches.checkModule({}));
}

} // namespace
