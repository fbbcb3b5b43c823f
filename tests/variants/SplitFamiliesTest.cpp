// The commands of the two-pass variant by family: the fields that each must have or must not have.
#include "orderservice/variants/FamilyTable.h"

#include "tests/support/LogCapture.h"
#include "tests/variants/SplitFixture.h"

#include <cstdint>
#include <ostream>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace TC;

/// One family: an order that it accepts, and the expected command.
struct CSplitCase {
    const char* name;
    EOrderStrategyTradeType family;
    int orderType;
    const char* code;
    int traderType;
    int hedge;
    int button;
    bool hasFlag; ///< the command has the strategy's flag
    const char* function;
    const char* logLine;
};

void PrintTo(const CSplitCase& family, std::ostream* out) {
    *out << family.name;
}

// The check of the share-transfer market gives no records, so its command is in a test of its own.
const CSplitCase kSplitCases[] = {
    {"Stock", EOrderStrategyTradeType::Stock, 23, "600000", 1, 0, 0, true, "orderStock",
     "placeCommands: [orderservice] stock speculation."},
    {"Future", EOrderStrategyTradeType::Future, 0, "IF2609", 2, 0, 1, true, "orderSpec",
     "placeCommands: [orderservice] future speculation."},
    {"Basket", EOrderStrategyTradeType::Basket, 25, "600000", 4, 1, 0, true, "orderCompose",
     "placeCommands: [orderservice] basket compose."},
    {"FutureBasket", EOrderStrategyTradeType::FutureBasket, 25, "600000", 4, 1, 0, true, "orderCompose",
     "placeCommands: [orderservice] basket compose."},
    {"Credit", EOrderStrategyTradeType::Credit, 27, "600000", 8, 0, 0, false, "orderCredit",
     "placeCommands: [orderservice] credit operation."},
    {"Option", EOrderStrategyTradeType::StockOption, 50, "SHO10000001", 32, 0, 0, false, "orderOption",
     "placeCommands: [orderservice] stock speculation."},
    {"FutureOption", EOrderStrategyTradeType::FutureOption, 0, "IO2609", 1024, 0, 0, false,
     "orderFutureOption", "placeCommands: [orderservice] future speculation."},
    {"Sgt", EOrderStrategyTradeType::SGT, 23, "00001", 16384, 0, 0, false, "orderSGT",
     "placeCommands: [orderservice] credit operation."},
    {"Hgt", EOrderStrategyTradeType::HGT, 23, "00700", 128, 0, 0, false, "orderHGT",
     "placeCommands: [orderservice] credit operation."},
    {"Gold", EOrderStrategyTradeType::Gold, 23, "AU9999", 16, 0, 0, false, "orderGold",
     "placeCommands: [orderservice] credit operation."},
};

TEST(SplitFamilyTable, EveryFamilyWithACheckIsACase) {
    constexpr int kFamilyNumbersEnd = 100;
    std::set<int> checked, cases{static_cast<int>(EOrderStrategyTradeType::Neeq)};
    for (int number = -1; number < kFamilyNumbersEnd; ++number) {
        if (findVariantFamily(static_cast<EOrderStrategyTradeType>(number)) != nullptr)
            checked.insert(number);
    }
    for (const CSplitCase& family : kSplitCases)
        cases.insert(static_cast<int>(family.family));
    EXPECT_EQ(checked, cases);
}

class SplitCommands : public SplitFixture {
protected:
    /// Sends the order by a strategy with its command flag, and returns the only command.
    const COrderComandParam& placeOne(const COrderParam& order, CStrategyBuilder with) {
        strategies[3] = with.set([](auto& s) { s.m_bCommandFlag = true; });
        host.orders.commands.clear();
        place({order});
        EXPECT_EQ(host.errorTexts(), std::vector<QString>());
        EXPECT_EQ(host.commands().size(), 1u);
        return *host.commands().at(0);
    }
    /// The text of the only log line, without the address of the object.
    static std::string textOf(const CLogCapture& capture) {
        EXPECT_EQ(capture.lines().size(), 1u);
        const std::string text = capture.lines().at(0).text;
        return text.substr(text.find("] ") + 2);
    }
};

class SplitFamily : public SplitCommands, public testing::WithParamInterface<CSplitCase> {
protected:
    static COrderBuilder order(int number) {
        return COrderBuilder(number)
            .line(QString::fromLatin1(GetParam().code), 10.5, 1000)
            .set([](COrderParam& o) { o.m_strRemark = "备注"; });
    }
    static COrderBuilder order() { return order(GetParam().orderType); }
    static CStrategyBuilder strategy() { return strategyOf(GetParam().family); }
};

TEST_P(SplitFamily, OrderBecomesACommand) {
    const COrderComandParam& command = placeOne(order(), strategy());
    EXPECT_EQ(static_cast<int>(command.m_eTraderType), GetParam().traderType);
    EXPECT_EQ(static_cast<int>(command.m_eHedgeType), GetParam().hedge);
    EXPECT_EQ(static_cast<int>(command.m_eBtnType), GetParam().button);
    EXPECT_EQ(command.m_codes.size(), 2u);
    EXPECT_EQ(command.m_weights, (std::map<std::string, double>{{"A1", 0.6}, {"A2", 0.4}}));
    EXPECT_EQ(command.m_eStopLossType, EQdStopLossType::None);
    EXPECT_FALSE(command.m_bUnion);
    EXPECT_TRUE(command.m_extra.isEmpty());
    EXPECT_EQ(command.m_strTag, "");
    EXPECT_EQ(command.m_ePlatform, ETradePlatform::Plain);
    EXPECT_EQ(command.m_strAlgoParam, "");
    EXPECT_EQ(command.m_bCommandFlag, GetParam().hasFlag);
    EXPECT_FALSE(command.m_bForceConfirm);
    EXPECT_EQ(command.m_eStrategyType, EOrderStrategyType::File);
    EXPECT_EQ(command.m_strRemark, "备注");
    EXPECT_EQ(command.m_strCreateTime, "2026-01-05 09:30:00:000");
}

TEST_P(SplitFamily, CommandHasNoFlagThatItsStrategyDoesNotHave) {
    strategies[3] = strategy();
    place({order()});
    ASSERT_EQ(host.commands().size(), 1u);
    EXPECT_FALSE(host.commands()[0]->m_bCommandFlag);
}

TEST_P(SplitFamily, SwitchOfForcedConfirmationHasNoEffect) {
    host.switches.on.insert("mdl_order_service_force_confirm");
    EXPECT_FALSE(placeOne(order(), strategy()).m_bForceConfirm);
}

TEST_P(SplitFamily, AlgorithmOrderHasItsPlatformAndText) {
    host.rules.algoPlatforms = {{static_cast<EOrderType>(77), static_cast<ETradePlatform>(12)}};
    const COrderComandParam& command = placeOne(order().set([](auto& o) {
        o.m_eOrderType = static_cast<EOrderType>(77);
        o.m_strOrderSetting = "final";
        o.m_nSettingKind = 1;
    }),
                                                strategy());
    EXPECT_EQ(command.m_strAlgoParam, "final");
    EXPECT_EQ(static_cast<int>(command.m_ePlatform), 12);
    for (const CCodeOrderParam& code : command.m_codes)
        EXPECT_EQ(static_cast<int>(code.m_eOrderType), 77);
}

TEST_P(SplitFamily, CommandIsLoggedByItsOperation) {
    const CLogCapture capture;
    utils::CLogCenter::setLogEnabled(true);
    placeOne(order(), strategy());
    EXPECT_EQ(textOf(capture),
              std::string("[TC::COrderServiceSplit::") + GetParam().function + "] " + GetParam().logLine);
    const CLogLine line = capture.lines().at(0);
    EXPECT_EQ(line.level, 20000);
    EXPECT_EQ(line.logger, "KNStdFile");
}

TEST_P(SplitFamily, FailedCheckGivesItsMessageAndNoCommand) {
    strategies[3] = strategy();
    place({COrderBuilder(99).line(QStringLiteral("600000"), 10.5, 1000)});
    EXPECT_TRUE(host.commands().empty());
    EXPECT_EQ(host.errorTexts(),
              std::vector<QString>{QStringLiteral("[文件单]　通道号: 3, 下单指令不合法!")});
}

TEST_P(SplitFamily, QuestionHasTheFamilysTraderType) {
    host.user.hints.insert(32);
    placeOne(order(), strategy());
    EXPECT_EQ(static_cast<int>(confirmer.questions.at(0).m_eTraderType), GetParam().traderType);
}

INSTANTIATE_TEST_SUITE_P(Families, SplitFamily, testing::ValuesIn(kSplitCases),
                         [](const auto& family) { return family.param.name; });

TEST_F(SplitCommands, OrderOfTheShareTransferMarketThatTheHostGivesRecordsIsSent) {
    strategies[3] = strategyOf(EOrderStrategyTradeType::Neeq);
    orderParamForOrderService order(COrderBuilder(66).line(QStringLiteral("430001"), 10.5, 1000));
    order.m_codes.resize(1);
    const CLogCapture capture;
    utils::CLogCenter::setLogEnabled(true);
    service.placeLegalOrders({order}, &strategies);
    ASSERT_EQ(host.commands().size(), 1u);
    EXPECT_EQ(static_cast<int>(host.commands()[0]->m_eTraderType), 256);
    EXPECT_EQ(textOf(capture),
              "[TC::COrderServiceSplit::orderNeeq] placeCommands: [orderservice] credit operation.");
}

TEST_F(SplitCommands, SaleOfAStockHasNoFlag) {
    EXPECT_FALSE(placeOne(COrderBuilder(24).line(QStringLiteral("600000"), 10.5, 1000), CStrategyBuilder())
                     .m_bCommandFlag);
    EXPECT_TRUE(placeOne(stock(), CStrategyBuilder()).m_bCommandFlag);
}

TEST_F(SplitCommands, ButtonAndFlagOfFuturesFollowTheNumber) {
    for (int number = 0; number <= 15; ++number) {
        const int button = number >= 10 ? 3 : number >= 6 ? 2 : 1;
        const COrderComandParam& command =
            placeOne(COrderBuilder(number).line(QStringLiteral("IF2609"), 10.5, 10),
                     strategyOf(EOrderStrategyTradeType::Future));
        EXPECT_EQ(static_cast<int>(command.m_eBtnType), button) << number;
        EXPECT_EQ(command.m_bCommandFlag, number == 0 || number == 3) << number;
    }
}

TEST_F(SplitCommands, MixedFamiliesAreSentByTheFamilyOfTheFirstStrategy) {
    strategies[3] = strategyOf(EOrderStrategyTradeType::Credit).set([](auto& s) { s.m_bCommandFlag = true; });
    strategies[4] = CStrategyBuilder().channel(4).set([](auto& s) { s.m_bCommandFlag = true; });
    const COrderParam credit = COrderBuilder(27).line(QStringLiteral("600000"), 10.5, 1000);
    place({credit, stock().channel(4)});
    ASSERT_EQ(host.commands().size(), 2u);
    EXPECT_EQ(host.commands()[1]->m_eTraderType, EQdTraderType::Credit);
    EXPECT_FALSE(host.commands()[1]->m_bCommandFlag);
    place({stock().channel(4), credit});
    ASSERT_EQ(host.commands().size(), 4u);
    EXPECT_EQ(host.commands()[3]->m_eTraderType, EQdTraderType::Stock);
    EXPECT_TRUE(host.commands()[3]->m_bCommandFlag);
}

TEST_F(SplitCommands, EachOrderIsSentWithItsOwnStrategy) {
    strategies[4] = CStrategyBuilder().channel(4).set([](auto& s) { s.m_bCommandFlag = true; });
    place({stock(), stock().channel(4)});
    ASSERT_EQ(host.commands().size(), 2u);
    EXPECT_FALSE(host.commands()[0]->m_bCommandFlag);
    EXPECT_TRUE(host.commands()[1]->m_bCommandFlag);
}

TEST_F(SplitCommands, LaterOrderWithoutAStrategyIsDroppedAlone) {
    strategies[4] = CStrategyBuilder().channel(4);
    const CChecked checked = check({stock(), stock().channel(4), stock()});
    strategies.remove(4);
    host.messages.messages.clear();
    service.placeLegalOrders(checked, &strategies);
    EXPECT_EQ(host.commands().size(), 2u);
    EXPECT_EQ(host.messageTexts(),
              std::vector<QString>{QStringLiteral("[文件单]　通道号: 4, 找不到对应的策略!")});
}

TEST_F(SplitCommands, TradeTypeWithoutAFamilyInTheSecondPassSendsNothingWithoutAMessage) {
    const CChecked checked = check({stock(), stock()});
    strategies[3] = CStrategyBuilder().family(static_cast<EOrderStrategyTradeType>(7));
    host.messages.messages.clear();
    service.placeLegalOrders(checked, &strategies);
    EXPECT_TRUE(host.commands().empty());
    EXPECT_TRUE(host.messageTexts().empty());
    EXPECT_EQ(host.audit.incidents.at(0).m_nOrders, 2);
}

class SplitBasket : public SplitCommands {
protected:
    SplitBasket() {
        host.switches.on.insert("mdl_order_compose_basket_buy_sell");
        host.switches.on.insert("mdl_order_compose_hedge");
    }
    static COrderBuilder basket(int number) {
        return COrderBuilder(number).line(QStringLiteral("600000"), 10.5, 1000).set([](COrderParam& o) {
            o.m_orders[0].m_eOperationType = 18;
        });
    }
    static CStrategyBuilder plain() { return strategyOf(EOrderStrategyTradeType::Basket).volume(1); }
    static CStrategyBuilder hedged() {
        return plain().set([](auto& s) {
            s.m_bHedgeBasket = true;
            s.m_hedgeParam = bson::fromjson(R"({"m_nPriceKind": 1, "contract": "IF2609"})");
        });
    }
    static std::string hedgeText(int priceKind) {
        return bson::fromjson(R"({"contract": "IF2609", "m_nPriceKind": )" + std::to_string(priceKind) + "}")
            .jsonString();
    }
};

TEST_F(SplitBasket, HedgeNeedsTheSwitchAndTheStrategysFlag) {
    EXPECT_EQ(placeOne(basket(25), plain()).m_eHedgeType, EQdHedgeType::Compose);
    EXPECT_EQ(placeOne(basket(25), hedged()).m_eHedgeType, EQdHedgeType::Hedge);
    host.switches.on.erase("mdl_order_compose_hedge");
    EXPECT_EQ(placeOne(basket(25), hedged()).m_eHedgeType, EQdHedgeType::Compose);
}

TEST_F(SplitBasket, HedgeLegHasTheStrategysParametersAndChoosesThePrice) {
    for (const auto& [number, kind] : {std::pair{25, 3}, {33, 9}, {35, 9}, {26, 9}, {36, 9}}) {
        const COrderComandParam& command = placeOne(basket(number), hedged());
        EXPECT_EQ(command.m_extra.jsonString(), hedgeText(kind)) << number;
        EXPECT_EQ(command.m_strTag, "") << number;
        EXPECT_FALSE(command.m_bUnion) << number;
        EXPECT_FALSE(command.m_bForceConfirm) << number;
    }
    host.rules.buys = {19}; // what the host calls buying decides
    EXPECT_EQ(placeOne(basket(26), hedged()).m_extra.jsonString(), hedgeText(3));
}

TEST_F(SplitBasket, HedgeIsLoggedAsSuch) {
    const CLogCapture capture;
    utils::CLogCenter::setLogEnabled(true);
    placeOne(basket(25), hedged());
    EXPECT_EQ(textOf(capture),
              "[TC::COrderServiceSplit::orderCompose] placeCommands: [orderservice] basket hedge.");
}

TEST_F(SplitBasket, SalesTargetsAndPositionsHaveNoFlag) {
    for (const auto& [number, expected] :
         {std::pair{25, true}, {33, true}, {110, true}, {26, false}, {34, false}, {35, false}, {36, false}}) {
        EXPECT_EQ(placeOne(basket(number), plain()).m_bCommandFlag, expected) << number;
        EXPECT_EQ(placeOne(basket(number), hedged()).m_bCommandFlag, expected) << number;
    }
}

TEST_F(SplitBasket, BasketTextReplacesAMissingAlgorithmText) {
    const auto texted = basket(25).set([](COrderParam& o) { o.m_strBasketText = "basket text"; });
    EXPECT_EQ(placeOne(texted, plain()).m_strAlgoParam, "basket text");
    EXPECT_EQ(placeOne(texted, hedged()).m_strAlgoParam, "basket text");
    host.rules.algoPlatforms = {{static_cast<EOrderType>(77), ETradePlatform::Plain}};
    COrderParam algorithm = texted;
    algorithm.m_eOrderType = static_cast<EOrderType>(77);
    algorithm.m_strOrderSetting = "final";
    algorithm.m_nSettingKind = 1;
    EXPECT_EQ(placeOne(algorithm, hedged()).m_strAlgoParam, "final");
}

} // namespace
