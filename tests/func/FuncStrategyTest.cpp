// The strategy of one function call.
#include "orderservice/func/FuncStrategy.h"

#include "orderservice/base/Bson.h"
#include "tests/support/FakeHost.h"

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <climits>
#include <map>
#include <string>
#include <vector>

namespace {

using namespace TC;

class FuncStrategy : public testing::Test {
protected:
    FuncStrategy() {
        host.user.addAccount("key1");
        host.user.addAccount("key2");
        host.user.addAccount("future1", EQDBrokerType::Future);
        host.user.addGroup(EQDBrokerType::Stock, "group", {{"key1", 1}, {"key2", 2}});
        param.m_nOrderType = 1101;
        param.m_strAccountID = "key1";
        param.m_strOrderCode = "600000";
        param.m_dModelVolume = 300.9;
    }
    COrderStrategyParam made() { return getStrategy(param, error); }
    COrderStrategyParam made(int orderType) {
        param.m_nOrderType = orderType;
        return made();
    }

    CFakeHost host;
    COrderFuncParam param;
    std::string error = "from before";
};

TEST_F(FuncStrategy, HasAccountTradeTypeAndVolumeOfTheCall) {
    param.m_nTradeType = 3;
    const COrderStrategyParam strategy = made();
    EXPECT_EQ(error, "");
    EXPECT_EQ(strategy.m_strSelectedAccount, QStringLiteral("key1"));
    EXPECT_EQ(strategy.m_eSelectedAccountType, ESelectedAccountType::Account);
    EXPECT_EQ(strategy.m_eTradeType, EOrderStrategyTradeType::Credit);
    EXPECT_EQ(strategy.m_nVolume, 300);
    EXPECT_FALSE(strategy.m_bUseAmount);
    EXPECT_FALSE(strategy.m_bByPercent);
    EXPECT_FALSE(strategy.m_bHedgeBasket);
    EXPECT_EQ(strategy.m_dAmount, 0);
    EXPECT_EQ(strategy.m_dPercent, 0);
}

TEST_F(FuncStrategy, OrderTypeSelectsTheUnit) {
    param.m_dModelVolume = 0.5;
    for (const int orderType : {1102, 1202, 2102, 2202, 2332}) {
        const COrderStrategyParam strategy = made(orderType);
        EXPECT_TRUE(strategy.m_bUseAmount) << orderType;
        EXPECT_FALSE(strategy.m_bByPercent) << orderType;
        EXPECT_EQ(strategy.m_dAmount, 0.5) << orderType;
        EXPECT_EQ(strategy.m_dPercent, 0) << orderType;
    }
    for (const int orderType : {1113, 1123, 1213, 1223, 2103, 2203, 2333}) {
        const COrderStrategyParam strategy = made(orderType);
        EXPECT_FALSE(strategy.m_bUseAmount) << orderType;
        EXPECT_TRUE(strategy.m_bByPercent) << orderType;
        EXPECT_EQ(strategy.m_dAmount, 0) << orderType;
        EXPECT_EQ(strategy.m_dPercent, 0.5) << orderType;
    }
}

TEST_F(FuncStrategy, OrderTypeSelectsAccountOrGroup) {
    for (const int orderType : {12, 1201, 22, 1202, 1213, 1223, 2201, 2202, 2203})
        EXPECT_EQ(made(orderType).m_eSelectedAccountType, ESelectedAccountType::Group) << orderType;
    for (const int orderType : {11, 21, 1101, 1102, 1113, 1123, 2101, 2102, 2103, 2331, 2332, 2333})
        EXPECT_EQ(made(orderType).m_eSelectedAccountType, ESelectedAccountType::Account) << orderType;
}

TEST_F(FuncStrategy, UnknownOrderTypesAreRefused) {
    for (const int orderType : {-1, 0, 13, 1103, 2204, 2330, 2334, INT_MAX}) {
        EXPECT_TRUE(isUnset(made(orderType).m_eSelectedAccountType)) << orderType;
        EXPECT_EQ(error, "无效的下单类型(ORDERTYPE)值!") << orderType;
    }
}

TEST_F(FuncStrategy, FirstThirteenSettingsAreTheUsersDefaults) {
    for (const EDefaultSetting which :
         {EDefaultSetting::Stock, EDefaultSetting::Future, EDefaultSetting::Basket, EDefaultSetting::Option,
          EDefaultSetting::Gold})
        host.user.defaults[which].m_strCmdLog = "default " + std::to_string(static_cast<int>(which));
    const COrderStrategyParam strategy = made();
    const auto textOf = [&](ESettingSlot slot) { return strategy.setting(slot).m_strCmdLog; };
    EXPECT_EQ(textOf(ESettingSlot::Stock), "default 1");
    EXPECT_EQ(textOf(ESettingSlot::Future), "default 2");
    EXPECT_EQ(textOf(ESettingSlot::StockBasket), "default 3");
    EXPECT_EQ(textOf(ESettingSlot::Credit), "default 1");
    EXPECT_EQ(textOf(ESettingSlot::StockOption), "default 4");
    EXPECT_EQ(textOf(ESettingSlot::Gold), "default 7");
    EXPECT_EQ(textOf(ESettingSlot::FunctionHGT), "");
    EXPECT_EQ(textOf(ESettingSlot::FunctionSGT), "");
}

TEST_F(FuncStrategy, WithoutAUserEverythingStaysAsItIsMade) {
    host.user.loggedIn = false;
    const COrderStrategyParam strategy = made();
    EXPECT_EQ(error, "");
    EXPECT_EQ(strategy.m_strSelectedAccount, QStringLiteral("key1"));
    EXPECT_FALSE(checkAccount(strategy));
}

TEST_F(FuncStrategy, DisplayIdBecomesTheKeyOfTheFirstAccountOfItsKind) {
    host.rules.displayIds = {{"key1", QStringLiteral("账号8")},
                             {"key2", QStringLiteral("账号8")},
                             {"future1", QStringLiteral("账号8")}};
    EXPECT_EQ(translateAccountID("账号8", EOrderStrategyTradeType::Stock), "key1");
    EXPECT_EQ(translateAccountID("账号8", EOrderStrategyTradeType::Future), "future1");
    EXPECT_EQ(translateAccountID("账号8", EOrderStrategyTradeType{8}), "future1"); // baskets of futures
    EXPECT_EQ(translateAccountID("账号8", EOrderStrategyTradeType::Credit), "账号8");
    EXPECT_EQ(translateAccountID("group", EOrderStrategyTradeType::Stock), "group");
    EXPECT_EQ(translateAccountID("key2", EOrderStrategyTradeType::Stock), "key2"); // a key stays
    EXPECT_EQ(translateAccountID("", EOrderStrategyTradeType::Stock), "");
}

TEST_F(FuncStrategy, AccountOrGroupMustExist) {
    EXPECT_TRUE(checkAccount(made(1101)));
    EXPECT_FALSE(checkAccount(made(1201)));
    param.m_strAccountID = "group";
    EXPECT_FALSE(checkAccount(made(1101)));
    EXPECT_TRUE(checkAccount(made(1201)));
    param.m_nTradeType = 1; // the group has no accounts of futures
    EXPECT_FALSE(checkAccount(made(1201)));
    param.m_nTradeType = 0;
    param.m_strAccountID = "";
    EXPECT_FALSE(checkAccount(made(1201)));
    EXPECT_FALSE(checkAccount(made(1101)));
    param.m_strAccountID = "key1";
    EXPECT_FALSE(checkAccount(made(7))); // an unknown order type
}

TEST_F(FuncStrategy, EveryAccountMustBeLoggedIn) {
    EXPECT_TRUE(checkAccountStatus(made(1101)));
    host.trade.loginStatus["key1"] = 2;
    EXPECT_FALSE(checkAccountStatus(made(1101)));
    param.m_strAccountID = "group";
    EXPECT_FALSE(checkAccountStatus(made(1201)));
    host.trade.loginStatus = {{"key2", 1}};
    EXPECT_FALSE(checkAccountStatus(made(1201)));
    host.trade.loginStatus.clear();
    EXPECT_TRUE(checkAccountStatus(made(1201)));
    param.m_strAccountID = "";
    EXPECT_TRUE(checkAccountStatus(made(1201)));
    EXPECT_TRUE(checkAccountStatus(made(7))); // an unknown order type
}

/// A basket that is bought with a futures leg.
class FuncHedge : public FuncStrategy {
protected:
    FuncHedge() {
        host.rules.displayIds = {{"key1", QStringLiteral("8001")}, {"future1", QStringLiteral("9001")}};
        const auto detail = boost::make_shared<CInstrumentDetail>();
        detail->m_strMarket = "IF";
        detail->m_strCode = "IF2609";
        detail->m_strName = "index";
        detail->m_strProductId = "IF";
        host.exchange.others[QStringLiteral("IF2609")] = detail;
        host.user.defaults[EDefaultSetting::Future].m_ePriceType = EPriceType::Sell1;
        param.m_nOpType = 25;
        param.m_nOrderType = 2331;
        param.m_nTradeType = 2;
        param.m_dModelPrice = 0.9;
        param.m_strAccountID = "8001,9001";
        param.m_strOrderCode = "basket,IF2609";
    }
    static int number(const bson::BSONObj& document, const char* key) {
        int value = -99;
        EXPECT_TRUE(bson::readField(document, key, value)) << key;
        return value;
    }
    static std::string word(const bson::BSONObj& document, const char* key) {
        std::string value = "missing";
        EXPECT_TRUE(bson::readField(document, key, value)) << key;
        return value;
    }
};

TEST_F(FuncHedge, AccountsAndCodesArePairs) {
    const COrderStrategyParam strategy = made();
    EXPECT_EQ(error, "");
    EXPECT_TRUE(strategy.m_bHedgeBasket);
    EXPECT_EQ(strategy.m_strSelectedAccount, QStringLiteral("key1"));
    EXPECT_EQ(strategy.m_eSelectedAccountType, ESelectedAccountType::Account);
    const bson::BSONObj& hedge = strategy.m_hedgeParam;
    EXPECT_EQ(number(hedge, "m_nHedgeKind"), 1);
    EXPECT_EQ(number(hedge, "m_nHedgeSubkind"), 0);
    EXPECT_EQ(word(hedge, "m_strText"), "");
    EXPECT_EQ(word(hedge, "m_strAccountKey"), "future1");
    EXPECT_EQ(number(hedge, "m_eHedgeFlag"), 49);
    double ratio = 0;
    EXPECT_TRUE(bson::readField(hedge, "m_dRatio", ratio));
    EXPECT_EQ(ratio, 0.9);
    const std::string text = hedge.jsonString();
    EXPECT_NE(text.find("\"IF2609\""), std::string::npos) << text;
    EXPECT_NE(text.find("\"m_ePriceType\" : 4"), std::string::npos) << text;
}

TEST_F(FuncHedge, WithoutPairsThereIsNoFuturesLegAndNoError) {
    for (const char* accounts : {"8001", "8001,9001,1", ""}) {
        param.m_strAccountID = accounts;
        const COrderStrategyParam strategy = made();
        EXPECT_EQ(error, "") << accounts;
        EXPECT_TRUE(strategy.m_bHedgeBasket);
        EXPECT_TRUE(strategy.m_hedgeParam.isEmpty());
    }
    param.m_strAccountID = "8001,9001";
    param.m_strOrderCode = "basket";
    EXPECT_TRUE(made().m_hedgeParam.isEmpty());
    EXPECT_EQ(error, "");
}

TEST_F(FuncHedge, FuturesAccountMustExist) {
    param.m_strAccountID = "8001,9002";
    made();
    EXPECT_EQ(error, "套利期货账号为空!");
}

TEST_F(FuncHedge, FuturesCodeMustBeKnown) {
    param.m_strOrderCode = "basket,IF9999";
    made();
    EXPECT_EQ(error, "套利期货代码非法!");
}

TEST_F(FuncHedge, FillingClearsTheErrorFirst) {
    COrderStrategyParam strategy = made();
    CBasketHedgeParam hedge;
    QString account = QStringLiteral("future1");
    QString code = QStringLiteral("IF2609");
    error = "from before";
    fillHedgeParam(hedge, strategy, account, code, 1, error);
    EXPECT_EQ(error, "");
    EXPECT_FALSE(hedge.toBson().isEmpty());
}

} // namespace
