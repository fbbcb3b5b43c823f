// Files whose first line is a header: lists and baskets.
#include "orderservice/base/Text.h"
#include "orderservice/records/OrderTypes.h"
#include "tests/intake/OrderFileParserFixture.h"

#include <boost/lexical_cast/bad_lexical_cast.hpp>
#include <gtest/gtest.h>

#include <ostream>

namespace {

using namespace TC;

class BasketFile : public OrderFileParserFixture {};

// Lists.

TEST_F(BasketFile, ListRowsAreSplitByBarOrTab) {
    const auto orders = read({"35,0", "600000|100", "000001\t-300"});
    ASSERT_EQ(orders.size(), 1);
    EXPECT_EQ(orders[0].m_nOrderType, kOrderBasketList);
    EXPECT_EQ(orders[0].m_nChannel, kChannel);
    EXPECT_EQ(orders[0].m_eStrategyType, EOrderStrategyType::File);
    ASSERT_EQ(orders[0].m_orders.size(), 2);
    EXPECT_EQ(orders[0].m_orders[0].m_strCode, QStringLiteral("600000"));
    EXPECT_EQ(orders[0].m_orders[0].m_nVolume, 100);
    EXPECT_EQ(orders[0].m_orders[0].m_eOperationType, 18);
    EXPECT_EQ(orders[0].m_orders[1].m_nVolume, -300);
}

TEST_F(BasketFile, ListRowsOfAnotherFieldCountAreSkipped) {
    const auto orders = read({"35,0", "600000", "600000|1|2", "600001|5"});
    ASSERT_EQ(orders[0].m_orders.size(), 1);
    EXPECT_EQ(orders[0].m_orders[0].m_strCode, QStringLiteral("600001"));
}

TEST_F(BasketFile, ListRowNeedsAVolume) {
    parse("35,0");
    EXPECT_THROW(parse("600000|"), boost::bad_lexical_cast);
}

TEST_F(BasketFile, ListOfAForeignChannelIsDropped) {
    EXPECT_TRUE(read({"35,9", "600000|100"}).isEmpty());
}

TEST_F(BasketFile, HeadersMayNameTheReadersChannel) {
    EXPECT_EQ(read({"35,3", "600000|100"}).size(), 1);
    COrderFileParser basket(strategy, kChannel, port);
    std::string header = "25,3";
    basket.takeLine(header);
    EXPECT_EQ(basket.takeOrders()[0].m_nChannel, kChannel);
}

TEST_F(BasketFile, ABadNumberKeepsTheRowsBeforeIt) {
    parse("35,0");
    parse("600000|100");
    EXPECT_THROW(parse("600001|x"), boost::bad_lexical_cast);
    EXPECT_EQ(parser().takeOrders()[0].m_orders.size(), 1);
    COrderFileParser basket(strategy, kChannel, port);
    for (std::string line : {"25,0", "600000\t100"})
        basket.takeLine(line);
    std::string bad = "600001\tx";
    EXPECT_THROW(basket.takeLine(bad), boost::bad_lexical_cast);
    EXPECT_EQ(basket.takeOrders()[0].m_orders.size(), 1);
}

TEST_F(BasketFile, HeaderWhoseChannelIsNoNumberEndsTheFile) {
    EXPECT_THROW(parse("25,x"), boost::bad_lexical_cast);
    // The order type was read before the channel, so there is already an empty basket.
    EXPECT_TRUE(parser().takeOrders()[0].m_orders.isEmpty());
}

// Baskets.

TEST_F(BasketFile, BasketHeaderWithTwoFieldsReadsRows) {
    for (const char* header : {"25,0", "26,0", "33,0"}) {
        COrderFileParser fresh(strategy, kChannel, port);
        std::string line = header;
        EXPECT_EQ(fresh.parseLineParam(line), TR_LINE_DONE);
        line = "600000\t100\t10.5\t19";
        EXPECT_EQ(fresh.parseLineParam(line), TR_PLAIN_LINE);
        const auto orders = fresh.takeOrders();
        ASSERT_EQ(orders.size(), 1);
        ASSERT_EQ(orders[0].m_orders.size(), 1);
        EXPECT_EQ(orders[0].m_orders[0].m_strCode, QStringLiteral("600000"));
        EXPECT_EQ(orders[0].m_orders[0].m_nVolume, 100);
        EXPECT_EQ(orders[0].m_orders[0].m_dPrice, 10.5);
        EXPECT_EQ(orders[0].m_orders[0].m_eOperationType, 19);
    }
}

TEST_F(BasketFile, BasketRowMayEndAfterTheVolume) {
    const auto orders = read({"25,0", "600000\t100", "600001\t200\t\t"});
    ASSERT_EQ(orders[0].m_orders.size(), 2);
    EXPECT_TRUE(isInvalidPrice(orders[0].m_orders[1].m_dPrice));
    EXPECT_EQ(orders[0].m_orders[1].m_eOperationType, -1);
}

TEST_F(BasketFile, SpecifiedPricesSkipRowsWithoutPriceField) {
    for (const EPriceType type : {EPriceType::Specified, EPriceType::SpecifiedByRow}) {
        setBasketPrice(type);
        COrderFileParser fresh(strategy, kChannel, port);
        std::string line = "25,0";
        fresh.parseLineParam(line);
        line = "600000\t100";
        EXPECT_EQ(fresh.parseLineParam(line), TR_LINE_DONE);
        line = "600001\t100\t9.9";
        EXPECT_EQ(fresh.parseLineParam(line), TR_PLAIN_LINE);
        EXPECT_EQ(fresh.takeOrders()[0].m_orders.size(), 1);
    }
}

TEST_F(BasketFile, BasketRowOfOneFieldIsSkipped) {
    parse("25,0");
    EXPECT_EQ(parse("600000"), TR_LINE_DONE);
}

TEST_F(BasketFile, BasketOfAForeignChannelKeepsItsChannel) {
    EXPECT_EQ(read({"25,9", "600000\t100"})[0].m_nChannel, 9);
}

TEST_F(BasketFile, BasketFilesTakeCancelsToo) {
    read({"25,0", "cancel 8", "600000\t100"});
    EXPECT_EQ(port.terminated, std::vector<int>{8});
}

TEST_F(BasketFile, NamedBasketSettlesTheOrder) {
    addBasket(QStringLiteral("篮子"));
    port.params["x"] = tradeParam("r");
    const auto orders = read({"33,0,篮子\r\n", "600001\t100", "orderParam=x"});
    ASSERT_EQ(orders.size(), 1);
    ASSERT_EQ(orders[0].m_orders.size(), 1);
    EXPECT_EQ(orders[0].m_orders[0].m_strCode, QStringLiteral("600000"));
    EXPECT_EQ(orders[0].m_orders[0].m_nVolume, 200);
    EXPECT_EQ(orders[0].m_orders[0].m_eOperationType, 19);
    EXPECT_EQ(orders[0].m_orders[0].m_dWeight, 0.5);
    EXPECT_EQ(orders[0].m_strRemark, "r");
}

TEST_F(BasketFile, UnknownBasketIsReportedAndLeavesAnOrderWithoutRows) {
    const auto orders = read({"33,0,none", "600001\t100"});
    ASSERT_EQ(orders.size(), 1);
    EXPECT_TRUE(orders[0].m_orders.isEmpty());
    ASSERT_EQ(port.notes.size(), 1u);
    EXPECT_EQ(port.notes[0], QStringLiteral("[文件单]　通道号: 3, 中间文件中指定的篮子不存在!"));
}

TEST_F(BasketFile, BasketNamesKeepCase) {
    addBasket(QStringLiteral("abc"));
    EXPECT_TRUE(read({"25,0,ABC"})[0].m_orders.isEmpty());
}

TEST_F(BasketFile, AllAccountsIsOnlyForSelling) {
    EXPECT_TRUE(read({"26,0,ALL"})[0].m_bAll);
    EXPECT_TRUE(port.notes.empty());
    COrderFileParser other(strategy, kChannel, port);
    std::string line = "33,0,ALL";
    EXPECT_EQ(other.parseLineParam(line), TR_BASKET_HEADER);
    EXPECT_FALSE(other.takeOrders()[0].m_bAll);
    EXPECT_EQ(port.notes.size(), 1u);
}

TEST_F(BasketFile, AllAccountsWithoutAccountsIsNotSet) {
    port.accounts = false;
    const auto orders = read({"26,0,all", "600000\t100"});
    EXPECT_FALSE(orders[0].m_bAll);
    EXPECT_TRUE(orders[0].m_orders.isEmpty()); // nevertheless the row after the header is not used
    EXPECT_TRUE(port.notes.empty());
}

// Whole baskets.

TEST_F(BasketFile, WholeBasketBuysEveryRowAndEndsTheFile) {
    addBasket(QStringLiteral("abc"));
    EXPECT_EQ(parse("34,0,abc"), TR_STOP_READING);
    const auto orders = parser().takeOrders();
    ASSERT_EQ(orders.size(), 1);
    EXPECT_EQ(orders[0].m_nOrderType, kOrderBasketWhole);
    EXPECT_EQ(orders[0].m_nChannel, kChannel);
    EXPECT_EQ(orders[0].m_orders[0].m_eOperationType, 18);
    EXPECT_EQ(orders[0].m_orders[0].m_nVolume, 200);
    EXPECT_EQ(orders[0].m_orders[0].m_dWeight, 0.5);
}

TEST_F(BasketFile, WholeBasketFollowsTheOrdersBeforeIt) {
    addBasket(QStringLiteral("abc"));
    const auto orders = read({"23,0,1,600000,1", "34,0,abc", "23,0,2,600000,1"});
    ASSERT_EQ(orders.size(), 2);
    EXPECT_EQ(orders[1].m_nOrderType, kOrderBasketWhole);
}

TEST_F(BasketFile, WholeBasketOfAForeignChannelGoesToThatStrategy) {
    addBasket(QStringLiteral("abc"));
    EXPECT_EQ(read({"34,9,abc"})[0].m_nChannel, 9);
    EXPECT_TRUE(port.notes.empty());
}

TEST_F(BasketFile, EmptyNameIsANameThatNobodyHas) {
    EXPECT_TRUE(read({"25,0,"})[0].m_orders.isEmpty());
    EXPECT_EQ(port.notes.size(), 1u);
}

TEST_F(BasketFile, WholeBasketWithoutAKnownNameIsAnOrderWithoutRows) {
    for (const char* line : {"34,0,none", "34,0", "34,0,abc,1"}) {
        COrderFileParser fresh(strategy, kChannel, port);
        std::string copy = line;
        EXPECT_EQ(fresh.parseLineParam(copy), TR_PLAIN_LINE) << line;
        const auto orders = fresh.takeOrders();
        ASSERT_EQ(orders.size(), 1) << line;
        EXPECT_TRUE(orders[0].m_orders.isEmpty()) << line;
    }
}

} // namespace
