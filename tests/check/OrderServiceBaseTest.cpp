#include "orderservice/check/AccountLookup.h"
#include "tests/check/CheckFixture.h"

#include <boost/make_shared.hpp>

#include <cmath>

namespace {

using namespace TC;

class FrameCheck : public CheckFixture {};

TEST_F(FrameCheck, LabelsFollowTheUsersRights) {
    EXPECT_EQ(service.getOrderStrategyText(EOrderStrategyType::File), QStringLiteral("文件单"));
    EXPECT_EQ(service.getOrderStrategyText(EOrderStrategyType::Signal), QStringLiteral("信号单"));
    EXPECT_EQ(service.getOrderStrategyText(EOrderStrategyType::BatchPending), QStringLiteral("批量埋单"));
    EXPECT_EQ(service.getOrderStrategyText(EOrderStrategyType::Interface), QStringLiteral("接口单"));
    EXPECT_EQ(service.getOrderStrategyText(static_cast<EOrderStrategyType>(3)), QStringLiteral("接口单"));
    host.user.rights = {EUserAuth::SignalOrders};
    EXPECT_EQ(service.getOrderStrategyText(EOrderStrategyType::File), QStringLiteral("接口单"));
    host.user.rights = {EUserAuth::FileOrders};
    EXPECT_EQ(service.getOrderStrategyText(EOrderStrategyType::Signal), QStringLiteral("接口单"));
    host.user.rights.clear();
    EXPECT_EQ(service.getOrderStrategyText(EOrderStrategyType::BatchPending), QStringLiteral("批量埋单"));
}

TEST_F(FrameCheck, MissingStrategyIsReportedWithTheUsersFlags) {
    host.user.msgFlags[EMsgTypeDef::General] = {true, false};
    const COrderStrategyMap strategies;
    EXPECT_EQ(service.getStrategy(9, &strategies, EOrderStrategyType::File), nullptr);
    ASSERT_EQ(host.messages.messages.size(), 1u);
    const fake::CMessage& message = host.messages.messages.front();
    EXPECT_EQ(message.text, QStringLiteral("[文件单]　通道号: 9, 找不到对应的策略!"));
    EXPECT_EQ(message.type, EMsgTypeDef::General);
    EXPECT_EQ(message.level, MsgLevel::Note);
    EXPECT_TRUE(message.flag1);
    EXPECT_FALSE(message.flag2);
    EXPECT_TRUE(message.extra.isEmpty());
}

TEST_F(FrameCheck, StrategyIsFoundByItsKey) {
    COrderStrategyMap strategies;
    strategies.insert(3, CStrategyBuilder());
    EXPECT_EQ(service.getStrategy(3, &strategies, EOrderStrategyType::File), &strategies.find(3).value());
    EXPECT_TRUE(host.messages.messages.empty());
}

TEST_F(FrameCheck, GroupMustExistUnderTheFamilysBrokerType) {
    COrderStrategyParam strategy = CStrategyBuilder();
    EXPECT_TRUE(service.checkAccount(&strategy));
    strategy.m_eTradeType = EOrderStrategyTradeType::Future;
    EXPECT_FALSE(service.checkAccount(&strategy));
    strategy = CStrategyBuilder().group(QString());
    EXPECT_FALSE(service.checkAccount(&strategy));
    EXPECT_FALSE(service.checkAccount(nullptr));
}

TEST_F(FrameCheck, BasketGroupMayExistUnderCreditOnly) {
    host.user.addAccount("C1", EQDBrokerType::Credit);
    host.user.addGroup(EQDBrokerType::Credit, "CG", {{"C1", 1.0}});
    COrderStrategyParam strategy =
        CStrategyBuilder().family(EOrderStrategyTradeType::Basket).group(QStringLiteral("CG"));
    EXPECT_TRUE(service.checkAccount(&strategy));
    strategy.m_eTradeType = EOrderStrategyTradeType::FutureBasket;
    EXPECT_FALSE(service.checkAccount(&strategy));
}

TEST_F(FrameCheck, AccountOfATableStrategyIsASimpleAccount) {
    host.user.simple.insert("S1");
    COrderStrategyParam strategy = CStrategyBuilder().account(QStringLiteral("S1"));
    EXPECT_FALSE(service.checkAccount(&strategy));
    strategy.m_nAccountMode = COrderStrategyParam::kTableMode;
    EXPECT_TRUE(service.checkAccount(&strategy));
    strategy = CStrategyBuilder().account(QStringLiteral("A1"));
    EXPECT_TRUE(service.checkAccount(&strategy));
    strategy.m_eSelectedAccountType = static_cast<ESelectedAccountType>(2);
    EXPECT_FALSE(service.checkAccount(&strategy));
}

TEST_F(FrameCheck, ValidOrderPassesWithoutAMessage) {
    const COrderStrategyParam strategy = CStrategyBuilder();
    EXPECT_TRUE(service.checkOrderParamValid(COrderBuilder(23), &strategy));
    EXPECT_TRUE(host.messages.messages.empty());
}

TEST_F(FrameCheck, NullStrategyIsReported) {
    EXPECT_FALSE(service.checkOrderParamValid(COrderBuilder(23).channel(4), nullptr));
    EXPECT_EQ(onlyMessage(), QStringLiteral("[文件单]　通道号: 4, 找不到对应的策略!"));
}

TEST_F(FrameCheck, MissingAccountsComeBeforeTheStatus) {
    const COrderStrategyParam strategy = CStrategyBuilder().group(QStringLiteral("none")).stopped();
    EXPECT_FALSE(service.checkOrderParamValid(COrderBuilder(23), &strategy));
    EXPECT_EQ(onlyMessage(), QStringLiteral("[文件单]　通道号: 3, 账号组或账号为空, 请重新设置策略!"));
}

TEST_F(FrameCheck, StoppedStrategyComesBeforeTheSource) {
    const COrderStrategyParam strategy = CStrategyBuilder().stopped().source(EOrderStrategyType::Signal);
    EXPECT_FALSE(service.checkOrderParamValid(COrderBuilder(23), &strategy));
    EXPECT_EQ(onlyMessage(), QStringLiteral("[文件单]　通道号: 3, 对应的策略未启动!"));
}

TEST_F(FrameCheck, OtherSourceIsReportedWithoutTheChannel) {
    const COrderStrategyParam strategy = CStrategyBuilder().source(EOrderStrategyType::Signal);
    EXPECT_FALSE(service.checkOrderParamValid(COrderBuilder(23), &strategy));
    EXPECT_EQ(onlyMessage(), QStringLiteral("[文件单]　通道号: 文件单, 对应的策略类型不匹配!"));
}

TEST_F(FrameCheck, PreparedCodeIsSubscribedUntilTheCallerDropsTheResult) {
    std::vector<CAccountInfoPtr> accounts{host.user.accounts.at("A1")};
    auto request = service.prepareCode(QStringLiteral("SH600000"), accounts);
    EXPECT_EQ(host.quotes.subscribed, std::vector<QString>{QStringLiteral("SH600000")});
    EXPECT_EQ(host.quotes.liveSubscriptions, 1);
    EXPECT_EQ(accounts.size(), 1u);
    request.reset();
    EXPECT_EQ(host.quotes.liveSubscriptions, 0);
}

class AccountKey : public CheckFixture {
protected:
    bool check(const COrderParam& order, const COrderStrategyParam& strategy, bool fillWeights = true) {
        key = strategy.m_strSelectedAccount;
        return service.checkAccountKey(order, strategy, key, accounts, ratios, weights, fillWeights);
    }

    QString key;
    std::vector<CAccountInfoPtr> accounts;
    std::vector<double> ratios;
    std::map<std::string, double> weights;
};

TEST_F(AccountKey, GroupGivesItsAccountsRatiosAndWeights) {
    EXPECT_TRUE(check(COrderBuilder(23), CStrategyBuilder()));
    EXPECT_EQ(accounts.size(), 2u);
    EXPECT_EQ(ratios, (std::vector<double>{0.6, 0.4}));
    EXPECT_EQ(weights, (std::map<std::string, double>{{"A1", 0.6}, {"A2", 0.4}}));
}

TEST_F(AccountKey, WeightsStayEmptyUnlessAskedForOrWithoutRatios) {
    EXPECT_TRUE(check(COrderBuilder(23), CStrategyBuilder(), false));
    EXPECT_TRUE(weights.empty());
    accounts.clear();
    ratios.clear();
    host.user.dropRatios = true;
    EXPECT_TRUE(check(COrderBuilder(23), CStrategyBuilder()));
    EXPECT_TRUE(weights.empty());
}

TEST_F(AccountKey, NullAccountKeepsItsPlaceButGetsNoWeight) {
    host.user.nullAccount = true;
    EXPECT_TRUE(check(COrderBuilder(23), CStrategyBuilder()));
    EXPECT_EQ(accounts.size(), 3u);
    EXPECT_EQ(weights.size(), 2u);
}

TEST_F(AccountKey, WeightsCanBeTakenWithoutAnOrder) {
    const std::vector<CAccountInfoPtr> some{host.user.accounts.at("A1"), nullptr,
                                            host.user.accounts.at("A2")};
    takeWeights(some, {0.5, 0.3}, weights);
    EXPECT_TRUE(weights.empty()); // a ratio is missing
    takeWeights(some, {0.5, 0.3, 0.2}, weights);
    EXPECT_EQ(weights, (std::map<std::string, double>{{"A1", 0.5}, {"A2", 0.2}}));
}

TEST_F(AccountKey, BothPartsOfTheOrderReplaceTheKey) {
    host.user.addAccount("x/y");
    const COrderStrategyParam strategy = CStrategyBuilder().account(QStringLiteral("A1"));
    const COrderParam order = COrderBuilder(23).set([](COrderParam& o) {
        o.m_strAccountKeyPart1 = QStringLiteral("x");
        o.m_strAccountKeyPart2 = QStringLiteral("y");
    });
    EXPECT_TRUE(check(order, strategy));
    EXPECT_EQ(key, QStringLiteral("x/y"));
    EXPECT_EQ(accounts.front()->getKey(), "x/y");
}

TEST_F(AccountKey, OnePartAloneDoesNotCount) {
    const COrderParam order =
        COrderBuilder(23).set([](COrderParam& o) { o.m_strAccountKeyPart1 = QStringLiteral("x"); });
    EXPECT_TRUE(check(order, CStrategyBuilder().account(QStringLiteral("A1"))));
    EXPECT_EQ(key, QStringLiteral("A1"));
}

TEST_F(AccountKey, NoAccountIsReportedOnce) {
    EXPECT_FALSE(check(COrderBuilder(23).channel(8), CStrategyBuilder().group(QStringLiteral("none"))));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　通道号: 3, 指定账号不可用!"));
    EXPECT_EQ(host.orders.errors.front().title, QStringLiteral("参数错误"));
}

TEST_F(AccountKey, BasketFindsAccountsUnderCreditOnTheSecondCall) {
    host.user.addAccount("C1", EQDBrokerType::Credit);
    host.user.addGroup(EQDBrokerType::Credit, "CG", {{"C1", 1.0}});
    EXPECT_TRUE(
        check(COrderBuilder(25),
              CStrategyBuilder().family(EOrderStrategyTradeType::Basket).group(QStringLiteral("CG"))));
    EXPECT_EQ(accounts.front()->getKey(), "C1");
}

TEST_F(AccountKey, SimpleAccountsAreAskedForInTableModeOnly) {
    const CStrategyBuilder account = CStrategyBuilder().account(QStringLiteral("A1"));
    EXPECT_TRUE(check(COrderBuilder(23), account));
    EXPECT_TRUE(check(COrderBuilder(23), CStrategyBuilder(account).tableMode()));
    const auto calls = host.user.accountsCalls.all();
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_FALSE(calls[0].simple);
    EXPECT_TRUE(calls[1].simple);
    for (const fake::CAccountsCall& call : calls) {
        EXPECT_EQ(call.kind, ESelectedAccountType::Account);
        EXPECT_EQ(call.name, QStringLiteral("A1"));
    }
}

TEST_F(AccountKey, AccountIsAskedForUnderItsFamilysBrokerType) {
    const std::map<EOrderStrategyTradeType, EQDBrokerType> brokers{
        {EOrderStrategyTradeType::Stock, EQDBrokerType::Stock},
        {EOrderStrategyTradeType::Future, EQDBrokerType::Future},
        {EOrderStrategyTradeType::Credit, EQDBrokerType::Credit}};
    for (const auto& [family, broker] : brokers) {
        EXPECT_TRUE(
            check(COrderBuilder(23), CStrategyBuilder().account(QStringLiteral("A1")).family(family)));
        EXPECT_EQ(host.user.accountsCalls.all().back().broker, broker) << static_cast<int>(family);
    }
}

TEST_F(AccountKey, BasketNeverAsksForSimpleAccounts) {
    const COrderStrategyParam strategy =
        CStrategyBuilder().family(EOrderStrategyTradeType::Basket).group(QStringLiteral("none")).tableMode();
    EXPECT_FALSE(check(COrderBuilder(25), strategy));
    const auto calls = host.user.accountsCalls.all();
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[0].broker, EQDBrokerType::Stock);
    EXPECT_EQ(calls[1].broker, EQDBrokerType::Credit);
    EXPECT_FALSE(calls[0].simple);
    EXPECT_FALSE(calls[1].simple);
}

class PriceType : public CheckFixture {
protected:
    bool isValid(EPriceType type, const COrderParam& order, const CPriceDataPtr& quote) {
        COrderSetting setting;
        setting.m_ePriceType = type;
        return service.isPriceTypeVailed(setting, order, quote, EOperationType::Buy, EQDBrokerType::Stock,
                                         {});
    }
    static boost::shared_ptr<fake::CQuote> quote(double price) {
        const auto made = boost::make_shared<fake::CQuote>();
        made->all(price);
        return made;
    }
};

TEST_F(PriceType, SpecifiedPriceMustStandInTheOrder) {
    const auto specified = EPriceType::Specified;
    EXPECT_TRUE(isValid(specified, COrderBuilder(23).line(QString(), 10.5), {}));
    EXPECT_TRUE(isValid(specified, COrderBuilder(23).line(QString(), -1.0), {}));
    EXPECT_FALSE(isValid(specified, COrderBuilder(23), {}));
    EXPECT_FALSE(isValid(specified, COrderBuilder(23).line(QString(), 0.0), {}));
    EXPECT_FALSE(isValid(specified, COrderBuilder(23).line(QString(), 1e-5), {}));
    EXPECT_TRUE(isValid(specified, COrderBuilder(23).line(QString(), 1.1e-5), {}));
    EXPECT_FALSE(isValid(specified, COrderBuilder(23).line(QString()), {}));
}

TEST_F(PriceType, WordsThatCountAsNumbersAreNoPrices) {
    for (const double price : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
        EXPECT_FALSE(isValid(EPriceType::Specified, COrderBuilder(23).line(QString(), price), {}));
        EXPECT_FALSE(isValid(EPriceType::Latest, COrderBuilder(23), quote(price)));
    }
}

TEST_F(PriceType, OtherTypesNeedAQuoteAndTheUsersLeave) {
    const COrderParam order = COrderBuilder(23);
    EXPECT_TRUE(isValid(EPriceType::Latest, order, quote(10)));
    EXPECT_FALSE(isValid(EPriceType::Latest, order, {}));
    EXPECT_FALSE(isValid(EPriceType::Latest, order, quote(0)));
    EXPECT_FALSE(isValid(EPriceType::Latest, order, quote(DBL_MAX)));
    host.user.invalidPriceTypes.insert(EPriceType::Latest);
    EXPECT_FALSE(isValid(EPriceType::Latest, order, quote(10)));
}

TEST_F(PriceType, MarketPriceNeedsNoNumber) {
    host.rules.marketPrices.insert(EPriceType::Latest);
    EXPECT_TRUE(isValid(EPriceType::Latest, COrderBuilder(23), quote(DBL_MAX)));
    EXPECT_FALSE(isValid(EPriceType::Latest, COrderBuilder(23), {}));
}

TEST_F(PriceType, OrderPriceIsTheOneThatCounts) {
    const auto mixed = quote(0);
    mixed->otherOrder = 10;
    EXPECT_TRUE(isValid(EPriceType::Latest, COrderBuilder(23), mixed));
    mixed->otherOrder = DBL_MAX;
    mixed->otherOrigin = 10;
    EXPECT_FALSE(isValid(EPriceType::Latest, COrderBuilder(23), mixed));
}

TEST_F(PriceType, HostIsAskedWithTheWholeOrder) {
    COrderSetting setting;
    setting.m_ePriceType = EPriceType::Buy1;
    setting.m_eOrderType = static_cast<EOrderType>(4);
    const CStockInfo stock{"SZ", "000001", "name", "product"};
    const auto given = quote(10);
    EXPECT_TRUE(service.isPriceTypeVailed(setting, COrderBuilder(24), given, EOperationType::Sell,
                                          EQDBrokerType::Credit, stock));
    const auto asked = host.user.priceTypeCalls.all();
    ASSERT_EQ(asked.size(), 1u);
    EXPECT_EQ(asked[0].type, EPriceType::Buy1);
    EXPECT_EQ(asked[0].operation, EOperationType::Sell);
    EXPECT_EQ(asked[0].broker, EQDBrokerType::Credit);
    EXPECT_EQ(asked[0].market, "SZ");
    EXPECT_EQ(asked[0].code, "000001");
    EXPECT_EQ(asked[0].orderType, static_cast<EOrderType>(4));
    const auto prices = given->calls.all();
    ASSERT_EQ(prices.size(), 1u);
    EXPECT_EQ(prices[0].kind, "order");
    EXPECT_EQ(prices[0].type, EPriceType::Buy1);
    EXPECT_EQ(prices[0].operation, EOperationType::Sell);
    EXPECT_EQ(prices[0].number, 0);
    EXPECT_FALSE(prices[0].hasAutoPrice);
}

class OrderKind : public CheckFixture {};

TEST_F(OrderKind, OrderThenStrategyThenPlain) {
    const auto kind = [](int n) { return static_cast<EOrderType>(n); };
    COrderParam order = COrderBuilder(23);
    COrderStrategyParam strategy = CStrategyBuilder();
    EXPECT_EQ(service.getOrderType(order, strategy), kind(0));
    strategy.m_eOrderType = kind(5);
    EXPECT_EQ(service.getOrderType(order, strategy), kind(5));
    order.m_eOrderType = kind(6);
    EXPECT_EQ(service.getOrderType(order, strategy), kind(6));
}

TEST_F(OrderKind, PlatformIsAskedForAlgorithmsOnly) {
    const auto algo = static_cast<EOrderType>(6);
    host.rules.algoPlatforms[algo] = static_cast<ETradePlatform>(9);
    COrderParam order = COrderBuilder(23);
    COrderStrategyParam strategy = CStrategyBuilder();
    EXPECT_EQ(service.getTradePlatform(order, strategy), ETradePlatform::Plain);
    strategy.m_eOrderType = algo;
    EXPECT_EQ(service.getTradePlatform(order, strategy), static_cast<ETradePlatform>(9));
    order.m_eOrderType = EOrderType::Plain;
    EXPECT_EQ(service.getTradePlatform(order, strategy), ETradePlatform::Plain);
}

TEST_F(OrderKind, TraderTypeOfEveryFamily) {
    const std::map<int, int> expected{{0, 1}, {1, 2}, {2, 4},     {3, 8},    {4, 32},   {5, 1024}, {6, 4},
                                      {7, 1}, {8, 1}, {9, 16384}, {10, 128}, {11, 256}, {12, 16},  {13, 1}};
    for (const auto& [family, bit] : expected) {
        EXPECT_EQ(
            static_cast<int>(service.getStrategyTradeType(static_cast<EOrderStrategyTradeType>(family))), bit)
            << family;
    }
}

TEST_F(OrderKind, PlaceLegalOrdersOfTheBaseDoesNothing) {
    const COrderStrategyMap strategies;
    service.placeLegalOrders({orderParamForOrderService(COrderBuilder(23))}, &strategies);
    EXPECT_TRUE(host.commands().empty());
    EXPECT_TRUE(host.messageTexts().empty());
}

} // namespace
