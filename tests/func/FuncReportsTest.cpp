// What function trading tells the user and its caller.
#include "orderservice/func/FuncReports.h"

#include "tests/support/FakeHost.h"
#include "tests/support/LogCapture.h"

#include <gtest/gtest.h>

#include <boost/lexical_cast/bad_lexical_cast.hpp>

#include <climits>
#include <map>
#include <string>
#include <utility>

namespace {

using namespace TC;

TEST(FuncReports, TradeKeyOfThreePartsNamesTextAndNumber) {
    const std::map<std::string, std::pair<int, std::string>> expected = {{"a|b|7", {7, "b"}},
                                                                         {"||0", {0, ""}},
                                                                         {"a|b|+7", {7, "b"}},
                                                                         {"a|b|-2147483648", {INT_MIN, "b"}},
                                                                         {"|键|2147483647", {INT_MAX, "键"}},
                                                                         {"", {-1, ""}},
                                                                         {"a", {-1, ""}},
                                                                         {"a|b", {-1, ""}},
                                                                         {"a|b|7|", {-1, ""}},
                                                                         {"a|b|x|y", {-1, ""}}};
    for (const auto& [text, wanted] : expected) {
        const CTradeKey key = readTradeKey(text);
        EXPECT_EQ(std::make_pair(key.m_nId, key.m_strKey), wanted) << text;
    }
}

TEST(FuncReports, NumberOfATradeKeyIsReadStrictly) {
    for (const char* text : {"a|b|x", "a|b|", "a|b| 7", "a|b|7 ", "a|b|1.5", "a|b|2147483648", "a|b|0x7"})
        EXPECT_THROW(readTradeKey(text), boost::bad_lexical_cast) << text;
}

TEST(FuncReports, ErrorOfAText) {
    EXPECT_TRUE(str2KNError("").isSuccess());
    EXPECT_EQ(str2KNError("失败").errorId(), -1);
    EXPECT_EQ(str2KNError("失败").errorMsg(), "失败");
}

TEST(FuncReports, MessageHasTheTypeAndTheFlagsOfFunctions) {
    CFakeHost host;
    CLogCapture log;
    utils::CLogCenter::setLogEnabled(true);
    host.user.msgFlags[EMsgTypeDef{6}] = {true, false};
    sendMsg(QStringLiteral("[函数交易]　text"), utils::ELogLevel::Warn);
    ASSERT_EQ(host.messages.messages.size(), 1u);
    const auto& shown = host.messages.messages[0];
    EXPECT_EQ(shown.text, QStringLiteral("[函数交易]　text"));
    EXPECT_EQ(static_cast<int>(shown.type), 6);
    EXPECT_EQ(static_cast<int>(shown.level), 1);
    EXPECT_TRUE(shown.flag1);
    EXPECT_FALSE(shown.flag2);
    EXPECT_EQ(shown.extra, QString());
    ASSERT_EQ(log.lines().size(), 1u);
    EXPECT_EQ(log.lines()[0].level, 30000);
    EXPECT_NE(log.lines()[0].text.find("[COrderFuncService::sendMsg][函数交易]　text"), std::string::npos);
}

TEST(FuncReports, MessageIsShownWithoutAUser) {
    CFakeHost host;
    host.user.loggedIn = false;
    sendMsg(QStringLiteral("text"), utils::ELogLevel::Info);
    ASSERT_EQ(host.messages.messages.size(), 1u);
    EXPECT_FALSE(host.messages.messages[0].flag1);
}

} // namespace
