#include "desk/door/CallReport.h"

#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace desk {
namespace {

CCapturedRecord command(std::int64_t seq, std::optional<int> task) {
    return {"command", "", task, seq};
}

CCapturedRecord message(const std::string& text) {
    return {"message", R"("text":")" + text + '"', std::nullopt, 1};
}

CCapturedRecord record(const std::string& kind, const std::string& fields) {
    return {kind, fields, std::nullopt, 1};
}

CCallReport report(std::vector<CCapturedRecord> records, std::vector<CCallFailure> failures = {},
                   const std::string& exception = {}, const std::string& function = "passorder") {
    return reportCall(function, {std::move(records), std::move(failures), {}, exception});
}

CCallReport reportCancels(std::vector<CCancelAnswer> cancels) {
    return reportCall("cancel", {{message("announced")}, {}, std::move(cancels), {}});
}

TEST(CallReport, CommandWithATaskIsSent) {
    const CCallReport sent = report({message("announced"), command(8, 3), command(9, 4)});
    EXPECT_STREQ(sent.m_pszResult, "sent");
    EXPECT_EQ(sent.m_tasks, (std::vector<int>{3, 4}));
    EXPECT_EQ(sent.m_strCause, "");
    ASSERT_EQ(sent.m_messages.size(), 1u);
    EXPECT_EQ(sent.m_messages[0].m_strText, "announced");
}

/// A command that must be confirmed, or that comes while the desk is halted, is recorded without a task.
TEST(CallReport, CommandWithoutATaskIsRefused) {
    const CCallReport declined = report(
        {message("announced"), command(8, std::nullopt),
         record("trade_error", R"("text":"the desk is halted","title":"command refused","command":8)")});
    EXPECT_STREQ(declined.m_pszResult, "refused");
    EXPECT_TRUE(declined.m_tasks.empty());
    ASSERT_EQ(declined.m_messages.size(), 2u);
    EXPECT_EQ(declined.m_messages[1].m_strTitle, "command refused");
    EXPECT_EQ(declined.m_messages[1].m_strText, "the desk is halted");
}

TEST(CallReport, CommandThatTheJournalRefusedIsNotSent) {
    const CCallReport lost =
        report({command(0, 3), record("trade_error", R"("text":"it cannot be recorded","title":"t")")});
    EXPECT_STREQ(lost.m_pszResult, "refused");
    EXPECT_TRUE(lost.m_tasks.empty());
}

/// The thread of a call also carries out the commands of others.
TEST(CallReport, TradeErrorOfAnotherCommandIsLeftOut) {
    const CCallReport sent =
        report({command(8, 3), record("trade_error", R"("text":"of another","title":"t","command":5)"),
                record("trade_error", R"("text":"of mine","title":"t","command":8)")});
    ASSERT_EQ(sent.m_messages.size(), 1u);
    EXPECT_EQ(sent.m_messages[0].m_strText, "of mine");
}

TEST(CallReport, FailureWithoutACommandIsRefused) {
    const CCallReport plain = report({message("bad")}, {{7, "b", "bad"}});
    EXPECT_STREQ(plain.m_pszResult, "refused");
    const CCallReport callBackOnly = report({}, {{-1, "", "too few"}});
    EXPECT_STREQ(callBackOnly.m_pszResult, "refused");
    EXPECT_EQ(callBackOnly.m_strCause, "");
}

TEST(CallReport, CallThatLeavesNothingHasAnUnknownName) {
    const CCallReport unknown = report({}, {}, {}, "PASSORDER");
    EXPECT_STREQ(unknown.m_pszResult, "unknown_function");
    EXPECT_EQ(unknown.m_strCause, "there is no function \"PASSORDER\"; the functions are passorder, "
                                  "smartalgopypassorder and cancel");
}

TEST(CallReport, CancelThatFindsNoOrderHasNothing) {
    const CCallReport nothing = report({}, {}, {}, "cancel");
    EXPECT_STREQ(nothing.m_pszResult, "nothing");
    EXPECT_EQ(nothing.m_strCause, "no order was found that could be cancelled");
}

TEST(CallReport, CallThatStopsSilentlyHasNothing) {
    const CCallReport nothing = report({message("announced")});
    EXPECT_STREQ(nothing.m_pszResult, "nothing");
    EXPECT_NE(nothing.m_strCause, "");
}

TEST(CallReport, CancelThatTheBrokerHasDoneIsSent) {
    const CCallReport sent = reportCancels({{true, ""}, {true, ""}});
    EXPECT_STREQ(sent.m_pszResult, "sent");
    EXPECT_EQ(sent.m_nCancels, 2);
    EXPECT_EQ(sent.m_messages.size(), 1u);
}

TEST(CallReport, CancelThatTheBrokerRefusesIsRefused) {
    const CCallReport refused = reportCancels({{false, "it is filled"}});
    EXPECT_STREQ(refused.m_pszResult, "refused");
    EXPECT_EQ(refused.m_nCancels, 0);
    const CCallReport one = reportCancels({{false, "it is filled"}, {true, ""}});
    EXPECT_STREQ(one.m_pszResult, "sent");
    EXPECT_EQ(one.m_nCancels, 1);
    ASSERT_EQ(one.m_messages.size(), 2u);
    EXPECT_EQ(one.m_messages[1].m_strKind, "cancel");
    EXPECT_EQ(one.m_messages[1].m_strText, "it is filled");
}

TEST(CallReport, IncidentIsAMessage) {
    const CCallReport nothing = report({record("incident", R"("event":"host_failed","cause":"why")")});
    ASSERT_EQ(nothing.m_messages.size(), 1u);
    EXPECT_EQ(nothing.m_messages[0].m_strText, "why");
}

TEST(CallReport, ExceptionFailsACallThatHasSentNothing) {
    const CCallReport failed = report({message("shown")}, {}, "bad text");
    EXPECT_STREQ(failed.m_pszResult, "failed");
    EXPECT_EQ(failed.m_strCause, "the call was ended by: bad text");
    const CCallReport sent = report({command(8, 3)}, {}, "bad text");
    EXPECT_STREQ(sent.m_pszResult, "sent");
    EXPECT_EQ(sent.m_strCause, "the call was ended by: bad text");
}

TEST(CallReport, AnswerHasEverything) {
    const CCallReport sent = report(
        {message("announced"), command(8, 3), record("trade_error", R"("text":"x","title":"t","command":8)")},
        {{7, "b", "bad"}});
    EXPECT_EQ(
        callAnswer(sent, 6, {"order 1 waits"}).dump(),
        R"({"result":"sent","call":6,"tasks":[3],"cancels":0,"messages":[{"kind":"message","text":"announced"},)"
        R"({"kind":"trade_error","text":"x","title":"t"}],"failures":[{"id":7,"key":"b","text":"bad"}],)"
        R"("orders":["order 1 waits"]})");
}

TEST(CallReport, LongListsOfAnAnswerAreCut) {
    const std::vector<CCapturedRecord> many(250, message("m"));
    const CJson answer = callAnswer(report(many), 0, std::vector<std::string>(201, "o"));
    EXPECT_TRUE(answer["call"].is_null());
    EXPECT_EQ(answer["messages"].size(), 200u);
    EXPECT_EQ(answer["more_messages"], 50);
    EXPECT_EQ(answer["orders"].size(), 200u);
    EXPECT_EQ(answer["more_orders"], 1);
    EXPECT_FALSE(answer.contains("more_failures"));
}

/// The messages "m0" to "m249", as each failing row of a basket gives them.
std::vector<CCapturedRecord> manyMessages() {
    std::vector<CCapturedRecord> many;
    for (int i = 0; i < 250; ++i)
        many.push_back(message('m' + std::to_string(i)));
    return many;
}

/// The last message is the reason why the rest was not sent.
TEST(CallReport, LongListsKeepTheirLastElements) {
    std::vector<CCallFailure> failures;
    for (int i = 0; i < 250; ++i)
        failures.push_back({1, "k", 'f' + std::to_string(i)});
    const CCallReport refused = report(manyMessages(), failures);
    const CJson answer = callAnswer(refused, 0, {});
    EXPECT_EQ(answer["cause"], "m249");
    EXPECT_EQ(answer["messages"][149]["text"], "m149");
    EXPECT_EQ(answer["messages"][150]["text"], "m200");
    EXPECT_EQ(answer["messages"][199]["text"], "m249");
    EXPECT_EQ(answer["failures"][199]["text"], "f249");
    EXPECT_EQ(answer["more_failures"], 50);
    const CJson recorded = callEndFields(refused, 0);
    EXPECT_EQ(recorded["cause"], "m249");
    EXPECT_EQ(recorded["failures"].size(), 200u);
    EXPECT_EQ(recorded["failures"][199]["text"], "f249");
    EXPECT_EQ(recorded["more_failures"], 50);
}

/// With a short list the cause would only repeat it. A call that has sent something has no cause.
TEST(CallReport, OnlyARefusalWithManyMessagesNamesTheLast) {
    EXPECT_EQ(report({message("bad")}, {{7, "b", "bad"}}).m_strCause, "");
    EXPECT_EQ(report({}, std::vector<CCallFailure>(201, {1, "k", "last"})).m_strCause, "last");
    std::vector<CCapturedRecord> sent = manyMessages();
    sent.push_back(command(8, 3));
    EXPECT_EQ(report(sent).m_strCause, "");
}

TEST(CallReport, RecordOfTheEndNamesTheCall) {
    EXPECT_EQ(callEndFields(report({command(8, 3)}), 6).dump(), R"({"event":"sent","call":6,"tasks":[3]})");
    EXPECT_EQ(callEndFields(report({}, {{7, "b", "bad"}}), 0).dump(),
              R"({"event":"refused","call":null,"tasks":[],"failures":[{"id":7,"key":"b","text":"bad"}]})");
}

} // namespace
} // namespace desk
