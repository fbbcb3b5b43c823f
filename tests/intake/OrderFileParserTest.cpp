#include "orderservice/intake/OrderFileParser.h"

#include "orderservice/base/Text.h"
#include "orderservice/records/OrderTypes.h"
#include "tests/intake/OrderFileParserFixture.h"

#include <boost/lexical_cast/bad_lexical_cast.hpp>
#include <gtest/gtest.h>

#include <limits>
#include <ostream>

namespace {

using namespace TC;

class OrderFileParser : public OrderFileParserFixture {};

// Plain orders.

TEST_F(OrderFileParser, PlainLineTakesTheReadersChannelForZero) {
    const COrderParam order = readOne("23,0,10.5,600000,100");
    EXPECT_EQ(order.m_nOrderType, 23);
    EXPECT_EQ(order.m_nChannel, kChannel);
    EXPECT_EQ(order.m_eStrategyType, EOrderStrategyType::File);
    EXPECT_EQ(order.m_nTradeTypeOverride, 0);
    ASSERT_EQ(order.m_orders.size(), 1);
    EXPECT_EQ(order.m_orders[0].m_strCode, QStringLiteral("600000"));
    EXPECT_EQ(order.m_orders[0].m_dPrice, 10.5);
    EXPECT_EQ(order.m_orders[0].m_nVolume, 100);
}

TEST_F(OrderFileParser, PlainLineMayNameItsOwnChannel) {
    EXPECT_EQ(readOne("23,3,10.5,600000,100").m_nChannel, kChannel);
}

TEST_F(OrderFileParser, ForeignChannelIsDroppedWithANoteAndTheFileGoesOn) {
    const auto orders = read({"23,5,10.5,600000,100", "24,0,9,600001,200"});
    ASSERT_EQ(orders.size(), 1);
    EXPECT_EQ(orders[0].m_nOrderType, 24);
    ASSERT_EQ(port.notes.size(), 1u);
    EXPECT_EQ(port.notes[0], QStringLiteral("[文件单]　通道号: 3, 中间文件中指定的通道号为 5, 忽略!"));
}

TEST_F(OrderFileParser, ForeignChannelGivesPlainLineResult) {
    EXPECT_EQ(parse("23,5,10.5,600000,100"), TR_PLAIN_LINE);
}

TEST_F(OrderFileParser, CodeZeroMeansNoCode) {
    EXPECT_TRUE(readOne("23,0,0,0,100").m_orders[0].m_strCode.isEmpty());
}

TEST_F(OrderFileParser, GeneralFormLeavesDefaultsForEmptyAndAbsentFields) {
    const COrderSingleParam line = readOne("24,0,,,").m_orders[0];
    EXPECT_TRUE(isInvalidPrice(line.m_dPrice));
    EXPECT_TRUE(line.m_strCode.isEmpty());
    EXPECT_TRUE(isUnset(line.m_nVolume));
    EXPECT_EQ(readOne("24,0").m_orders.size(), 1);
}

TEST_F(OrderFileParser, AccountOfATextLineIsNotRead) {
    EXPECT_TRUE(readOne("23,0,10.5,600000,100,A1,remark").m_orders[0].m_strAccount.isEmpty());
}

TEST_F(OrderFileParser, BlanksAndCarriageReturnsInsideALineDisappear) {
    const COrderParam order = readOne(" 23, 0, 10.5,\r 600 000 , 100\r\n");
    EXPECT_EQ(order.m_orders[0].m_strCode, QStringLiteral("600000"));
    EXPECT_EQ(order.m_orders[0].m_nVolume, 100);
}

TEST_F(OrderFileParser, LinesWithFewerThanTwoFieldsAreIgnored) {
    EXPECT_EQ(parse("\n"), TR_LINE_DONE);
    EXPECT_EQ(parse("23"), TR_LINE_DONE);
    EXPECT_EQ(parse("CANCEL 5"), TR_LINE_DONE);
    EXPECT_TRUE(parser().takeOrders().isEmpty());
    EXPECT_TRUE(port.terminated.empty());
}

TEST_F(OrderFileParser, RequiredNumbersThrow) {
    for (const char* line :
         {"x,0,1,600000,1", ",0,1,600000,1", "23,,1,600000,1", "23,0,1x,600000,1", "23,0,1,600000,1.5",
          "23,0,1,600000,99999999999", "0,0,,IF1712,1", "32,0,", "48,0,", "48,0,1,10000001,"}) {
        EXPECT_THROW(parse(line), boost::bad_lexical_cast) << line;
    }
}

TEST_F(OrderFileParser, UnknownNumberGivesAnOrderWithoutLines) {
    for (const int number : {16, 22, 36, 40, 47, 58, 65, 93, 100, 110, -1}) {
        COrderFileParser fresh(strategy, kChannel, port);
        std::string line = std::to_string(number) + ",0,10.5,600000,100";
        EXPECT_EQ(fresh.parseLineParam(line), TR_PLAIN_LINE) << number;
        const auto batch = fresh.takeOrders();
        ASSERT_EQ(batch.size(), 1) << number;
        EXPECT_TRUE(batch[0].m_orders.isEmpty()) << number;
        EXPECT_EQ(batch[0].m_nTradeTypeOverride, -1) << number;
    }
}

struct CFormCase {
    int first, last, overrideFamily;
};

void PrintTo(const CFormCase& c, std::ostream* out) {
    *out << c.first << ".." << c.last;
}

class GeneralForm : public testing::TestWithParam<CFormCase> {};

TEST_P(GeneralForm, ReadsPriceCodeVolumeAndNamesTheFamily) {
    const COrderStrategyParam strategy;
    CFakeLinePort port;
    for (int number = GetParam().first; number <= GetParam().last; ++number) {
        COrderFileParser parser(strategy, kChannel, port);
        std::string line = std::to_string(number) + ",0,1.25,830000,700";
        parser.parseLineParam(line);
        const auto orders = parser.takeOrders();
        ASSERT_EQ(orders.size(), 1) << number;
        ASSERT_EQ(orders[0].m_orders.size(), 1) << number;
        EXPECT_EQ(orders[0].m_orders[0].m_dPrice, 1.25) << number;
        EXPECT_EQ(orders[0].m_orders[0].m_strCode, QStringLiteral("830000")) << number;
        EXPECT_EQ(orders[0].m_orders[0].m_nVolume, 700) << number;
        EXPECT_EQ(orders[0].m_nTradeTypeOverride, GetParam().overrideFamily) << number;
    }
}

INSTANTIATE_TEST_SUITE_P(Numbers, GeneralForm,
                         testing::Values(CFormCase{23, 24, 0}, CFormCase{86, 92, 0}, CFormCase{27, 31, 3},
                                         CFormCase{37, 38, 3}, CFormCase{66, 85, 11}));

// Futures.

TEST_F(OrderFileParser, FutureLineHasTwoFurtherPrices) {
    const COrderSingleParam line = readOne("0,0,3500,IF1712,1,,3600").m_orders[0];
    EXPECT_EQ(line.m_dPrice, 3500);
    EXPECT_EQ(line.m_strCode, QStringLiteral("IF1712"));
    EXPECT_EQ(line.m_nVolume, 1);
    EXPECT_TRUE(line.m_bHasFirstLimit);
    EXPECT_EQ(line.m_dFirstLimit, DBL_MAX);
    EXPECT_TRUE(line.m_bHasSecondLimit);
    EXPECT_EQ(line.m_dSecondLimit, 3600);
}

TEST_F(OrderFileParser, FutureLineWithOneLimitGivesTheFirst) {
    const COrderSingleParam line = readOne("0,0,3500,IF1712,1,3600").m_orders[0];
    EXPECT_TRUE(line.m_bHasFirstLimit);
    EXPECT_EQ(line.m_dFirstLimit, 3600);
    EXPECT_FALSE(line.m_bHasSecondLimit);
}

TEST_F(OrderFileParser, FutureLineWithoutLimitsLeavesThemOff) {
    const COrderSingleParam line = readOne("15,0,3500,0,").m_orders[0];
    EXPECT_TRUE(line.m_strCode.isEmpty());
    EXPECT_TRUE(isUnset(line.m_nVolume));
    EXPECT_FALSE(line.m_bHasFirstLimit);
    EXPECT_FALSE(line.m_bHasSecondLimit);
}

TEST_F(OrderFileParser, FutureLineWithoutPriceFieldGivesNoOrderLine) {
    EXPECT_TRUE(readOne("3,0").m_orders.isEmpty());
}

// Amounts.

TEST_F(OrderFileParser, AmountLineReadsTheAmountOnly) {
    for (const char* number : {"32", "39"}) {
        COrderFileParser fresh(strategy, kChannel, port);
        std::string line = std::string(number) + ",0,12345.67,600000,100";
        fresh.parseLineParam(line);
        const auto orders = fresh.takeOrders();
        ASSERT_EQ(orders[0].m_orders.size(), 1);
        EXPECT_EQ(orders[0].m_orders[0].m_dAmount, 12345.67);
        EXPECT_TRUE(orders[0].m_orders[0].m_strCode.isEmpty());
        EXPECT_EQ(orders[0].m_nTradeTypeOverride, -1);
    }
}

TEST_F(OrderFileParser, AmountLineWithoutAmountGivesNoOrderLine) {
    EXPECT_TRUE(readOne("32,0").m_orders.isEmpty());
}

// Options.

TEST_F(OrderFileParser, OptionLineNamesItsAccount) {
    const COrderParam order = readOne("48,0,0.05,10000001,2,A7");
    EXPECT_EQ(order.m_nTradeTypeOverride, 4);
    EXPECT_EQ(order.m_orders[0].m_dPrice, 0.05);
    EXPECT_EQ(order.m_orders[0].m_strCode, QStringLiteral("10000001"));
    EXPECT_EQ(order.m_orders[0].m_nVolume, 2);
    EXPECT_EQ(order.m_orders[0].m_strAccount, QStringLiteral("A7"));
}

TEST_F(OrderFileParser, OptionLineWithoutFieldsGivesALineForLockAndUnlockOnly) {
    EXPECT_EQ(readOne("56,0").m_orders.size(), 1);
    COrderFileParser fresh(strategy, kChannel, port);
    std::string line = "55,0";
    fresh.parseLineParam(line);
    EXPECT_TRUE(fresh.takeOrders()[0].m_orders.isEmpty());
}

// Rows of a table.

class TableRows : public OrderFileParser {
protected:
    void SetUp() override { strategy.m_nAccountMode = COrderStrategyParam::kTableMode; }
    COrderParam row(const std::string& line) {
        std::string copy = line;
        parser().parseLineParam(copy, 7);
        const auto orders = parser().takeOrders();
        EXPECT_EQ(orders.size(), 1);
        return orders.value(0);
    }
};

TEST_F(TableRows, GeneralRowHasPriceCommandAccountAndRemark) {
    const COrderParam order = row("23,S5,10.5,600000,100,A1,note,,,");
    EXPECT_EQ(order.m_eStrategyType, EOrderStrategyType::BatchPending);
    EXPECT_EQ(order.m_nChannel, kChannel);
    EXPECT_EQ(order.m_strRemark, "note");
    EXPECT_EQ(order.m_orders[0].m_ePriceType, EPriceType::Sell5);
    EXPECT_EQ(order.m_orders[0].m_dPrice, 10.5);
    EXPECT_EQ(order.m_orders[0].m_strAccount, QStringLiteral("A1"));
    EXPECT_EQ(order.m_orders[0].m_nOverFreqMode, 7);
}

TEST_F(TableRows, UnknownPriceCommandMeansLatest) {
    EXPECT_EQ(row("23,Q,10.5,600000,100").m_orders[0].m_ePriceType, EPriceType::Latest);
}

TEST_F(TableRows, OptionRowIsShiftedByThePriceCommand) {
    const COrderParam order = row("48,3,0.05,10000001,2,A7,note");
    EXPECT_EQ(order.m_orders[0].m_ePriceType, EPriceType::Specified);
    EXPECT_EQ(order.m_orders[0].m_nVolume, 2);
    EXPECT_EQ(order.m_orders[0].m_strAccount, QStringLiteral("A7"));
    EXPECT_EQ(order.m_strRemark, "note");
    EXPECT_EQ(order.m_orders[0].m_nOverFreqMode, 7);
}

TEST_F(TableRows, FutureRowHasNoPriceCommand) {
    const COrderParam order = row("0,3500,IF1712,1");
    EXPECT_EQ(order.m_orders[0].m_dPrice, 3500);
    EXPECT_EQ(order.m_orders[0].m_strCode, QStringLiteral("IF1712"));
}

TEST_F(TableRows, WholeBasketReadsChannelAndNameFromTheSameField) {
    addBasket(QStringLiteral("9"));
    const COrderParam order = row("34,9,");
    EXPECT_EQ(order.m_nChannel, 9);
    EXPECT_EQ(order.m_orders.size(), 1);
}

// Cancels.

TEST_F(OrderFileParser, CancelEndsTheTasksOfTheId) {
    EXPECT_EQ(parse("cancel 42\n"), TR_LINE_DONE);
    EXPECT_EQ(port.terminated, std::vector<int>{42});
}

TEST_F(OrderFileParser, CancelWithAnotherFieldCountIsIgnored) {
    for (const char* line : {"cancel", "cancel 1 2", "cancel  1", "cancel 1 "}) {
        EXPECT_EQ(parse(line), TR_LINE_DONE) << line;
    }
    EXPECT_TRUE(port.terminated.empty());
}

TEST_F(OrderFileParser, CancelOfNoNumberEndsTheFile) {
    EXPECT_THROW(parse("cancel abc"), boost::bad_lexical_cast);
    EXPECT_THROW(parse("cancel "), boost::bad_lexical_cast);
}

TEST_F(OrderFileParser, CancelOrderHandsAllFieldsOn) {
    EXPECT_EQ(parse("cancel_order A1 77 x\n"), TR_LINE_DONE);
    const std::vector<std::string> fields{"cancel_order", "A1", "77", "x"};
    ASSERT_EQ(port.cancelled.size(), 1u);
    EXPECT_EQ(port.cancelled[0], fields);
}

TEST_F(OrderFileParser, CancelOrderWithFewerThanThreeFieldsIsIgnored) {
    EXPECT_EQ(parse("cancel_order A1"), TR_LINE_DONE);
    EXPECT_TRUE(port.cancelled.empty());
}

TEST_F(OrderFileParser, CancelKeepsCase) {
    EXPECT_EQ(parse("Cancel 42"), TR_LINE_DONE);
    EXPECT_TRUE(port.terminated.empty());
}

TEST_F(OrderFileParser, CancelBeforeAHeaderDoesNotUseTheFirstLineUp) {
    const auto orders = read({"cancel 1", "35,0", "600000\t100"});
    ASSERT_EQ(orders.size(), 1);
    EXPECT_EQ(orders[0].m_nOrderType, kOrderBasketList);
}

TEST_F(OrderFileParser, ABlankLineBeforeAHeaderUsesTheFirstLineUp) {
    const auto orders = read({"", "35,0", "600000\t100"});
    ASSERT_EQ(orders.size(), 1);
    EXPECT_TRUE(orders[0].m_orders.isEmpty()); // 35 has no line form as a plain order
}

// Trade parameters.

TEST_F(OrderFileParser, TradeParametersGoToTheOrdersBeforeThem) {
    port.params["first"] = tradeParam("one");
    port.params["second"] = tradeParam("two");
    const auto orders = read({"23,0,1,600000,1", "23,0,2,600000,1", "orderParam=first", "23,0,3,600000,1",
                              "orderParam=second", "23,0,4,600000,1"});
    ASSERT_EQ(orders.size(), 4);
    EXPECT_EQ(orders[0].m_strRemark, "one");
    EXPECT_EQ(orders[1].m_strRemark, "one");
    EXPECT_EQ(orders[2].m_strRemark, "two");
    EXPECT_EQ(orders[3].m_strRemark, "");
}

TEST_F(OrderFileParser, TradeParametersCopyEveryField) {
    COrderTradeParam& param = port.params["all"];
    param.m_strRemark = "remark";
    param.m_eOrderType = 7;
    param.m_strOrderSetting = QStringLiteral("设置");
    param.m_strAccountKeyPart1 = QStringLiteral("p1");
    param.m_strAccountKeyPart2 = QStringLiteral("p2");
    param.m_nSettingKind = 1;
    param.m_strTradeText1 = "t1";
    param.m_strTradeText2 = "t2";
    param.m_strTradeText3 = "t3";
    const COrderParam order = read({"23,0,1,600000,1", "ORDERPARAM=all"}).value(0);
    EXPECT_EQ(order.m_strRemark, "remark");
    EXPECT_EQ(order.m_eOrderType, static_cast<EOrderType>(7));
    EXPECT_EQ(order.m_strOrderSetting, "设置");
    EXPECT_EQ(order.m_strAccountKeyPart1, QStringLiteral("p1"));
    EXPECT_EQ(order.m_strAccountKeyPart2, QStringLiteral("p2"));
    EXPECT_EQ(order.m_nSettingKind, 1);
    EXPECT_EQ(order.m_strTradeText1, "t1");
    EXPECT_EQ(order.m_strTradeText2, "t2");
    EXPECT_EQ(order.m_strTradeText3, "t3");
}

TEST_F(OrderFileParser, RemarkOfTradeParametersIsReadAsGbk) {
    const std::string gbk = utils::toLocal8Bit(QStringLiteral("备注"));
    port.params[gbk] = tradeParam(gbk);
    const auto orders = read({"23,0,1,600000,1", "orderParam=" + gbk});
    EXPECT_EQ(port.paramTexts, std::vector<std::string>{gbk});
    EXPECT_EQ(orders[0].m_strRemark, "备注");
}

TEST_F(OrderFileParser, EmptyRemarkFallsBackToTheStrategys) {
    port.defaultRemarkText = "default";
    port.params["x"] = tradeParam("");
    EXPECT_EQ(read({"23,0,1,600000,1", "orderparam=x"})[0].m_strRemark, "default");
}

TEST_F(OrderFileParser, RefusedRemarksAreClearedAlsoWhereTheFileGaveOne) {
    port.remarksAllowed = false;
    port.defaultRemarkText = "default";
    port.params["x"] = tradeParam("given");
    EXPECT_EQ(read({"23,0,1,600000,1", "orderParam=x"})[0].m_strRemark, "");
}

TEST_F(OrderFileParser, TradeParametersWithoutTextReachNoParser) {
    EXPECT_EQ(parse("orderParam="), TR_LINE_DONE);
    EXPECT_TRUE(port.paramTexts.empty());
}

TEST_F(OrderFileParser, TradeParametersWithoutEqualsSignAreTheirOwnText) {
    EXPECT_EQ(parse("orderParamX"), TR_LINE_DONE);
    EXPECT_EQ(port.paramTexts, std::vector<std::string>{"orderParamX"});
}

TEST_F(OrderFileParser, TextAfterTheFirstEqualsSignIsUsed) {
    parse("orderParam=a=b");
    EXPECT_EQ(port.paramTexts, std::vector<std::string>{"a=b"});
}

TEST_F(OrderFileParser, TradeParametersThatAreNotUnderstoodLeaveTheParametersAsTheyWere) {
    port.params["known"] = tradeParam("known");
    const auto orders =
        read({"23,0,1,600000,1", "orderParam=known", "23,0,2,600000,1", "orderParam=unknown"});
    EXPECT_EQ(orders[0].m_strRemark, "known");
    EXPECT_EQ(orders[1].m_strRemark, "known"); // the last valid parameters are still used
}

TEST_F(OrderFileParser, OrdersBeforeTradeParametersThatAreNotUnderstoodAreServed) {
    port.params["known"] = tradeParam("known");
    const auto orders = read({"23,0,1,600000,1", "orderParam=knwon", "23,0,2,600000,1", "orderParam=known"});
    EXPECT_EQ(orders[0].m_strRemark, "");
    EXPECT_EQ(orders[1].m_strRemark, "known");
    EXPECT_EQ(parser().unreadTradeParams(), 1);
}

TEST_F(OrderFileParser, TradeParametersAndOrderCancelsBeforeAHeaderDoNotUseTheFirstLineUp) {
    port.params["known"] = tradeParam("known");
    const auto orders = read({"orderParam=known", "cancel_order A1 7", "35,0", "600000|100"});
    ASSERT_EQ(orders.size(), 1);
    EXPECT_EQ(orders[0].m_nOrderType, kOrderBasketList);
    EXPECT_EQ(orders[0].m_strRemark, "known");
}

TEST_F(OrderFileParser, LaterTradeParametersReplaceThoseOfTheListAndOfTheBasket) {
    port.params["a"] = tradeParam("a");
    port.params["b"] = tradeParam("b");
    EXPECT_EQ(read({"35,0", "600000|1", "orderParam=a", "600001|1", "orderParam=b"})[0].m_strRemark, "b");
    COrderFileParser basket(strategy, kChannel, port);
    for (std::string line : {"25,0", "600000\t1", "orderParam=b", "600001\t1", "orderParam=a"})
        basket.takeLine(line);
    EXPECT_EQ(basket.takeOrders()[0].m_strRemark, "a");
}

TEST_F(OrderFileParser, ALineThatBeginsWithOrderParamIsNeverAnOrder) {
    EXPECT_EQ(parse("orderParam,0,1,600000,1"), TR_LINE_DONE);
    EXPECT_TRUE(parser().takeOrders().isEmpty());
}

TEST_F(OrderFileParser, ABlankBeforeOrderParamMakesItAPlainLine) {
    EXPECT_EQ(parse(" orderParam=x"), TR_LINE_DONE);
    EXPECT_TRUE(port.paramTexts.empty());
}

TEST_F(OrderFileParser, OrdersOfTheSameInstrumentShareTheTextOfItsCode) {
    const auto orders = read({"23,0,1,600000,1", "0,0,1,600000,1,2,3", "23,0,1,600001,1", "48,0,1,600000,1"});
    ASSERT_EQ(orders.size(), 4);
    EXPECT_EQ(orders[2].m_orders[0].m_strCode, QStringLiteral("600001"));
    for (const int i : {1, 3}) {
        EXPECT_EQ(orders[i].m_orders[0].m_strCode, QStringLiteral("600000"));
        EXPECT_EQ(orders[i].m_orders[0].m_strCode.constData(), orders[0].m_orders[0].m_strCode.constData());
    }
}

TEST_F(OrderFileParser, EveryOrderOfManyInstrumentsHasItsOwnCode) {
    constexpr int kInstruments = 1000;
    std::vector<std::string> lines;
    for (int i = 0; i < 2 * kInstruments; ++i)
        lines.push_back("23,0,1," + std::to_string(600000 + i % kInstruments) + ",1");
    const auto orders = read(lines);
    ASSERT_EQ(orders.size(), 2 * kInstruments);
    for (int i = 0; i < orders.size(); ++i)
        EXPECT_EQ(orders[i].m_orders[0].m_strCode, QString::number(600000 + i % kInstruments));
}

TEST_F(OrderFileParser, CodesOfDifferentBytesAreDifferentCodes) {
    const auto orders =
        read({"23,0,1,0,1", "23,0,1,,1", "23,0,1,00,1", "23,0,1,sh600000,1", "23,0,1,SH600000,1"});
    ASSERT_EQ(orders.size(), 5);
    const char* expected[] = {"", "", "00", "sh600000", "SH600000"};
    for (int i = 0; i < orders.size(); ++i)
        EXPECT_EQ(orders[i].m_orders[0].m_strCode, QString::fromLatin1(expected[i]));
}

TEST_F(OrderFileParser, AnOrderThatCannotBeReadIsNotInTheBatch) {
    EXPECT_EQ(parse("23,0,1,600000,1"), TR_PLAIN_LINE);
    EXPECT_THROW(parse("23,0,1,600001,x"), boost::bad_lexical_cast);
    EXPECT_EQ(parse("23,9,1,600002,1"), TR_PLAIN_LINE) << "an order of another channel";
    const auto orders = parser().takeOrders();
    ASSERT_EQ(orders.size(), 1);
    EXPECT_EQ(orders[0].m_orders[0].m_strCode, QStringLiteral("600000"));
}

TEST_F(OrderFileParser, RoomForTheOrdersOfALargeFileIsBounded) {
    parser().expectBytes(std::numeric_limits<long long>::max());
    EXPECT_LE(parser().takeOrders().capacity(), 1 << 17);
}

TEST_F(OrderFileParser, ASizeThatIsNotKnownTakesNoRoom) {
    EXPECT_NO_THROW(parser().expectBytes(-1000));
    EXPECT_EQ(readOne("23,0").m_nOrderType, 23);
}

} // namespace
