#include "orderservice/socket/OrderCommandParser.h"

#include "orderservice/base/Text.h"
#include "orderservice/platform/TraderCenter.h"
#include "orderservice/records/OrderTypes.h"
#include "orderservice/records/Portfolio.h"
#include "tests/support/Builders.h"
#include "tests/support/DoorFakes.h"
#include "tests/support/FakeHost.h"

#include <boost/lexical_cast/bad_lexical_cast.hpp>
#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

namespace {

using namespace TC;

class OrderCommandParser : public testing::Test {
protected:
    bool parse(const std::string& argument) {
        order = COrderParam();
        error.clear();
        return parseSocketOrder(argument, registry, codes, order, error);
    }
    /// Parses a valid order and returns its only line.
    COrderSingleParam lineOf(const std::string& argument) {
        EXPECT_TRUE(parse(argument)) << argument;
        EXPECT_EQ(order.m_orders.size(), 1) << argument;
        return order.m_orders.value(0);
    }
    void addStrategy(EPriceType basketPrice = EPriceType::Latest) {
        registry.strategies.insert(3, CStrategyBuilder().set([&](auto& s) {
            s.setting(ESettingSlot::StockBasket).m_ePriceType = basketPrice;
        }));
    }
    void addBasket(const QString& name) {
        CBasketStockData row;
        row.m_strCode = QStringLiteral("600000");
        row.m_nVolume = 200;
        row.m_eOperationType = 19;
        row.m_dWeight = 0.5;
        host.user.baskets[name].m_rows = {row, row};
    }

    CFakeHost host;
    CPlainRegistry registry;
    COrderParam order;
    CRecentCodes codes;
    std::string error;
};

TEST_F(OrderCommandParser, ArgumentNeedsTwoFieldsAndNoEmptyOne) {
    for (const char* text : {"", "23", ",", "23,", ",3", "23,3,", "23,3,,600000", "40,3,,", "5,3,1,,2"}) {
        EXPECT_FALSE(parse(text)) << text;
        EXPECT_EQ(error, "") << text;
    }
}

TEST_F(OrderCommandParser, NumbersAreStrict) {
    for (const char* text : {"x,3", "23,x", "2.5,3", "23,3.0", "23, 3", "2147483648,3", "23,3,1e", "23,3,1E",
                             "23,3,1-", "23,3,1+", "23,3,a", "23,3,1,600000,x", "23,3,1,600000,1.5",
                             "0,3,1,IF,1,x", "0,3,1,IF,1,1,x", "48,3,c,x", "48,3,c,1,x"})
        EXPECT_THROW(parse(text), boost::bad_lexical_cast) << text;
    EXPECT_EQ(lineOf("+23,+3,-1.5e1").m_dPrice, -15);
}

TEST_F(OrderCommandParser, OrderIsASignalForItsChannel) {
    order.m_orders.resize(3);
    EXPECT_TRUE(parseSocketOrder("40,7", registry, codes, order, error));
    EXPECT_EQ(order.m_nOrderType, 40);
    EXPECT_EQ(order.m_nChannel, 7);
    EXPECT_EQ(order.m_eStrategyType, EOrderStrategyType::Signal);
    EXPECT_TRUE(order.m_orders.isEmpty());
}

TEST_F(OrderCommandParser, FutureLineHasTwoFurtherPrices) {
    const COrderSingleParam line = lineOf("0,3,3500,IF1712,2,3490,3600,more");
    EXPECT_EQ(line.m_dPrice, 3500);
    EXPECT_EQ(line.m_strCode, QStringLiteral("IF1712"));
    EXPECT_EQ(line.m_nVolume, 2);
    EXPECT_TRUE(line.m_bHasFirstLimit);
    EXPECT_EQ(line.m_dFirstLimit, 3490);
    EXPECT_TRUE(line.m_bHasSecondLimit);
    EXPECT_EQ(line.m_dSecondLimit, 3600);
}

TEST_F(OrderCommandParser, FutureFieldsMayBeLeftOutFromTheEnd) {
    const COrderSingleParam price = lineOf("15,3,3500");
    EXPECT_TRUE(price.m_strCode.isEmpty());
    EXPECT_TRUE(isUnset(price.m_nVolume));
    EXPECT_FALSE(price.m_bHasFirstLimit);
    const COrderSingleParam first = lineOf("15,3,3500,0,1,3490");
    EXPECT_TRUE(first.m_strCode.isEmpty());
    EXPECT_TRUE(first.m_bHasFirstLimit);
    EXPECT_FALSE(first.m_bHasSecondLimit);
    EXPECT_TRUE(isInvalidPrice(first.m_dSecondLimit));
}

/// A range of numbers, and the result of a line with three fields.
struct CNumbers {
    int first, last;
    int lines;         ///< number of order lines of "N,3,1"
    bool takesTwoOnly; ///< "N,3" is also accepted
};

void PrintTo(const CNumbers& numbers, std::ostream* out) {
    *out << numbers.first << " to " << numbers.last;
}

class EveryNumber : public OrderCommandParser, public testing::WithParamInterface<CNumbers> {};

TEST_P(EveryNumber, HasItsForm) {
    host.user.baskets[QStringLiteral("1")].m_rows.resize(4);
    for (int number = GetParam().first; number <= GetParam().last; ++number) {
        const std::string text = std::to_string(number) + ",3";
        EXPECT_TRUE(parse(text)) << number;
        EXPECT_EQ(order.m_orders.size(), GetParam().takesTwoOnly ? 1 : 0) << number;
        EXPECT_TRUE(parse(text + ",1")) << number;
        EXPECT_EQ(order.m_orders.size(), GetParam().lines) << number;
    }
}

// Baskets give four lines: the rows of the basket named "1".
INSTANTIATE_TEST_SUITE_P(Numbers, EveryNumber,
                         testing::Values(CNumbers{-2, -1, 4, false}, CNumbers{0, 15, 1, false},
                                         CNumbers{16, 22, 4, false}, CNumbers{23, 24, 1, false},
                                         CNumbers{25, 26, 4, false}, CNumbers{27, 32, 1, false},
                                         CNumbers{33, 35, 4, false}, CNumbers{37, 39, 1, false},
                                         CNumbers{40, 47, 0, false}, CNumbers{48, 55, 1, false},
                                         CNumbers{56, 57, 1, true}, CNumbers{58, 65, 0, false},
                                         CNumbers{66, 92, 1, false}, CNumbers{93, 101, 0, false}));

TEST_F(OrderCommandParser, PlainLine) {
    const COrderSingleParam line = lineOf("23,3,10.5,600000,100,more");
    EXPECT_EQ(line.m_dPrice, 10.5);
    EXPECT_EQ(line.m_strCode, QStringLiteral("600000"));
    EXPECT_EQ(line.m_nVolume, 100);
    EXPECT_TRUE(isInvalidPrice(line.m_dAmount));
    EXPECT_TRUE(lineOf("23,3,10.5,0,100").m_strCode.isEmpty());
}

TEST_F(OrderCommandParser, OnlyNumber32HasAnAmount) {
    const COrderSingleParam line = lineOf("32,3,50000.5");
    EXPECT_EQ(line.m_dAmount, 50000.5);
    EXPECT_EQ(line.m_dPrice, 50000.5);
    EXPECT_TRUE(isInvalidPrice(lineOf("39,3,50000.5").m_dAmount));
}

TEST_F(OrderCommandParser, OptionFieldsStandInAnotherOrder) {
    const COrderSingleParam line = lineOf("48,3,10000001,2,0.0512,more");
    EXPECT_EQ(line.m_strCode, QStringLiteral("10000001"));
    EXPECT_EQ(line.m_nVolume, 2);
    EXPECT_EQ(line.m_dPrice, 0.0512);
    EXPECT_TRUE(lineOf("57,3,0").m_strCode.isEmpty());
    EXPECT_TRUE(isInvalidPrice(lineOf("56,3").m_dPrice));
}

// Portfolio positions.

class PortfolioPosition : public OrderCommandParser {
protected:
    void addPortfolio(const std::string& key, const boost::shared_ptr<knservice::IData>& position) {
        const auto portfolio = boost::make_shared<knservice::CPortfolio>();
        if (position) portfolio->m_positions["b"] = boost::make_shared<knservice::CPortfolio>();
        if (position) portfolio->m_positions["a"] = position;
        host.tasks.tables[594][key] = portfolio;
    }
    static boost::shared_ptr<knservice::CPositionDetail> position(bool flag) {
        const auto detail = boost::make_shared<knservice::CPositionDetail>();
        detail->m_strCode = "600000";
        detail->m_nVolume = 700;
        detail->m_bFlag = flag;
        return detail;
    }
};

TEST_F(PortfolioPosition, FirstPositionIsSold) {
    addPortfolio("12____key", position(false));
    const COrderSingleParam line = lineOf("36,3,12_key");
    EXPECT_EQ(line.m_strCode, QStringLiteral("600000"));
    EXPECT_EQ(line.m_nVolume, 700);
    EXPECT_EQ(line.m_eOperationType, 19);
    EXPECT_EQ(order.m_strAccountKey, "12_key");
}

TEST_F(PortfolioPosition, FlaggedPositionHasNoVolume) {
    addPortfolio("12____key", position(true));
    EXPECT_EQ(lineOf("36,3,+12_key").m_nVolume, 0);
}

TEST_F(PortfolioPosition, UnknownPortfolioGivesNoLine) {
    EXPECT_TRUE(parse("36,3,12_key"));
    EXPECT_TRUE(order.m_orders.isEmpty());
    EXPECT_EQ(order.m_strAccountKey, "");
    host.tasks.hasGlobalData = false;
    EXPECT_TRUE(parse("36,3,12_key"));
}

TEST_F(PortfolioPosition, PortfolioWithoutAPositionGivesNoLine) {
    addPortfolio("12____key", nullptr);
    EXPECT_TRUE(parse("36,3,12_key"));
    EXPECT_TRUE(order.m_orders.isEmpty());
    EXPECT_EQ(order.m_strAccountKey, "12_key");
    addPortfolio("12____key", boost::make_shared<knservice::CPortfolio>()); // a record of another kind
    EXPECT_TRUE(parse("36,3,12_key"));
    EXPECT_TRUE(order.m_orders.isEmpty());
}

TEST_F(PortfolioPosition, KeyIsTwoPartsWithANumberInFront) {
    for (const char* text : {"36,3,12", "36,3,1_2_3", "36,3,12__key"}) {
        EXPECT_FALSE(parse(text)) << text;
        EXPECT_EQ(error, "参数有误") << text;
    }
    EXPECT_THROW(parse("36,3,x_key"), boost::bad_lexical_cast);
}

// Baskets.

TEST_F(OrderCommandParser, MemberListHasCodeVolumeAndMaybePrice) {
    addStrategy();
    ASSERT_TRUE(parse("25,3,600000|100;0|-300|11;000001|5|7|more,text"));
    ASSERT_EQ(order.m_orders.size(), 3);
    EXPECT_EQ(order.m_orders[0].m_strCode, QStringLiteral("600000"));
    EXPECT_EQ(order.m_orders[0].m_nVolume, 100);
    EXPECT_TRUE(isInvalidPrice(order.m_orders[0].m_dPrice));
    EXPECT_EQ(order.m_orders[1].m_strCode, QStringLiteral("0")); // here it stays a code
    EXPECT_EQ(order.m_orders[1].m_nVolume, -300);
    EXPECT_EQ(order.m_orders[1].m_dPrice, 11);
    EXPECT_EQ(order.m_orders[2].m_dPrice, 7);
    EXPECT_EQ(order.m_orders[2].m_eOperationType, -1);
    EXPECT_EQ(order.m_strBasketText, "text");
}

TEST_F(OrderCommandParser, MemberOfOnePartFails) {
    addStrategy();
    EXPECT_FALSE(parse("25,3,600000|100;000001"));
    EXPECT_EQ(error, "");
    EXPECT_FALSE(parse("25,3,600000|100;"));
}

TEST_F(OrderCommandParser, SpecifiedBasketPricesMustBeGiven) {
    addStrategy(EPriceType::Specified);
    EXPECT_FALSE(parse("25,3,600000|100|10;000001|100"));
    EXPECT_EQ(error, " 缺少指定价参数");
    EXPECT_TRUE(parse("25,3,600000|100|10"));
    addStrategy(EPriceType::SpecifiedByRow);
    EXPECT_TRUE(parse("25,3,600000|100"));
}

TEST_F(OrderCommandParser, MemberPriceIsAWholeNumber) {
    addStrategy();
    EXPECT_THROW(parse("25,3,600000|100|10.5"), boost::bad_lexical_cast);
    EXPECT_THROW(parse("25,3,600000|x"), boost::bad_lexical_cast);
    EXPECT_THROW(parse("25,3,600000|100|"), boost::bad_lexical_cast);
}

TEST_F(OrderCommandParser, MemberListWithoutItsStrategyIsRefused) {
    EXPECT_FALSE(parse("25,3,600000|100|10"));
    EXPECT_EQ(error, "");
}

TEST_F(OrderCommandParser, NamedBasketGivesItsRows) {
    addBasket(QStringLiteral("蓝筹"));
    for (const std::string& name : {std::string("蓝筹"), utils::safeUtf82Gbk("蓝筹")}) {
        ASSERT_TRUE(parse("33,3," + name + ",text"));
        ASSERT_EQ(order.m_orders.size(), 2);
        EXPECT_EQ(order.m_orders[0].m_strCode, QStringLiteral("600000"));
        EXPECT_EQ(order.m_orders[0].m_nVolume, 200);
        EXPECT_EQ(order.m_orders[0].m_eOperationType, 19);
        EXPECT_EQ(order.m_orders[0].m_dWeight, 0.5);
        EXPECT_EQ(order.m_strBasketText, ""); // only 25 and 26 have one
    }
    EXPECT_FALSE(parse("25,3,蓝"));
    EXPECT_EQ(error, " 指定的篮子不存在");
    host.user.loggedIn = false;
    EXPECT_FALSE(parse("25,3,蓝筹"));
}

TEST_F(OrderCommandParser, AllIsOnlyForSellingOfAKnownStrategy) {
    addStrategy();
    for (const char* word : {"all", "ALL", "aLl"}) {
        EXPECT_TRUE(parse(std::string("26,3,") + word + ",text"));
        EXPECT_TRUE(order.m_bAll);
        EXPECT_TRUE(order.m_orders.isEmpty());
        EXPECT_EQ(order.m_strBasketText, "text");
    }
    EXPECT_FALSE(parse("25,3,all"));
    EXPECT_EQ(error, " 指定的篮子不存在");
    EXPECT_FALSE(parse("26,9,all"));
    EXPECT_EQ(error, " 指定的篮子不存在");
    addBasket(QStringLiteral("all"));
    EXPECT_TRUE(parse("25,3,all"));
    EXPECT_EQ(order.m_orders.size(), 2);
    EXPECT_FALSE(order.m_bAll);
}

TEST_F(OrderCommandParser, AllWithoutAccountsIsNotSet) {
    registry.strategies.insert(3, CStrategyBuilder().group(QStringLiteral("none")));
    EXPECT_TRUE(parse("26,3,all"));
    EXPECT_FALSE(order.m_bAll);
}

} // namespace
