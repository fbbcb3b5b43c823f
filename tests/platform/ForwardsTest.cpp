// Each free function of the boundary calls the installed service. It passes the arguments and the answer on
// unchanged.
#include "orderservice/base/Text.h"
#include "tests/support/FakeHost.h"

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <stdexcept>

namespace {

using namespace TC;

/// Rules that return their arguments.
class CEchoRules : public fake::CRules {
public:
    QString qdStockKey(const QString& market, const QString& code) override {
        return QStringLiteral("key ") + market + code;
    }
    EQDBrokerType orderStrategyTradeTypeToBrokerType(EOrderStrategyTradeType type) override {
        return static_cast<EQDBrokerType>(static_cast<int>(type) + 1000);
    }
    void orderSettingToParam(const COrderSetting& setting, CCodeOrderParam& record, EOperationType operation,
                             int volume, double price, const CPriceDataPtr& quote) override {
        record.m_ePriceType = setting.m_ePriceType;
        record.m_eOperationType = operation;
        record.m_nVolume = volume;
        record.m_dPrice = price;
        lastQuote = quote;
    }

    CPriceDataPtr lastQuote;
};

/// Types that return their arguments.
class CEchoTypes : public fake::CTypes {
public:
    int getTradeMinUnit(const std::string& market, const std::string& code,
                        EOperationType operation) override {
        asked = market + " " + code + " " + std::to_string(static_cast<int>(operation));
        return 200;
    }
    int getUiMinUnit(const std::string& market, const std::string& code, bool forTrade) override {
        asked = market + " " + code + (forTrade ? " trade" : " show");
        return 10;
    }

    std::string asked;
};

class Forwards : public testing::Test {
protected:
    Forwards() {
        releaseHost();
        CHost services = host.services();
        services.tradingRules = &rules;
        services.instrumentTypes = &types;
        EXPECT_TRUE(installHost(services).isSuccess());
    }

    CFakeHost host;
    CEchoRules rules;
    CEchoTypes types;
};

TEST_F(Forwards, UserConfigurationIsTheManagers) {
    EXPECT_EQ(getUserConfig(), &host.user);
    host.user.loggedIn = false;
    EXPECT_EQ(getUserConfig(), nullptr);
}

TEST_F(Forwards, ServiceMessageIsAGeneralNoteWithTheUsersFlags) {
    host.user.msgFlags[EMsgTypeDef::General] = {true, false};
    host.user.msgFlags[EMsgTypeDef::OrderFailure] = {false, true};
    showServiceMsg(QStringLiteral("通道号: 3"));
    ASSERT_EQ(host.messages.messages.size(), 1u);
    const fake::CMessage& message = host.messages.messages[0];
    EXPECT_EQ(message.text, QStringLiteral("通道号: 3"));
    EXPECT_EQ(message.type, EMsgTypeDef::General);
    EXPECT_EQ(message.level, MsgLevel::Note);
    EXPECT_TRUE(message.flag1);
    EXPECT_FALSE(message.flag2);
    EXPECT_EQ(message.extra, QString());
}

TEST_F(Forwards, ServiceMessageTellsTheFlagsApart) {
    host.user.msgFlags[EMsgTypeDef::General] = {false, true};
    showServiceMsg(QStringLiteral("text"));
    EXPECT_FALSE(host.messages.messages.at(0).flag1);
    EXPECT_TRUE(host.messages.messages.at(0).flag2);
}

TEST_F(Forwards, ServiceMessageWithoutAUserGoesOutWithoutFlags) {
    host.user.msgFlags[EMsgTypeDef::General] = {true, true};
    host.user.loggedIn = false;
    showServiceMsg(QStringLiteral("text"));
    ASSERT_EQ(host.messages.messages.size(), 1u);
    EXPECT_FALSE(host.messages.messages[0].flag1);
    EXPECT_FALSE(host.messages.messages[0].flag2);
}

TEST_F(Forwards, KeysAndBrokers) {
    EXPECT_EQ(qdStockKey(QStringLiteral("SH"), QStringLiteral("600000")), QStringLiteral("key SH600000"));
    EXPECT_EQ(static_cast<int>(orderStrategyTradeTypeToBrokerType(EOrderStrategyTradeType::Credit)), 1003);
    EXPECT_EQ(getAccountFromOrderParam(QStringLiteral("a"), QStringLiteral("b")), QStringLiteral("a/b"));
}

TEST_F(Forwards, TradeParameters) {
    COrderTradeParam known;
    known.m_strRemark = "remark";
    rules.tradeParams["text"] = known;
    COrderTradeParam param;
    EXPECT_FALSE(parserOrderTradeParam("other", param));
    EXPECT_EQ(param.m_strRemark, "");
    EXPECT_TRUE(parserOrderTradeParam("text", param));
    EXPECT_EQ(param.m_strRemark, "remark");
}

TEST_F(Forwards, Settings) {
    COrderSetting setting;
    orderSettingFromString(setting, QStringLiteral("price=11"));
    EXPECT_EQ(setting.m_ePriceType, EPriceType::Specified);
    EXPECT_EQ(rules.settingTexts, std::vector<QString>{QStringLiteral("price=11")});

    CCodeOrderParam record;
    const CPriceDataPtr quote = boost::make_shared<fake::CQuote>();
    orderSettingToParam(setting, record, EOperationType::Sell, 300, 10.5, quote);
    EXPECT_EQ(record.m_ePriceType, EPriceType::Specified);
    EXPECT_EQ(record.m_eOperationType, EOperationType::Sell);
    EXPECT_EQ(record.m_nVolume, 300);
    EXPECT_EQ(record.m_dPrice, 10.5);
    EXPECT_EQ(rules.lastQuote, quote);
}

TEST_F(Forwards, TimeRange) {
    rules.onFixTimeRange = [](CCodeOrderParam& record) { record.m_strUserId = "fixed"; };
    CCodeOrderParam record;
    fixTimeRange(record);
    EXPECT_EQ(record.m_strUserId, "fixed");
}

TEST_F(Forwards, Words) {
    EXPECT_EQ(orderStrategyTypeToOrderTitle(EOrderStrategyType::File), QStringLiteral("[标题2]"));
    EXPECT_EQ(orderStrategyTypeToString(EOrderStrategyType::Signal), QStringLiteral("来源1"));
    EXPECT_EQ(orderStrategyOrderTypeToString(23), QStringLiteral("下单23"));
    EXPECT_EQ(orderStrategyTradeTypeToString(EOrderStrategyTradeType::Gold), QStringLiteral("品种12"));
    EXPECT_EQ(knPriceTypeToString(EPriceType::Latest, "600000", true), QStringLiteral("价5(600000)短"));
    EXPECT_EQ(knPriceTypeToString(EPriceType::Latest, "600000", false), QStringLiteral("价5(600000)"));
}

TEST_F(Forwards, MarketPricesAndAlgorithms) {
    const auto algorithm = static_cast<EOrderType>(7);
    rules.marketPrices = {static_cast<EPriceType>(42)};
    rules.algoPlatforms[algorithm] = static_cast<ETradePlatform>(3);
    EXPECT_TRUE(knservice::isMarketPrice(static_cast<EPriceType>(42)));
    EXPECT_FALSE(knservice::isMarketPrice(EPriceType::Latest));
    EXPECT_TRUE(knservice::DataHelper::isAlgoOrderType(algorithm));
    EXPECT_FALSE(knservice::DataHelper::isAlgoOrderType(EOrderType::Plain));
    EXPECT_EQ(static_cast<int>(knservice::DataHelper::getPlatformTypeByOrderType(algorithm)), 3);
}

TEST_F(Forwards, InstrumentTypes) {
    types.types = {{knservice::kTypeStarMarket, "SH688001"}};
    EXPECT_TRUE(knservice::StockTypeCenter::isTypedStock(knservice::kTypeStarMarket, "SH", "688001"));
    EXPECT_FALSE(knservice::StockTypeCenter::isTypedStock(knservice::kTypeParPriced, "SH", "688001"));
    EXPECT_TRUE(knservice::isTypedStock(knservice::kTypeStarMarket, "SH", "688001", ""));
    EXPECT_FALSE(knservice::isTypedStock(knservice::kTypeStarMarket, "SZ", "688001", ""));
}

TEST_F(Forwards, Units) {
    EXPECT_EQ(knservice::getTradeMinUnit("SH", "600000", EOperationType::Sell), 200);
    EXPECT_EQ(types.asked, "SH 600000 19");
    EXPECT_EQ(knservice::getUiMinUnit("SZ", "000001", true), 10);
    EXPECT_EQ(types.asked, "SZ 000001 trade");
    EXPECT_EQ(knservice::getUiMinUnit("SZ", "000001", false), 10);
    EXPECT_EQ(types.asked, "SZ 000001 show");
}

TEST_F(Forwards, SwitchesOfTheOrderModule) {
    host.switches.on = {"a_switch"};
    EXPECT_TRUE(luawrapper::isOrderSwitchOn("a_switch"));
    EXPECT_FALSE(luawrapper::isOrderSwitchOn("another"));
}

TEST_F(Forwards, BasketsAreFoundUnderBothReadingsOfTheirNames) {
    // The GBK bytes of 医药 are also valid UTF-8 for another word.
    for (const QString& name : {QStringLiteral("医药"), QStringLiteral("蓝筹")}) {
        host.user.baskets.clear();
        host.user.baskets[name].m_rows.resize(2);
        EXPECT_EQ(findBasket(host.user, name.toStdString())->m_rows.size(), 2u);
        EXPECT_EQ(findBasket(host.user, utils::toLocal8Bit(name))->m_rows.size(), 2u);
        EXPECT_FALSE(findBasket(host.user, "蓝").has_value());
    }
}

TEST_F(Forwards, AnAuditThatThrowsIsNobodysHarm) {
    host.audit.onRecord = [] { throw std::runtime_error("no room"); };
    EXPECT_NO_THROW(tellAudit(CIntakeReport()));
    EXPECT_NO_THROW(tellAudit(CDoorReport()));
    EXPECT_EQ(host.audit.reports.size(), 1u);
    EXPECT_EQ(host.audit.doors.size(), 1u);
    host.audit.rejected = QStringLiteral("/rejected");
    EXPECT_EQ(rejectedFolder(), QStringLiteral("/rejected"));
    host.audit.onRejectedFolder = [] { throw 1; };
    EXPECT_EQ(rejectedFolder(), QString());
}

} // namespace
