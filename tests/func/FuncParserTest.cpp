// The parameter text of a placing call.
#include "orderservice/func/FuncParser.h"

#include "orderservice/base/Unset.h"
#include "tests/support/FakeHost.h"
#include "tests/support/LogCapture.h"

#include <gtest/gtest.h>

#include <climits>
#include <limits>
#include <map>
#include <string>
#include <vector>

namespace {

using namespace TC;

/// Keys and their JSON values, in the order of their names. A key without a value is left out.
using CKeys = std::map<std::string, std::string>;

std::string jsonOf(const CKeys& keys) {
    std::string text = "{";
    for (const auto& [key, value] : keys) {
        if (value.empty()) continue;
        text += (text.size() > 1 ? "," : "") + ('"' + key + "\":") + value;
    }
    return text + "}";
}

class FuncParser : public testing::Test {
protected:
    /// Reads a call to buy 100 shares of 600000 at 10.5, with these keys changed.
    void parse(const CKeys& changes = {}) {
        CKeys keys = {{"opType", "23"},           {"orderType", "1101"},      {"prType", "11"},
                      {"modelPrice", "\"10.5\""}, {"modelVolume", "\"100\""}, {"accountID", "\"A1\""},
                      {"orderCode", "\"600000\""}};
        for (const auto& [key, value] : changes)
            keys[key] = value;
        parseText(jsonOf(keys));
    }
    void parseText(const std::string& text) {
        param = COrderFuncParam();
        error.clear();
        parserParam(param, text, error);
    }
    const COrderSingleParam& line() const {
        EXPECT_EQ(param.m_orders.size(), 1);
        static const COrderSingleParam kNone;
        return param.m_orders.isEmpty() ? kNone : param.m_orders.first();
    }
    /// The error of a call with these keys changed.
    std::string errorOf(const CKeys& changes) {
        parse(changes);
        return error;
    }
    void addBasket(const char* name, const QVector<CBasketStockData>& rows) {
        host.user.baskets[QString::fromUtf8(name)].m_rows = rows;
    }
    static CBasketStockData row(const char* market, const char* code, int volume, double weight = 0,
                                int operation = -1) {
        CBasketStockData row;
        row.m_strMarket = QString::fromUtf8(market);
        row.m_strCode = QString::fromUtf8(code);
        row.m_nVolume = volume;
        row.m_dWeight = weight;
        row.m_eOperationType = operation;
        return row;
    }

    CFakeHost host;
    COrderFuncParam param;
    std::string error;
};

constexpr char kZero[] = "下单数量/金额/比例为0";
constexpr char kBadRatio[] = "输入的比例值不对,须 0 ~ 1 间数值!";
constexpr char kNotForFutures[] = "不支持的期货下单类型(orderType)!";
constexpr char kBadText[] = "parserParam error";

TEST_F(FuncParser, ReadsEveryKey) {
    parseText(R"({"opType":24,"orderType":1201,"prType":5,"modelPrice":"8.02","modelVolume":"300.9",
                  "accountID":"group","orderCode":"SH600104","strategyName":"grid","tradeKey":"a|b|7",
                  "note":"remark","modelName":"m1","func":"passorder"})");
    EXPECT_EQ(error, "");
    EXPECT_EQ(param.m_nOpType, 24);
    EXPECT_EQ(param.m_nOrderType, 1201);
    EXPECT_EQ(param.m_nPrType, 5);
    EXPECT_EQ(param.m_dModelPrice, 8.02);
    EXPECT_EQ(param.m_dModelVolume, 300.9);
    EXPECT_EQ(param.m_strAccountID, "group");
    EXPECT_EQ(param.m_strOrderCode, "SH600104");
    EXPECT_EQ(param.m_strStrategyName, "grid");
    EXPECT_EQ(param.m_strTradeKey, "a|b|7");
    EXPECT_EQ(param.m_strNote, "remark");
    EXPECT_EQ(param.m_strModelName, "m1");
    EXPECT_EQ(param.m_nTradeType, 0);
    EXPECT_EQ(line().m_strCode, QStringLiteral("SH600104"));
    EXPECT_EQ(line().m_dPrice, 8.02);
    EXPECT_EQ(line().m_nVolume, 300);
}

TEST_F(FuncParser, MissingKeysLeaveTheRecordAsItWasMade) {
    parseText(R"({"orderCode":"600000"})");
    EXPECT_EQ(error, "");
    EXPECT_EQ(param.m_nOpType, -1);
    EXPECT_EQ(param.m_nOrderType, -1);
    EXPECT_EQ(param.m_nPrType, -1);
    EXPECT_EQ(param.m_dModelPrice, 0);
    EXPECT_EQ(param.m_nTradeType, 0);
    EXPECT_TRUE(param.m_orders.isEmpty());
}

TEST_F(FuncParser, NoKeysGiveNoCode) {
    parseText("{}");
    EXPECT_EQ(error, "合约或篮子为空");
}

TEST_F(FuncParser, TextsThatAreNoObjectAreRefused) {
    for (const char* text : {"", " ", "[]", "1", "\"a\"", "null", "{", "{\"opType\":}", "{'opType':1}",
                             "{\"a\":1,}", "{} x", "\xEF\xBB\xBF{}", "{\"orderCode\":\"\xff\"}"}) {
        parseText(text);
        EXPECT_EQ(error, kBadText) << text;
    }
}

TEST_F(FuncParser, DeepAndLongTextsAreRefusedOrRead) {
    parseText(std::string(10000, '['));
    EXPECT_EQ(error, kBadText);
    parseText(R"({"orderCode":"600000","x":)" + std::string(10000, '[') + std::string(10000, ']') + "}");
    EXPECT_EQ(error, kBadText);
    constexpr std::size_t kTenMegabytes = 10000000;
    parse({{"note", '"' + std::string(kTenMegabytes, 'n') + '"'}});
    EXPECT_EQ(error, "");
    EXPECT_EQ(param.m_strNote.size(), kTenMegabytes);
}

TEST_F(FuncParser, ValuesOfAnotherTypeAreRefused) {
    for (const char* key : {"opType", "orderType", "prType"}) {
        for (const char* value : {"\"23\"", "23.0", "2.5", "null", "true", "[]", "{}", "2147483648", "1e1"})
            EXPECT_EQ(errorOf({{key, value}}), kBadText) << key << value;
    }
    for (const char* key : {"modelPrice", "modelVolume", "accountID", "orderCode", "strategyName", "tradeKey",
                            "note", "modelName"}) {
        for (const char* value : {"1", "1.5", "null", "false", "[\"a\"]", "{}"})
            EXPECT_EQ(errorOf({{key, value}}), kBadText) << key << value;
    }
}

TEST_F(FuncParser, KeysThatAreReadBeforeAWrongOneAreKept) {
    parse({{"tradeKey", "\"a|b|7\""}, {"note", "7"}});
    EXPECT_EQ(error, kBadText);
    EXPECT_EQ(param.m_strTradeKey, "a|b|7");
    parse({{"tradeKey", "\"a|b|7\""}, {"strategyName", "7"}});
    EXPECT_EQ(error, kBadText);
    EXPECT_EQ(param.m_strTradeKey, "");
}

TEST_F(FuncParser, FirstOfTwoEqualKeysIsUsed) {
    parseText(R"({"opType":23,"opType":24,"orderType":1101,"orderCode":"600000","modelVolume":"100",
                  "modelVolume":"900"})");
    EXPECT_EQ(error, "");
    EXPECT_EQ(param.m_nOpType, 23);
    EXPECT_EQ(line().m_nVolume, 100);
}

TEST_F(FuncParser, NumbersAreTexts) {
    parse({{"modelPrice", "\"abc\""}});
    EXPECT_EQ(line().m_dPrice, 0);
    parse({{"modelPrice", "\"1e1\""}});
    EXPECT_EQ(line().m_dPrice, 10);
    parse({{"modelPrice", "\"-0\""}});
    EXPECT_EQ(line().m_dPrice, 0);
    EXPECT_EQ(errorOf({{"modelVolume", "\"many\""}}), kZero);
}

TEST_F(FuncParser, VolumesUpToAHundredBillionthAreZero) {
    EXPECT_EQ(errorOf({{"modelVolume", "\"1e-11\""}}), kZero);
    EXPECT_EQ(errorOf({{"modelVolume", "\"-1e-11\""}}), kZero);
    EXPECT_EQ(errorOf({{"modelVolume", "\"nan\""}}), kZero);
    EXPECT_EQ(errorOf({{"modelVolume", "\"1e-10\""}}), "");
    EXPECT_EQ(line().m_nVolume, 0);
}

TEST_F(FuncParser, VolumesBeyondAnIntNeverBecomeNotSet) {
    for (const char* volume :
         {"\"2147483646\"", "\"2147483647\"", "\"4294967396\"", "\"1e308\"", "\"inf\""}) {
        EXPECT_EQ(errorOf({{"modelVolume", volume}}), "") << volume;
        EXPECT_EQ(line().m_nVolume, kUnsetInt - 1) << volume;
    }
    EXPECT_EQ(errorOf({{"modelVolume", "\"-1e20\""}}), "");
    EXPECT_EQ(line().m_nVolume, INT_MIN);
    EXPECT_EQ(volumeOfCall(std::numeric_limits<double>::quiet_NaN()), 0);
    EXPECT_EQ(volumeOfCall(-2.9), -2);
}

TEST_F(FuncParser, StrategyNameMayHaveARemark) {
    const std::vector<std::vector<std::string>> rows = {
        // written, name, remark
        {"grid", "grid", ""},    {"grid_&&&_rebalance", "grid", "rebalance"},
        {"grid_a", "grid", "a"}, {"grid&a", "grid", "a"},
        {"a_b_c", "a_b_c", ""},  {"grid_", "grid", ""},
        {"_a", "", "a"},         {"", "", ""},
        {"_&&&_", "", ""},       {"网格_调仓", "网格", "调仓"},
    };
    for (const auto& row : rows) {
        parse({{"strategyName", '"' + row[0] + '"'}});
        EXPECT_EQ(param.m_strStrategyName, row[1]) << row[0];
        EXPECT_EQ(param.m_strNote, row[2]) << row[0];
    }
    parse({{"strategyName", "\"grid_a\""}, {"note", "\"written\""}});
    EXPECT_EQ(param.m_strNote, "written");
    parse({{"strategyName", "\"grid_a\""}, {"note", "\"\""}}); // an empty one is used too
    EXPECT_EQ(param.m_strNote, "");
}

TEST_F(FuncParser, RatiosAreFromZeroToOne) {
    for (const char* orderType : {"1113", "1123", "1213", "1223", "2103", "2203", "2333"}) {
        for (const char* bad : {"\"1.5\"", "\"-0.1\"", "\"nan\"", "\"inf\""})
            EXPECT_EQ(errorOf({{"orderType", orderType}, {"modelVolume", bad}, {"opType", "99"}}), kBadRatio)
                << orderType << bad;
    }
    EXPECT_EQ(errorOf({{"orderType", "1113"}, {"modelVolume", "\"1\""}}), "");
    EXPECT_EQ(errorOf({{"orderType", "1113"}, {"modelVolume", "\"0\""}}), kZero);
    EXPECT_TRUE(param.m_orders.isEmpty());
}

TEST_F(FuncParser, SomeOrderTypesAreNotForFutures) {
    EXPECT_EQ(errorOf({{"opType", "3"}, {"orderType", "1202"}}), kNotForFutures);
    EXPECT_EQ(errorOf({{"opType", "40"}, {"orderType", "2103"}, {"modelVolume", "\"0.5\""}}), kNotForFutures);
    EXPECT_EQ(errorOf({{"opType", "22"}, {"orderType", "1202"}}), kNotForFutures);
    EXPECT_EQ(errorOf({{"opType", "35"}, {"orderType", "1202"}}), kNotForFutures);
    EXPECT_EQ(errorOf({{"opType", "23"}, {"orderType", "1202"}}), "");
    EXPECT_EQ(errorOf({{"opType", "34"}, {"orderType", "1202"}}), "");
    EXPECT_EQ(errorOf({{"opType", "3"}, {"orderType", "1102"}}), "期货投机不支持以金额方式下单");
}

TEST_F(FuncParser, HedgeRatiosAreFromZeroToTwo) {
    addBasket("b", {row("SH", "600000", 100)});
    const CKeys hedge = {{"opType", "25"}, {"prType", "5"}, {"orderCode", "\"b,IF2609\""}};
    for (const char* orderType : {"2331", "2332", "2333"}) {
        for (const char* bad : {"\"2.1\"", "\"-0.1\"", "\"nan\""}) {
            CKeys keys = hedge;
            keys["orderType"] = orderType;
            keys["modelVolume"] = "\"1\"";
            keys["modelPrice"] = bad;
            EXPECT_EQ(errorOf(keys), "输入的套利比例不对,须 0 ~ 2 间数值!") << orderType << bad;
            keys["modelPrice"] = "\"2\"";
            EXPECT_EQ(errorOf(keys), "") << orderType;
        }
    }
}

TEST_F(FuncParser, FuturesGetOneLine) {
    for (int number = 0; number <= 15; ++number) {
        parse({{"opType", std::to_string(number)}, {"orderCode", "\"IF2609\""}, {"modelVolume", "\"3\""}});
        EXPECT_EQ(error, "");
        EXPECT_EQ(param.m_nTradeType, 1);
        EXPECT_EQ(line().m_strCode, QStringLiteral("IF2609"));
        EXPECT_EQ(line().m_nVolume, 3);
    }
    EXPECT_EQ(errorOf({{"opType", "0"}, {"modelVolume", "\"0\""}, {"orderType", "1102"}}), kZero);
    EXPECT_TRUE(param.m_orders.isEmpty());
}

TEST_F(FuncParser, OperationsWithoutAFamilyGetNoLine) {
    for (const char* number :
         {"-1", "16", "18", "19", "22", "35", "39", "41", "42", "44", "45", "60", "1000"}) {
        EXPECT_EQ(errorOf({{"opType", number}}), "") << number;
        EXPECT_TRUE(param.m_orders.isEmpty()) << number;
        EXPECT_EQ(param.m_nTradeType, 0) << number;
    }
    EXPECT_EQ(errorOf({{"opType", "30"}, {"orderType", "2101"}}), "");
    EXPECT_TRUE(param.m_orders.isEmpty());
}

TEST_F(FuncParser, VolumeIsInTheLineOnlyForVolumesOfSingleInstruments) {
    for (const char* orderType : {"11", "12", "1101", "1201"}) {
        parse({{"orderType", orderType}});
        EXPECT_EQ(line().m_nVolume, 100) << orderType;
    }
    for (const char* orderType : {"21", "1102", "1202", "7"}) {
        parse({{"orderType", orderType}});
        EXPECT_TRUE(isUnset(line().m_nVolume)) << orderType;
    }
}

TEST_F(FuncParser, StocksOfTheConnectsHaveTheirOwnTradeTypes) {
    const std::map<std::string, int> codes = {{"HGT12345", 10}, {"hgt12345", 10}, {"SGT12345", 9},
                                              {"HGT1234", 0},   {"SH600000", 0},  {"HGT123456", 0}};
    for (const auto& [code, tradeType] : codes) {
        parse({{"orderCode", '"' + code + '"'}});
        EXPECT_EQ(param.m_nTradeType, tradeType) << code;
        EXPECT_EQ(line().m_strCode.toStdString(), code);
    }
}

TEST_F(FuncParser, CreditLinesHaveAnAmount) {
    for (int number = 27; number <= 34; ++number) {
        parse({{"opType", std::to_string(number)}, {"modelVolume", "\"1000.5\""}});
        EXPECT_EQ(error, "");
        EXPECT_EQ(param.m_nTradeType, 3);
        EXPECT_EQ(line().m_dAmount, 1000.5);
        EXPECT_EQ(line().m_nVolume, 1000);
        EXPECT_EQ(line().m_strCompact, QString());
    }
    for (const char* orderType : {"21", "1113", "1"})
        EXPECT_EQ(errorOf({{"opType", "27"}, {"orderType", orderType}, {"modelVolume", "\"1\""}}),
                  "融资融券不支持的下单类型");
    EXPECT_EQ(param.m_nTradeType, 0); // the trade type is set after this check
    EXPECT_EQ(errorOf({{"opType", "27"}, {"modelVolume", "\"0\""}}), kZero);
    EXPECT_EQ(param.m_nTradeType, 3);
}

TEST_F(FuncParser, CreditCodesMayNameAContract) {
    for (const char* number : {"29", "31"}) {
        parse({{"opType", number}, {"orderCode", "\"600000,1001\""}});
        EXPECT_EQ(error, "");
        EXPECT_EQ(line().m_strCode, QStringLiteral("600000"));
        EXPECT_EQ(line().m_strCompact, QStringLiteral("1001"));
    }
    for (const char* number : {"27", "28", "30", "32", "33", "34"}) {
        EXPECT_EQ(errorOf({{"opType", number}, {"orderCode", "\"600000,1001\""}}),
                  "不支持指定合约编号的操作类型");
        EXPECT_EQ(line().m_strCode, QString());
        EXPECT_EQ(line().m_strCompact, QString());
    }
    parse({{"opType", "29"}, {"orderCode", "\"600000,\""}});
    EXPECT_EQ(line().m_strCode, QStringLiteral("600000"));
    parse({{"opType", "29"}, {"orderCode", "\"600000,1,2\""}});
    EXPECT_EQ(line().m_strCode, QStringLiteral("600000,1,2"));
}

TEST_F(FuncParser, OptionsAlwaysHaveTheirVolumeInTheLine) {
    for (const char* orderType : {"1101", "1102", "7"}) {
        parse({{"opType", "50"}, {"orderType", orderType}, {"modelVolume", "\"2.9\""}});
        EXPECT_EQ(error, "");
        EXPECT_EQ(param.m_nTradeType, 4);
        EXPECT_EQ(line().m_nVolume, 2);
    }
    EXPECT_EQ(errorOf({{"opType", "59"}, {"modelVolume", "\"0\""}}), kZero);
    EXPECT_TRUE(param.m_orders.isEmpty());
    param = COrderFuncParam();
    EXPECT_FALSE(fillStkOptionParam(param, PassorderFunOrderType{50}, error));
}

/// A call that buys the basket "b" once.
CKeys basketCall(const char* opType, const char* orderType) {
    return {{"opType", opType},      {"orderType", orderType}, {"prType", "5"},
            {"modelPrice", "\"1\""}, {"orderCode", "\"b\""},   {"modelVolume", "\"1\""}};
}

TEST_F(FuncParser, BasketsGetALineForEachRow) {
    addBasket("b", {row("SH", "600000", 100, 0.4, 18), row("SZ", "000001", 0, 0.6)});
    parse(basketCall("25", "2101"));
    EXPECT_EQ(error, "");
    ASSERT_EQ(param.m_orders.size(), 2);
    EXPECT_EQ(param.m_orders[0].m_strCode, QStringLiteral("SH600000"));
    EXPECT_EQ(param.m_orders[0].m_nVolume, 100);
    EXPECT_EQ(param.m_orders[0].m_dWeight, 0.4);
    EXPECT_EQ(param.m_orders[0].m_eOperationType, 18);
    EXPECT_EQ(param.m_orders[1].m_strCode, QStringLiteral("SZ000001"));
    EXPECT_EQ(param.m_orders[1].m_nVolume, 0);
    EXPECT_EQ(param.m_orders[1].m_eOperationType, -1);
}

TEST_F(FuncParser, TradeTypesOfBaskets) {
    addBasket("b", {row("SH", "600000", 100)});
    const std::map<std::string, int> numbers = {{"25", 2}, {"26", 2}, {"27", 3}, {"28", 3}, {"29", 3},
                                                {"31", 3}, {"33", 3}, {"34", 3}, {"40", 8}, {"43", 8},
                                                {"46", 8}, {"47", 8}, {"48", 8}, {"49", 8}};
    for (const auto& [number, tradeType] : numbers) {
        EXPECT_EQ(errorOf(basketCall(number.c_str(), "2101")), "") << number;
        EXPECT_EQ(param.m_nTradeType, tradeType) << number;
        EXPECT_EQ(param.m_orders.size(), 1) << number;
    }
}

TEST_F(FuncParser, BasketsNeedAnOrderTypeThatBeginsWithTwo) {
    addBasket("b", {row("SH", "600000", 100)});
    constexpr char kOther[] = "操作类型opType和下单类型orderType不对应！";
    for (const char* orderType : {"1101", "1201", "11", "12", "10", "100", "-2"}) {
        EXPECT_EQ(errorOf(basketCall("25", orderType)), kOther) << orderType;
        EXPECT_EQ(errorOf(basketCall("40", orderType)), kOther) << orderType;
    }
    for (const char* orderType : {"21", "22", "2", "20", "2101", "29999"})
        EXPECT_EQ(errorOf(basketCall("25", orderType)), "") << orderType;
}

TEST_F(FuncParser, BasketsHaveNoModelPriceAndMayHaveVolumeZero) {
    addBasket("b", {row("SH", "600000", 100)});
    CKeys keys = basketCall("25", "1101");
    keys["prType"] = "11";
    EXPECT_EQ(errorOf(keys), "组合交易不支持指定价!"); // before the order type is looked at
    keys = basketCall("25", "2101");
    keys["modelVolume"] = "\"0\"";
    EXPECT_EQ(errorOf(keys), "");
}

TEST_F(FuncParser, UnknownBasketsAreRefused) {
    EXPECT_EQ(errorOf(basketCall("25", "2101")), " 指定的篮子不存在");
    host.user.loggedIn = false;
    EXPECT_EQ(errorOf(basketCall("25", "2101")), " 指定的篮子不存在");
}

TEST_F(FuncParser, AnEmptyBasketGetsNoLines) {
    addBasket("b", {});
    EXPECT_EQ(errorOf(basketCall("25", "2101")), "");
    EXPECT_TRUE(param.m_orders.isEmpty());
    EXPECT_EQ(param.m_nTradeType, 2);
}

TEST_F(FuncParser, MarketOfTheFirstRowMayBeAConnect) {
    addBasket("b", {row("hgt", "12345", 100), row("SH", "600000", 100)});
    parse(basketCall("25", "2101"));
    EXPECT_EQ(param.m_nTradeType, 10);
    addBasket("b", {row("SGT", "12345", 100)});
    parse(basketCall("40", "2101"));
    EXPECT_EQ(param.m_nTradeType, 9);
    addBasket("b", {row("SH", "600000", 100), row("SGT", "12345", 100)});
    parse(basketCall("25", "2101"));
    EXPECT_EQ(param.m_nTradeType, 2);
}

TEST_F(FuncParser, NameOfABasketWithAFuturesLegIsTheFirstPart) {
    addBasket("b", {row("SH", "600000", 100)});
    CKeys keys = basketCall("25", "2331");
    keys["orderCode"] = "\"b,IF2609\"";
    EXPECT_EQ(errorOf(keys), "");
    EXPECT_EQ(param.m_strOrderCode, "b,IF2609");
    for (const char* code : {"\"b,IF2609,x\"", "\",b\""}) {
        keys["orderCode"] = code;
        EXPECT_EQ(errorOf(keys), " 指定的篮子不存在") << code;
    }
    keys["orderCode"] = "\"b,\"";
    EXPECT_EQ(errorOf(keys), "");
    keys["opType"] = "40"; // not a basket of stocks
    EXPECT_EQ(errorOf(keys), " 指定的篮子不存在");
    keys["opType"] = "25";
    keys["orderType"] = "2101"; // not with a futures leg
    EXPECT_EQ(errorOf(keys), " 指定的篮子不存在");
}

TEST_F(FuncParser, TextIsLogged) {
    CLogCapture log;
    utils::CLogCenter::setLogEnabled(true);
    parseText("{}");
    ASSERT_EQ(log.lines().size(), 1u);
    EXPECT_EQ(log.lines()[0].level, 20000);
    EXPECT_NE(log.lines()[0].text.find("COrderFuncService parserParam, strParam {}"), std::string::npos);
}

} // namespace
