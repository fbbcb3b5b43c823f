#include "orderservice/variants/VariantSteps.h"

#include "orderservice/records/Families.h"
#include "orderservice/variants/FamilyTable.h"
#include "tests/support/Builders.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeHost.h"
#include "tests/support/LogCapture.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace TC;

class VariantSteps : public testing::Test {
protected:
    static COrderParam basketOrder(int number) {
        return COrderBuilder(number).set([](COrderParam& o) { o.m_strBasketText = "basket text"; });
    }
    static CStrategyBuilder hedged() {
        return CStrategyBuilder().family(EOrderStrategyTradeType::Basket).set([](auto& s) {
            s.m_bHedgeBasket = true;
            s.m_bCommandFlag = true;
            s.m_hedgeParam = bson::fromjson(R"({"lots": 2})");
        });
    }
    static CCommandRequest basketRequest(int number) {
        return makeBasketRequest(basketOrder(number), hedged(), std::vector<CCodeOrderParam>(2),
                                 {{"A1", 0.5}});
    }

    CFakeClock clock;
    CFakeHost host;
};

TEST_F(VariantSteps, FirstStrategiesOfAKindAreKeptAndOtherKindsDoNotCount) {
    COrderStrategyMap strategies;
    for (int channel = 1; channel <= 6; ++channel) {
        strategies[channel] = CStrategyBuilder().channel(channel).source(
            channel % 2 == 0 ? EOrderStrategyType::File : EOrderStrategyType::Signal);
    }
    keepFirst(strategies, 1,
              [](const COrderStrategyParam& s) { return s.m_eStrategyType == EOrderStrategyType::File; });
    EXPECT_EQ(strategies.keys(), (QList<int>{1, 2, 3, 5}));
    keepFirst(strategies, 0, [](const COrderStrategyParam&) { return true; });
    EXPECT_TRUE(strategies.isEmpty());
}

TEST_F(VariantSteps, CommandIsLoggedOnlyWhileLoggingIsOn) {
    const CLogCapture capture;
    logCommand(this, "TC::COrderServiceSplit::orderStock", "line");
    EXPECT_TRUE(capture.lines().empty());
    utils::CLogCenter::setLogEnabled(true);
    logCommand(this, "TC::COrderServiceSplit::orderStock", "line");
    ASSERT_EQ(capture.lines().size(), 1u);
    EXPECT_NE(capture.lines()[0].text.find("[TC::COrderServiceSplit::orderStock] line"), std::string::npos);
}

TEST_F(VariantSteps, OrderIsAnnouncedWithItsStrategysFamily) {
    announceOrder(COrderBuilder(23), CStrategyBuilder());
    showUnknownFamily(COrderBuilder(23));
    EXPECT_EQ(host.messageTexts(),
              (std::vector<QString>{
                  QStringLiteral("[文件单]　通道号: 3, 通道类型: 品种0, 下单类型: 下单23, 策略类型: 来源2"),
                  QStringLiteral("[文件单]　通道号: 3, 交易类型错误!")}));
}

TEST_F(VariantSteps, OnlyTheAuditHearsOfOrdersThatTheUserMayNotSend) {
    EXPECT_TRUE(mayIssue(3, 5));
    EXPECT_TRUE(host.audit.incidents.empty());
    host.user.kind = 1;
    EXPECT_FALSE(mayIssue(3, 5));
    ASSERT_EQ(host.audit.incidents.size(), 1u);
    EXPECT_EQ(host.audit.incidents[0].m_eIncident, EIncident::OrdersDropped);
    EXPECT_EQ(host.audit.incidents[0].m_nChannel, 3);
    EXPECT_EQ(host.audit.incidents[0].m_nOrders, 5);
    EXPECT_EQ(host.audit.incidents[0].m_strCause, QStringLiteral("this kind of user may not issue commands"));
    EXPECT_TRUE(host.messageTexts().empty());
    EXPECT_TRUE(host.errorTexts().empty());
}

TEST_F(VariantSteps, BasketRequestLeavesWhatDiffersByVariant) {
    const CCommandRequest request = basketRequest(25);
    EXPECT_EQ(request.m_eTraderType, EQdTraderType::Basket);
    EXPECT_EQ(request.m_eHedgeType, EQdHedgeType::Compose);
    EXPECT_EQ(request.m_eBtnType, EFtSpecBtnBarType::None);
    EXPECT_EQ(request.m_codes.size(), 2u);
    EXPECT_EQ(request.m_weights, (std::map<std::string, double>{{"A1", 0.5}}));
    EXPECT_EQ(request.m_strAlgoParam, "basket text");
    EXPECT_TRUE(request.m_bCommandFlag);
    EXPECT_EQ(request.m_eForm, ECommandForm::Full);
    EXPECT_FALSE(request.m_bUnion);
    EXPECT_FALSE(request.m_bForceConfirm);
    EXPECT_EQ(request.m_strTag, "");
    EXPECT_TRUE(request.m_extra.isEmpty());
}

TEST_F(VariantSteps, BasketIsHedgedIfSwitchAndStrategySaySo) {
    host.switches.on.insert("mdl_order_compose_hedge");
    EXPECT_EQ(basketRequest(25).m_eHedgeType, EQdHedgeType::Hedge);
    EXPECT_EQ(makeBasketRequest(basketOrder(25), CStrategyBuilder(), {}, {}).m_eHedgeType,
              EQdHedgeType::Compose);
}

TEST_F(VariantSteps, FlagIsKeptFromSalesTargetsAndPositions) {
    for (const auto& [number, expected] :
         {std::pair{25, true}, {33, true}, {110, true}, {26, false}, {34, false}, {35, false}, {36, false}})
        EXPECT_EQ(basketRequest(number).m_bCommandFlag, expected) << number;
}

TEST_F(VariantSteps, HedgeLegHasThePriceKindOfItsOperation) {
    for (const auto& [number, kind] : {std::pair{25, 3}, {26, 9}, {33, 9}, {36, 9}}) {
        EXPECT_EQ(hedgeLeg(number, hedged()).jsonString(),
                  R"({ "lots" : 2, "m_nPriceKind" : )" + std::to_string(kind) + " }");
    }
}

TEST_F(VariantSteps, EveryFamilyHasARowInTheTableOfTheVariants) {
    for (std::size_t i = 0; i < kFamilyCount; ++i) {
        const CVariantFamily* row = findVariantFamily(kFamilies[i].m_eTradeType);
        ASSERT_NE(row, nullptr) << kFamilies[i].m_pszName;
        EXPECT_EQ(row->m_eTradeType, kFamilies[i].m_eTradeType);
    }
    for (const int number : {-1, 7, 8, 13})
        EXPECT_EQ(findVariantFamily(static_cast<EOrderStrategyTradeType>(number)), nullptr) << number;
}

TEST_F(VariantSteps, OnlyFuturesHaveAButton) {
    for (std::size_t i = 0; i < kFamilyCount; ++i) {
        const CVariantFamily* row = findVariantFamily(kFamilies[i].m_eTradeType);
        const bool isFuture = row->m_eTradeType == EOrderStrategyTradeType::Future;
        for (int number = 0; number <= 15; ++number) {
            const int button = number >= 10 ? 3 : number >= 6 ? 2 : 1;
            EXPECT_EQ(static_cast<int>(row->buttonOf(number)), isFuture ? button : 0) << number;
        }
    }
}

} // namespace
