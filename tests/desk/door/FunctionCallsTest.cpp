#include "desk/door/FunctionCalls.h"

#include "desk/commands/NewFolder.h"
#include "desk/config/ConfigLoader.h"
#include "desk/host/Desk.h"
#include "tests/support/TempFolder.h"

#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <sstream>
#include <string>
#include <vector>

namespace desk {
namespace {

class FunctionCalls : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(journal.open(folder.path()).isSuccess()); }

    CTempFolder folder;
    CJournal journal;
    CFunctionCalls calls{journal, {}};
};

TEST_F(FunctionCalls, CallDuringTheEndIsRefused) {
    calls.refuseNew();
    EXPECT_EQ(calls.answer(R"({"call":"passorder","param":{}})"),
              R"({"result":"ending","cause":"the desk ends; nothing was carried out"})");
    EXPECT_EQ(folder.read("journal.jsonl").find("\"kind\":\"call\""), std::string::npos);
}

TEST_F(FunctionCalls, PlacingCallThatCannotBeRecordedIsRefused) {
    ASSERT_TRUE(journal.close("over").isSuccess());
    EXPECT_EQ(calls.answer(R"({"call":"passorder","param":{}})"),
              R"({"result":"refused","cause":"the call cannot be recorded: the journal is not open"})");
}

/// An order that waits.
constexpr const char* kWaitingBuy =
    R"({"call":"passorder","param":{"opType":23,"orderType":1101,"prType":11,"modelPrice":"7.5",)"
    R"("modelVolume":"200","accountID":"10001","orderCode":"600104"}})";

/// Calls on a desk with the demo folder. The calls have their own journal.
class DeskCalls : public FunctionCalls {
protected:
    void SetUp() override {
        FunctionCalls::SetUp();
        ASSERT_EQ(runNew(folder.path("desk"), false, out, out), 0);
        desk = std::make_unique<CDesk>(folder.path("desk"), loadDeskConfig(folder.path("desk")).config, sink);
        ASSERT_EQ(desk->open().errorMsg(), "");
        ASSERT_EQ(TC::installHost(desk->services()).errorMsg(), "");
    }
    void TearDown() override {
        CFunctionCalls::end();
        TC::releaseHost();
    }

    std::ostringstream out;
    CTextSink sink{out};
    std::unique_ptr<CDesk> desk;
};

/// The command has gone out, so the answer must not say that nothing was sent.
TEST_F(DeskCalls, OrdersThatCannotBeReadLeaveTheAnswerAsItIs) {
    CFunctionCalls failing(
        journal, [](const std::vector<int>&) -> std::vector<std::string> { throw std::bad_alloc(); });
    failing.begin();
    const CJson answer = CJson::parse(failing.answer(kWaitingBuy));
    EXPECT_EQ(answer["result"], "sent");
    EXPECT_EQ(answer["tasks"].size(), 1u);
    EXPECT_EQ(answer["orders"].dump(), R"(["the orders cannot be read: std::bad_alloc"])");
}

} // namespace
} // namespace desk
