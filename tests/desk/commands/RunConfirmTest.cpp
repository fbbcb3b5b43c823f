// A desk folder whose user confirms his orders, from the order file to the question and what follows it.
#include "tests/desk/commands/RunningFolder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace desk {
namespace {

class RunConfirm : public CRunningFolder {
protected:
    void SetUp() override {
        CRunningFolder::SetUp();
        change("desk/desk.toml", "order_service = true", "order_service = false");
    }
    void answer(const std::string& word) const {
        change("desk/desk.toml", "accept_forced_confirm = false", "confirm = \"" + word + '"');
    }
    /// Hands over two good orders and one that fails its check, and ends when `text` is in the journal.
    int runFile(const std::string& text) {
        return run({
            [this] { return has("\"action\":\"start\",\"channel\":4"); },
            [this] {
                folder.handOver("desk/orders/group.txt", "23,0,8.02,600104,1000\n23,0,8.02,999999,1000\n"
                                                         "24,0,7.90,600104,100\n");
                return true;
            },
            [this, text] { return has(text); },
        });
    }
    std::string shown() const { return out.str(); }
};

TEST_F(RunConfirm, DeclinedBatchSendsNothingAndSaysSo) {
    EXPECT_EQ(runFile("\"event\":\"orders_dropped\""), 0);
    EXPECT_FALSE(has("\"kind\":\"command\""));
    EXPECT_NE(
        shown().find("confirmation of 2 orders: DECLINED, nothing is sent, because desk.toml has confirm = "
                     "\"decline\"\n"),
        std::string::npos)
        << shown();
    EXPECT_TRUE(has("\"event\":\"declined\",\"by\":\"desk.toml\""));
}

TEST_F(RunConfirm, AcceptedBatchIsFilled) {
    answer("accept");
    EXPECT_EQ(runFile("\"kind\":\"fill\""), 0);
    EXPECT_NE(
        shown().find("confirmation of 2 orders: accepted, because desk.toml has confirm = \"accept\"\n"),
        std::string::npos)
        << shown();
    EXPECT_NE(shown().find("order 1 of task 1: A1 buy 600 SH600104 @ 8.02: filled at 8.01\n"),
              std::string::npos)
        << shown();
    const std::string records = journal();
    EXPECT_LT(records.find("\"event\":\"accepted\""), records.find("\"kind\":\"command\""));
}

TEST_F(RunConfirm, SourceWithoutItsBitIsSentWithoutAQuestion) {
    change("desk/desk.toml", "max_strategies = 20", "hint_bits = 16\nmax_strategies = 20");
    EXPECT_EQ(runFile("\"kind\":\"fill\""), 0);
    EXPECT_FALSE(has("\"kind\":\"confirmation\""));
}

TEST_F(RunConfirm, BatchThatWaitsAtTheEndIsAnswered) {
    answer("accept");
    const int code = run({
        [this] { return has("\"action\":\"start\",\"channel\":4"); },
        [this] {
            folder.handOver("desk/orders/group.txt", "23,0,8.02,600104,1000\n");
            return true;
        },
        [this] { return has("\"kind\":\"intake\""); },
    });
    EXPECT_EQ(code, 0);
    EXPECT_TRUE(has("\"event\":\"accepted\""));
    EXPECT_TRUE(has("\"kind\":\"fill\""));
}

} // namespace
} // namespace desk
