// The commands of the ten families: the fields that each must have or must not have.
#include "orderservice/variants/FamilyTable.h"
#include "orderservice/variants/OrderServiceUnion.h"

#include "tests/support/Builders.h"
#include "tests/support/LogCapture.h"
#include "tests/variants/FamilyHost.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace TC;

/// One family: an order that it accepts, and the expected command.
struct CFamilyCase {
    const char* name;
    EOrderStrategyTradeType family;
    int orderType;
    const char* code;
    EQdTraderType traderType;
    bool isBare; ///< the command has neither time nor tag
    const char* function;
    const char* logLine;
    std::size_t records; ///< for both accounts of the group
};

void PrintTo(const CFamilyCase& family, std::ostream* out) {
    *out << family.name;
}

constexpr const char* kStockLine = "placeCommands: [orderservice] stock speculation.";

const CFamilyCase kCases[] = {
    {"Stock", EOrderStrategyTradeType::Stock, 23, "600000", EQdTraderType::Stock, false, "orderStock",
     kStockLine, 2},
    {"Future", EOrderStrategyTradeType::Future, 0, "IF2609", EQdTraderType::FutureSpeculation, false,
     "orderSpec", "placeCommands: [orderservice] future speculation.", 2},
    {"Basket", EOrderStrategyTradeType::Basket, 25, "600000", EQdTraderType::Basket, false, "orderCompose",
     "placeCommands: [orderservice] basket compose.", 2},
    {"FutureBasket", EOrderStrategyTradeType::FutureBasket, 25, "600000", EQdTraderType::Basket, false,
     "orderCompose", "placeCommands: [orderservice] basket compose.", 2},
    {"Credit", EOrderStrategyTradeType::Credit, 27, "600000", EQdTraderType::Credit, false, "orderCredit",
     "placeCommands: [orderservice] credit operation.", 2},
    {"Option", EOrderStrategyTradeType::StockOption, 50, "SHO10000001", EQdTraderType::Option, false,
     "orderOption", kStockLine, 2},
    {"FutureOption", EOrderStrategyTradeType::FutureOption, 0, "IO2609", EQdTraderType::FutureOption, true,
     "orderFutureOption", kStockLine, 2},
    {"Sgt", EOrderStrategyTradeType::SGT, 23, "00001", EQdTraderType::SGT, true, "orderSGT", kStockLine, 2},
    {"Hgt", EOrderStrategyTradeType::HGT, 23, "00700", EQdTraderType::HGT, true, "orderHGT", kStockLine, 2},
    {"Neeq", EOrderStrategyTradeType::Neeq, 66, "430001", EQdTraderType::Neeq, true, "orderNeeq", kStockLine,
     0},
    {"Gold", EOrderStrategyTradeType::Gold, 23, "AU9999", EQdTraderType::Gold, true, "orderGold", kStockLine,
     2},
};

// The cases below check the command of each family. So a family with a check but without a command of this
// variant is found here.
TEST(UnionFamilyTable, EveryFamilyWithACheckIsACase) {
    constexpr int kFamilyNumbersEnd = 100;
    std::set<int> checked, cases;
    for (int number = -1; number < kFamilyNumbersEnd; ++number) {
        if (findVariantFamily(static_cast<EOrderStrategyTradeType>(number)) != nullptr)
            checked.insert(number);
    }
    for (const CFamilyCase& family : kCases)
        cases.insert(static_cast<int>(family.family));
    EXPECT_EQ(checked, cases);
}

class UnionHost : public FamilyHost {
protected:
    const COrderComandParam& place(const COrderParam& order, const COrderStrategyParam& with) {
        strategies[3] = with;
        service.placeOrders({order}, &strategies);
        EXPECT_EQ(host.errorTexts(), std::vector<QString>());
        return *host.commands().at(0);
    }

    COrderServiceUnion service;
};

class UnionFamily : public UnionHost, public testing::WithParamInterface<CFamilyCase> {
protected:
    COrderParam order() const {
        return COrderBuilder(GetParam().orderType)
            .line(QString::fromLatin1(GetParam().code), 10.5, 1000)
            .set([](COrderParam& o) { o.m_strRemark = "备注"; });
    }
    CStrategyBuilder strategy() const { return strategyOf(GetParam().family); }
};

TEST_P(UnionFamily, OrderBecomesACommand) {
    const COrderComandParam& command = place(order(), strategy());
    EXPECT_EQ(command.m_eTraderType, GetParam().traderType);
    EXPECT_EQ(command.m_codes.size(), GetParam().records);
    EXPECT_EQ(command.m_weights.size(), 2u);
    EXPECT_EQ(command.m_eStopLossType, EQdStopLossType::None);
    EXPECT_TRUE(command.m_bUnion);
    EXPECT_FALSE(command.m_bForceConfirm);
    EXPECT_FALSE(command.m_bCommandFlag);
    EXPECT_TRUE(command.m_extra.isEmpty());
    EXPECT_EQ(command.m_strRemark, "备注");
    EXPECT_EQ(command.m_eStrategyType, EOrderStrategyType::File);
    EXPECT_EQ(command.m_strAlgoParam, "");
    EXPECT_EQ(command.m_strCreateTime, GetParam().isBare ? "" : "2026-01-05 09:30:00:000");
    EXPECT_EQ(command.m_strTag, GetParam().isBare ? "" : "3");
}

TEST_P(UnionFamily, ForcedConfirmationTravelsInTheCommand) {
    host.switches.on.insert("mdl_order_service_force_confirm");
    EXPECT_TRUE(place(order(), strategy()).m_bForceConfirm);
}

TEST_P(UnionFamily, AlgorithmOrdersReachOnlyCommandsThatCarryThem) {
    host.rules.algoPlatforms = {{static_cast<EOrderType>(77), static_cast<ETradePlatform>(12)}};
    auto algorithm = order();
    algorithm.m_eOrderType = static_cast<EOrderType>(77);
    algorithm.m_strOrderSetting = "final";
    algorithm.m_nSettingKind = 1;
    const auto kept = strategy().set([](auto& s) {
        s.setting(findFamily(GetParam().family)->m_eSlot).m_eOrderType = static_cast<EOrderType>(4);
    });
    const COrderComandParam& command = place(algorithm, kept);
    EXPECT_EQ(command.m_strAlgoParam, GetParam().isBare ? "" : "final");
    EXPECT_EQ(static_cast<int>(command.m_ePlatform), GetParam().isBare ? 0 : 12);
    for (const CCodeOrderParam& code : command.m_codes)
        EXPECT_EQ(static_cast<int>(code.m_eOrderType), GetParam().isBare ? 4 : 77);
}

TEST_P(UnionFamily, CommandIsLoggedByItsOperation) {
    const CLogCapture capture;
    utils::CLogCenter::setLogEnabled(true);
    place(order(), strategy());
    ASSERT_EQ(capture.lines().size(), 2u);
    const std::string expected =
        std::string("[TC::COrderServiceUnion::") + GetParam().function + "] " + GetParam().logLine;
    const std::string& text = capture.lines()[1].text;
    EXPECT_EQ(text.substr(text.find("] ") + 2), expected);
}

TEST_P(UnionFamily, OtherKindsOfUserGetNoCommandAndNoMessage) {
    const CLogCapture capture;
    utils::CLogCenter::setLogEnabled(true);
    host.user.kind = 1;
    strategies[3] = strategy();
    service.placeOrders({order()}, &strategies);
    EXPECT_TRUE(host.commands().empty());
    EXPECT_TRUE(host.errorTexts().empty());
    ASSERT_EQ(capture.lines().size(), 1u);
    EXPECT_EQ(capture.lines()[0].text.find("placeCommands"), std::string::npos);
}

TEST_P(UnionFamily, FailedCheckIsReportedToOtherKindsOfUserToo) {
    host.user.kind = 1;
    strategies[3] = strategy();
    service.placeOrders({COrderBuilder(99).line(QStringLiteral("600000"), 10.5, 1000)}, &strategies);
    EXPECT_TRUE(host.commands().empty());
    EXPECT_EQ(host.errorTexts(),
              std::vector<QString>{QStringLiteral("[文件单]　通道号: 3, 下单指令不合法!")});
}

TEST_P(UnionFamily, FlagOfTheStrategyReachesBasketsAlone) {
    const auto flagged = strategy().set([](auto& s) { s.m_bCommandFlag = true; });
    EXPECT_EQ(place(order(), flagged).m_bCommandFlag, GetParam().traderType == EQdTraderType::Basket);
}

TEST_P(UnionFamily, BatchPendingOrdersComeToTheFamilyThatTheyName) {
    const bool isCredit = GetParam().family == EOrderStrategyTradeType::Credit;
    const auto other = isCredit ? EOrderStrategyTradeType::Stock : EOrderStrategyTradeType::Credit;
    const auto with = strategy().source(EOrderStrategyType::BatchPending).family(other);
    COrderParam pending = order();
    pending.m_eStrategyType = EOrderStrategyType::BatchPending;
    pending.m_nTradeTypeOverride = static_cast<int>(GetParam().family);
    const COrderComandParam& command = place(pending, with);
    EXPECT_EQ(command.m_eTraderType, GetParam().traderType);
    EXPECT_EQ(command.m_codes.size(), GetParam().records);
    for (const CCodeOrderParam& code : command.m_codes)
        EXPECT_EQ(isUnset(code.m_eEntrustType), !isCredit);
}

TEST_P(UnionFamily, FailedCheckGivesNoCommand) {
    strategies[3] = strategy();
    service.placeOrders({COrderBuilder(99).line(QStringLiteral("600000"), 10.5, 1000)}, &strategies);
    EXPECT_TRUE(host.commands().empty());
    EXPECT_EQ(host.errorTexts(),
              std::vector<QString>{QStringLiteral("[文件单]　通道号: 3, 下单指令不合法!")});
}

TEST_P(UnionFamily, SeveralLinesGiveACommandOfABasketAlone) {
    strategies[3] = strategy();
    COrderParam lines = order();
    lines.m_orders.push_back(lines.m_orders.front());
    service.placeOrders({lines}, &strategies);
    const bool isBasket = GetParam().traderType == EQdTraderType::Basket;
    EXPECT_EQ(host.commands().size(), isBasket ? 1u : 0u);
    std::vector<QString> texts;
    if (GetParam().family == EOrderStrategyTradeType::Credit) {
        texts = {QStringLiteral("[文件单]　通道号: 3, 下单指令不合法!")};
    } else if (!isBasket) {
        texts = {QStringLiteral("[文件单]　通道号: 3, 下单参数不合法!")};
    }
    EXPECT_EQ(host.errorTexts(), texts);
}

INSTANTIATE_TEST_SUITE_P(Families, UnionFamily, testing::ValuesIn(kCases),
                         [](const auto& family) { return family.param.name; });

using UnionFuture = UnionHost;

TEST_F(UnionFuture, ButtonFollowsTheNumber) {
    strategies[3] = strategyOf(EOrderStrategyTradeType::Future);
    for (int number = 0; number <= 15; ++number) {
        const int expected = number >= 10 ? 3 : number >= 6 ? 2 : 1;
        service.placeOrders({COrderBuilder(number).line(QStringLiteral("IF2609"), 10.5, 10)}, &strategies);
        ASSERT_EQ(host.commands().size(), static_cast<std::size_t>(number + 1));
        EXPECT_EQ(static_cast<int>(host.commands().back()->m_eBtnType), expected) << number;
    }
}

class UnionBasket : public UnionHost {
protected:
    UnionBasket() { host.switches.on.insert("mdl_order_compose_basket_buy_sell"); }
    static COrderBuilder basket(int number) {
        return COrderBuilder(number).line(QStringLiteral("600000"), 10.5, 1000).set([](COrderParam& o) {
            o.m_orders[0].m_eOperationType = 18;
        });
    }
    static CStrategyBuilder strategy() { return strategyOf(EOrderStrategyTradeType::Basket).volume(1); }
    static CStrategyBuilder hedged() {
        return strategy().set([](auto& s) {
            s.m_bHedgeBasket = true;
            s.m_hedgeParam = bson::fromjson(R"({"m_nPriceKind": 1, "contract": "IF2609", "lots": 2})");
        });
    }
    /// The parameters of hedged() with another kind of price.
    static std::string hedgeText(int priceKind) {
        return bson::fromjson(R"({"contract": "IF2609", "lots": 2, "m_nPriceKind": )" +
                              std::to_string(priceKind) + "}")
            .jsonString();
    }
    const COrderComandParam& placeHedged(const COrderParam& order, const COrderStrategyParam& with) {
        host.switches.on.insert("mdl_order_compose_hedge");
        host.orders.commands.clear();
        const COrderComandParam& command = place(order, with);
        EXPECT_EQ(command.m_eHedgeType, EQdHedgeType::Hedge);
        return command;
    }
    const COrderComandParam& placeHedged(int number) { return placeHedged(basket(number), hedged()); }
};

TEST_F(UnionBasket, PlainBasketIsComposed) {
    const COrderComandParam& command = place(basket(25), strategy());
    EXPECT_EQ(command.m_eHedgeType, EQdHedgeType::Compose);
    EXPECT_EQ(command.m_strTag, "3");
    EXPECT_TRUE(command.m_extra.isEmpty());
}

TEST_F(UnionBasket, HedgeNeedsTheSwitchAndTheStrategysFlag) {
    host.switches.on.insert("mdl_order_compose_hedge");
    EXPECT_EQ(place(basket(25), strategy()).m_eHedgeType, EQdHedgeType::Compose);
    host.switches.on.erase("mdl_order_compose_hedge");
    host.orders.commands.clear();
    const auto willing = strategy().set([](auto& s) { s.m_bHedgeBasket = true; });
    EXPECT_EQ(place(basket(25), willing).m_eHedgeType, EQdHedgeType::Compose);
}

TEST_F(UnionBasket, HedgeLegKeepsTheStrategysParametersAndChoosesThePrice) {
    for (const auto& [number, kind] : {std::pair{25, 3}, {33, 9}, {35, 9}, {26, 9}, {36, 9}}) {
        const COrderComandParam& command = placeHedged(number);
        EXPECT_EQ(command.m_eHedgeType, EQdHedgeType::Hedge) << number;
        EXPECT_EQ(command.m_strTag, "") << number;
        EXPECT_EQ(command.m_extra.jsonString(), hedgeText(kind)) << number;
    }
}

TEST_F(UnionBasket, HedgeLegsPriceUsesWhatTheHostCallsBuying) {
    struct CCase {
        int buying, number, kind;
    };
    for (const CCase& c :
         {CCase{19, 26, 3}, CCase{19, 36, 3}, CCase{19, 25, 9}, CCase{19, 33, 9}, CCase{19, 35, 9},
          CCase{-1, 33, 3}, CCase{-1, 35, 3}, CCase{-1, 25, 9}, CCase{-1, 26, 9}, CCase{-1, 36, 9}}) {
        host.rules.buys = {c.buying};
        EXPECT_EQ(placeHedged(c.number).m_extra.jsonString(), hedgeText(c.kind))
            << c.buying << " " << c.number;
    }
}

TEST_F(UnionBasket, HedgeIsLoggedAsSuch) {
    const CLogCapture capture;
    utils::CLogCenter::setLogEnabled(true);
    placeHedged(25);
    EXPECT_NE(capture.lines().at(1).text.find("placeCommands: [orderservice] basket hedge."),
              std::string::npos);
}

TEST_F(UnionBasket, FlagIsKeptFromSalesTargetsAndPositions) {
    const auto flagged = strategy().set([](auto& s) { s.m_bCommandFlag = true; });
    for (const auto& [number, expected] :
         {std::pair{25, true}, {33, true}, {110, true}, {26, false}, {34, false}, {35, false}, {36, false}}) {
        host.orders.commands.clear();
        EXPECT_EQ(place(basket(number), flagged).m_bCommandFlag, expected) << number;
    }
}

TEST_F(UnionBasket, BasketTextReplacesAMissingAlgorithmText) {
    const auto order = basket(25).set([](COrderParam& o) { o.m_strBasketText = "basket text"; });
    EXPECT_EQ(place(order, strategy()).m_strAlgoParam, "basket text");
}

TEST_F(UnionBasket, AlgorithmTextGoesBeforeTheBasketText) {
    host.rules.algoPlatforms = {{static_cast<EOrderType>(77), ETradePlatform::Plain}};
    const auto order = basket(25).set([](COrderParam& o) {
        o.m_strBasketText = "basket text";
        o.m_eOrderType = static_cast<EOrderType>(77);
        o.m_strOrderSetting = "final";
        o.m_nSettingKind = 1;
    });
    EXPECT_EQ(place(order, strategy()).m_strAlgoParam, "final");
}

TEST_F(UnionBasket, HedgedCommandCarriesFlagRemarkAndConfirmation) {
    const auto flagged = hedged().set([](auto& s) { s.m_bCommandFlag = true; });
    const auto order = [](int number) {
        return basket(number).set([](COrderParam& o) { o.m_strRemark = "备注"; });
    };
    EXPECT_TRUE(placeHedged(order(25), flagged).m_bCommandFlag);
    EXPECT_FALSE(placeHedged(order(26), flagged).m_bCommandFlag);
    EXPECT_FALSE(placeHedged(order(25), hedged()).m_bCommandFlag);
    EXPECT_FALSE(placeHedged(order(25), flagged).m_bForceConfirm);
    EXPECT_EQ(placeHedged(order(25), flagged).m_strRemark, "备注");
    host.switches.on.insert("mdl_order_service_force_confirm");
    EXPECT_TRUE(placeHedged(order(25), flagged).m_bForceConfirm);
}

TEST_F(UnionBasket, HedgedCommandCarriesTheAlgorithmsOrTheBasketsText) {
    const auto texted = basket(25).set([](COrderParam& o) { o.m_strBasketText = "basket text"; });
    EXPECT_EQ(placeHedged(texted, hedged()).m_strAlgoParam, "basket text");
    host.rules.algoPlatforms = {{static_cast<EOrderType>(77), static_cast<ETradePlatform>(12)}};
    COrderParam algorithm = texted;
    algorithm.m_eOrderType = static_cast<EOrderType>(77);
    algorithm.m_strOrderSetting = "final";
    algorithm.m_nSettingKind = 1;
    const COrderComandParam& command = placeHedged(algorithm, hedged());
    EXPECT_EQ(command.m_strAlgoParam, "final");
    EXPECT_EQ(static_cast<int>(command.m_ePlatform), 12);
}

TEST_F(UnionBasket, HedgeGoesOutWhateverItsPriceChoiceWas) {
    const bson::BSONObj wide = bson::BSONObjBuilder().append("m_nPriceKind", std::int64_t{5}).obj();
    for (const bson::BSONObj& given :
         {wide, bson::fromjson(R"({"m_nPriceKind": 5.5})"), bson::fromjson(R"({"m_nPriceKind": "three"})"),
          bson::fromjson(R"({"m_nPriceKind": null})"), bson::BSONObj()}) {
        const auto with = hedged().set([&](auto& s) { s.m_hedgeParam = given; });
        EXPECT_EQ(placeHedged(basket(25), with).m_extra.jsonString(), R"({ "m_nPriceKind" : 3 })");
        EXPECT_EQ(placeHedged(basket(26), with).m_extra.jsonString(), R"({ "m_nPriceKind" : 9 })");
    }
    EXPECT_TRUE(host.errorTexts().empty());
}

} // namespace
