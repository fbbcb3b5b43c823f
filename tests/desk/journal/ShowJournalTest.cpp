#include "desk/commands/ShowJournal.h"
#include "desk/commands/JournalText.h"
#include "desk/journal/Journal.h"
#include "desk/journal/JournalReader.h"

#include "tests/desk/journal/DeskFolder.h"

#include <sstream>

using namespace desk;
using namespace desk::test;

namespace {

const std::string kHead = R"("time":"2026-01-05T09:30:00.123","seq":5,)";
const std::string kShown = "2026-01-05 09:30:00.123  #5  ";

std::string shown(const std::string& kind, const std::string& rest) {
    return journalText({"{\"kind\":\"" + kind + "\"," + kHead + rest + "}", false});
}

const std::string kDiscarded =
    R"("source":"a.txt","channel":1,"lines":3,"bytes":60,"cause":"it was there before the strategy started, and was deleted")";

class ShowJournalTest : public testing::Test {
protected:
    int show(
        bool follow, const std::function<bool()>& keepGoing = [] { return false; }) {
        return runJournal(m_folder.path(), follow, m_out, m_err, keepGoing);
    }

    CStillClock m_clock;
    CDeskFolder m_folder;
    std::ostringstream m_out;
    std::ostringstream m_err;
};

} // namespace

TEST(JournalText, CommandShowsEachOrderOnALineOfItsOwn) {
    EXPECT_EQ(
        shown(
            "command",
            R"("trader_type":1,"remark":"备注","codes":[{"account":"A1","operation_type":18,"price_type":11,"price":10.01,)"
            R"("volume":300,"stock":{"market":"SH","code":"600000","name":"浦发银行"}},{"account":"A2",)"
            R"("operation_type":19,"price_type":12,"price":null,"volume":100,"stock":{"market":"SZ","code":"000001"}}])"),
        kShown + "command  family stock, 2 orders, remark: 备注\n"
                 "    A1  buy 300 SH600000 浦发银行 @ 10.01 (price type 11)\n"
                 "    A2  sell 100 SZ000001 at market (price type 12)\n");
}

TEST(JournalText, CommandNamesTheTaskThatCancelsIt) {
    EXPECT_EQ(shown("command", R"("task":9,"trader_type":1,"codes":[])"),
              kShown + "command  task 9, family stock, 0 orders\n");
    EXPECT_EQ(shown("command", R"("task":null,"trader_type":1,"codes":[])"),
              kShown + "command  no task, family stock, 0 orders\n");
    EXPECT_EQ(shown("trade_error", R"("text":"x","title":"command refused","command":5)"),
              kShown + "trade_error  x (command refused), command #5\n");
}

TEST(JournalText, FamiliesAndOperationsHaveTheirWords) {
    EXPECT_EQ(shown("command",
                    R"("trader_type":8,"codes":[{"account":"C1","operation_type":25,"price_type":11,)"
                    R"("price":null,"volume":20000,"stock":{"market":"","code":"","name":""}}])"),
              kShown + "command  family credit, 1 order\n"
                       "    C1  repay money 20000 (price type 11)\n");
    EXPECT_EQ(shown("fill", R"("fill":3,"order":5,"account":"F1","stock":"CFIF2609","operation_type":3,)"
                            R"("price":4000.0,"volume":2)"),
              kShown + "fill  3 of order 5: F1 open short 2 CFIF2609 @ 4000.0\n");
    EXPECT_EQ(shown("command", R"("trader_type":3,"codes":[])"), kShown + "command  family 3, 0 orders\n");
}

TEST(JournalText, EachKindReadsAsOneLine) {
    EXPECT_EQ(shown("started", R"("recovered":true,"pid":9)"),
              kShown + "started  process 9, after a crash\n");
    EXPECT_EQ(shown("started", R"("recovered":false,"after_crash":true,"pid":9)"),
              kShown + "started  process 9, after a crash\n");
    EXPECT_EQ(shown("continued", R"("cause":"it was cut","event":3)"),
              kShown + "continued  THE FILE CHANGED: it was cut\n");
    EXPECT_EQ(shown("discarded", kDiscarded),
              kShown + "discarded  channel 1: NOT READ: a.txt, 3 lines: it was there before the strategy "
                       "started, and was deleted\n");
    EXPECT_EQ(shown("unplaced", R"("channel":2,"order":"order_type=23 channel=2")"),
              kShown + "unplaced  channel 2: NOT PROCESSED: order_type=23 channel=2\n");
    EXPECT_EQ(shown("stopped", R"("reason":"signal 15")"), kShown + "stopped  reason signal 15\n");
    EXPECT_EQ(shown("message", R"("text":"无法下单","type":4,"level":2)"), kShown + "message  无法下单\n");
    EXPECT_EQ(shown("trade_error", R"("text":"x","title":"t")"), kShown + "trade_error  x (t)\n");
    EXPECT_EQ(shown("intake",
                    R"("source":"a.txt","channel":1,"lines":3,"orders":2,"cut_short":true,"cause":"line 3")"),
              kShown + "intake  channel 1: 2 orders in 3 lines of a.txt, CUT SHORT at line 3\n");
    EXPECT_EQ(shown("intake", R"("source":"a.txt","channel":1,"lines":3,"orders":0,"ignored_lines":2,)"
                              R"("first_ignored":"line 1: short","kept_as":"")"),
              kShown +
                  "intake  channel 1: 0 orders in 3 lines of a.txt, 2 lines WITHOUT EFFECT, the first is "
                  "line 1: short\n");
    EXPECT_EQ(shown("intake", R"("source":"a.txt","channel":1,"lines":0,"orders":0,"rejected":true,)"
                              R"("cause":"line 1: a zero byte","kept_as":"/rejected/a.txt.1")"),
              kShown +
                  "intake  channel 1: 0 orders in 0 lines of a.txt, REFUSED: line 1: a zero byte, kept as "
                  "/rejected/a.txt.1\n");
    EXPECT_EQ(shown("strategy", R"("action":"start","channel":1,"name":"s","signal_source":"a.txt")"),
              kShown + "strategy  start channel 1 s, source a.txt\n");
    EXPECT_EQ(shown("cancel_task", R"("task":7,"operation":3,"user_name":"u","remark":"终止任务")"),
              kShown + "cancel_task  task 7, operation 3, by u, 终止任务\n");
    EXPECT_EQ(shown("cancel_orders", R"("words":["cancel_order","A1","5"])"),
              kShown + "cancel_orders  words [\"cancel_order\",\"A1\",\"5\"]\n");
    EXPECT_EQ(shown("order",
                    R"("event":1,"order":5,"task":2,"account":"A1","stock":"SH600000","operation_type":18,)"
                    R"("price":10.0,"volume":300,"status":"rejected","filled":0,"reason":"why")"),
              kShown + "order  5 of task 2: A1 buy 300 SH600000 @ 10.0: rejected, filled 0: why\n");
    EXPECT_EQ(shown("fill",
                    R"("event":1,"fill":3,"order":5,"account":"A1","stock":"SH600000","operation_type":18,)"
                    R"("price":10.0,"volume":100)"),
              kShown + "fill  3 of order 5: A1 buy 100 SH600000 @ 10.0\n");
}

TEST(JournalText, DoorNamesWhoCanReachItAndWhoWasRefused) {
    EXPECT_EQ(
        shown("door", R"("event":"opened","source":"127.0.0.1:1","loopback":true,"peer":"","cause":"")"),
        kShown + "door  127.0.0.1:1 opened, for this machine only\n");
    EXPECT_EQ(shown("door", R"("event":"opened","source":"0.0.0.0:1","loopback":false,"peer":"","cause":"")"),
              kShown + "door  0.0.0.0:1 opened, FOR OTHER MACHINES TOO\n");
    EXPECT_EQ(
        shown("incident", R"("event":"orders_dropped","channel":3,"orders":2,"task":null,"cause":"why")"),
        kShown + "incident  orders_dropped, channel 3, 2 orders: why\n");
    EXPECT_EQ(
        shown("incident", R"("event":"cancel_not_done","channel":null,"orders":0,"task":7,"cause":"x")"),
        kShown + "incident  cancel_not_done, task 7: x\n");
    EXPECT_EQ(shown("incident", R"("event":"rows_left_out","channel":3,"orders":0,"task":null,"rows":2,)"
                                R"("code":"600009","cause":"x")"),
              kShown + "incident  rows_left_out, channel 3, rows 2, first 600009: x\n");
    EXPECT_EQ(shown("door", R"("event":"closed","source":"0.0.0.0:1","loopback":false,"peer":"","cause":"")"),
              kShown + "door  0.0.0.0:1 closed\n");
    EXPECT_EQ(shown("door", R"("event":"refused","source":"127.0.0.1:1","peer":"127.0.0.1:2","cause":"why")"),
              kShown + "door  127.0.0.1:1 refused, 127.0.0.1:2: why\n");
}

TEST(JournalText, StrategyThatIsNotSavedTellsWhy) {
    EXPECT_EQ(shown("strategy", R"("action":"not_saved","channel":1,"name":"s","cause":"why")"),
              kShown + "strategy  not_saved channel 1 s: why\n");
}

TEST(JournalText, TextsCannotBreakTheLineOrReachTheTerminal) {
    EXPECT_EQ(shown("message", R"("text":"a\nb\u001b[2J")"), kShown + "message  a b [2J\n");
}

TEST(JournalText, RecordOfAnotherShapeIsShownAsFarAsItGoes) {
    EXPECT_EQ(shown("command", R"("codes":[1,{"stock":2}],"trader_type":{})"),
              kShown + "command  family {}, 2 orders\n"
                       "    -  operation - - at market (price type -)\n"
                       "    -  operation - - at market (price type -)\n");
}

TEST_F(ShowJournalTest, PrintsAllRecordsAndShowsDamagedLines) {
    m_folder.append(kJournalFileName, "{\"kind\":\"message\",\"time\":\"t\",\"seq\":1,\"text\":\"one\"}\n"
                                      "{\"kind\":\"mess\n"
                                      "{\"kind\":\"message\",\"time\":\"t\",\"seq\":2,\"text\":\"two\"}\n"
                                      "{\"kind\":\"half");
    EXPECT_EQ(show(false), 0);
    EXPECT_EQ(
        m_out.str(),
        "t  #1  message  one\nDAMAGED  {\"kind\":\"mess\nt  #2  message  two\nDAMAGED  {\"kind\":\"half\n");
    EXPECT_EQ(m_err.str(), "");
}

TEST_F(ShowJournalTest, FolderWithoutJournalIsAnError) {
    EXPECT_EQ(show(false), 1);
    EXPECT_EQ(m_out.str(), "");
    EXPECT_NE(m_err.str().find("cannot read journal"), std::string::npos);
}

TEST_F(ShowJournalTest, FollowingPrintsWhatIsAppendedOnceItsLineIsWhole) {
    m_folder.append(kJournalFileName, "");
    const std::string line = "{\"kind\":\"message\",\"time\":\"t\",\"seq\":1,\"text\":\"one\"}\n";
    std::vector<std::string> parts{line.substr(0, 10), line.substr(10), line};
    std::vector<std::string> seen;
    m_clock.m_onSleep = [&] {
        m_folder.append(kJournalFileName, parts.front());
        parts.erase(parts.begin());
    };
    EXPECT_EQ(show(true,
                   [&] {
                       seen.push_back(m_out.str());
                       return !parts.empty();
                   }),
              0);
    const std::string printed = "t  #1  message  one\n";
    EXPECT_EQ(seen, (std::vector<std::string>{"", "", printed, printed + printed}));
}

TEST(JournalReader, LineWithoutAnObjectWithAKindIsDamaged) {
    const CDeskFolder folder;
    folder.append(kJournalFileName, "[]\n{\"seq\":1}\n{\"kind\":5}\n\n{\"kind\":\"x\"}\n");
    CJournalReader reader;
    ASSERT_TRUE(reader.open(folder.path()).isSuccess());
    std::vector<bool> damaged;
    while (const auto line = reader.next())
        damaged.push_back(line->m_bDamaged);
    EXPECT_EQ(damaged, (std::vector<bool>{true, true, true, false}));
    EXPECT_FALSE(reader.rest());
}

TEST_F(ShowJournalTest, RecordBehindATornLineIsShownAsARecord) {
    m_folder.append(kJournalFileName, R"({"kind":"ord{"kind":"stopped","time":"t","seq":6,"reason":"signal"})"
                                      "\n");
    EXPECT_EQ(show(false), 0);
    EXPECT_EQ(m_out.str(), "DAMAGED  {\"kind\":\"ord\nt  #6  stopped  reason signal\n");
}

TEST_F(ShowJournalTest, RecordWithAnObjectThatHasAKindIsNotCut) {
    const std::string record =
        R"({"kind":"strategy","time":"t","seq":6,"action":"add","channel":1,"hedge_param":{"kind":"IF"}})";
    m_folder.append(kJournalFileName, record + '\n' + R"({"kind":"ord)" + record + '\n');
    EXPECT_EQ(show(false), 0);
    const std::string text = "t  #6  strategy  add channel 1";
    EXPECT_EQ(m_out.str().compare(0, text.size(), text), 0) << m_out.str();
    EXPECT_NE(m_out.str().find("DAMAGED  {\"kind\":\"ord\n" + text), std::string::npos) << m_out.str();
}

std::string stoppedLine(int seq) {
    return R"({"kind":"stopped","time":"t","seq":)" + std::to_string(seq) + ",\"reason\":\"a\"}\n";
}

constexpr const char* kShownReopened = "-- the journal was replaced or cut; the file from its beginning:\n";

TEST_F(ShowJournalTest, FollowingReadsWhatTheDeskStillWritesIntoAFileThatWasMoved) {
    m_folder.append(kJournalFileName, stoppedLine(1));
    int sleeps = 0;
    m_clock.m_onSleep = [&] {
        switch (++sleeps) {
        case 1:
            std::filesystem::rename(m_folder.file(kJournalFileName), m_folder.file("old"));
            m_folder.append(kJournalFileName, "");
            break;
        case 3: // the desk has not checked its file yet
            m_folder.append("old", stoppedLine(2));
            break;
        case 4: // meanwhile the desk writes the last line of the old file
            m_folder.append("old", stoppedLine(3));
            m_folder.append(kJournalFileName,
                            R"({"kind":"continued","time":"t","seq":4,"cause":"moved","event":0})"
                            "\n");
            break;
        default:
            break;
        }
    };
    EXPECT_EQ(show(true, [&] { return sleeps < 8; }), 0);
    EXPECT_EQ(m_out.str(), "t  #1  stopped  reason a\nt  #2  stopped  reason a\nt  #3  stopped  reason a\n" +
                               std::string(kShownReopened) + "t  #4  continued  THE FILE CHANGED: moved\n");
}

TEST_F(ShowJournalTest, FollowingWaitsForMoreThanASecondForAFileThatNoDeskGoesOnIn) {
    m_folder.append(kJournalFileName, stoppedLine(1));
    bool wasReopenedEarly = true;
    int sleeps = 0;
    m_clock.m_onSleep = [&] {
        ++sleeps;
        if (sleeps == 1) std::filesystem::remove(m_folder.file(kJournalFileName));
        if (sleeps == 2) m_folder.append(kJournalFileName, stoppedLine(2));
        if (sleeps == 9) wasReopenedEarly = m_out.str().find(kShownReopened) != std::string::npos;
        if (sleeps == 10) m_clock.m_dNow = 1.1;
    };
    EXPECT_EQ(show(true, [&] { return sleeps < 14; }), 0);
    EXPECT_FALSE(wasReopenedEarly);
    EXPECT_EQ(m_out.str(),
              "t  #1  stopped  reason a\n" + std::string(kShownReopened) + "t  #2  stopped  reason a\n");
}

TEST_F(ShowJournalTest, FollowingGoesToTheBeginningOfAFileThatWasCutAtOnce) {
    m_folder.append(kJournalFileName, stoppedLine(1));
    int sleeps = 0;
    m_clock.m_onSleep = [&] {
        ++sleeps;
        if (sleeps == 1) std::filesystem::resize_file(m_folder.file(kJournalFileName), 0);
        if (sleeps == 2) m_folder.append(kJournalFileName, stoppedLine(2));
    };
    EXPECT_EQ(show(true, [&] { return sleeps < 4; }), 0);
    EXPECT_EQ(m_out.str(),
              "t  #1  stopped  reason a\n" + std::string(kShownReopened) + "t  #2  stopped  reason a\n");
}
