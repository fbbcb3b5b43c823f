#include "desk/commands/CallDesk.h"

#include "desk/commands/ShowJournal.h"
#include "desk/journal/Json.h"
#include "orderservice/func/OrderFuncService.h"
#include "tests/desk/commands/RunningFolder.h"
#include "tests/desk/door/ControlClient.h"

#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

#include <future>
#include <sstream>
#include <string>
#include <vector>

namespace desk {
namespace {

/// What the command has printed, and its exit code.
struct CPrinted {
    int m_nCode = -1;
    std::string m_strOut;
    std::string m_strErr;
};

/// A repayment needs no quote and no position.
constexpr const char* kRepay =
    R"({"opType":32,"orderType":1201,"modelVolume":"100","accountID":"lenders","orderCode":"600101"})";
constexpr const char* kUnknownAccount =
    R"({"opType":23,"orderType":1201,"modelVolume":"100","accountID":"nobody","orderCode":"600101",)"
    R"("tradeKey":"a|b|7"})";

class CallDesk : public CRunningFolder {
protected:
    void SetUp() override {
        CRunningFolder::SetUp();
        folder.write("desk/desk.toml", folder.read("desk/desk.toml") +
                                           "\n[[group]]\nname = \"lenders\"\nbroker = \"credit\"\n"
                                           "members = [{ account = \"C1\", weight = 1 }]\n");
    }
    CPrinted call(const std::string& function, const std::string& param,
                  const std::optional<std::string>& algo = {}) const {
        std::ostringstream said, failed;
        CPrinted printed;
        printed.m_nCode = runCall(folder.path("desk"), {function, param, algo}, said, failed);
        printed.m_strOut = said.str();
        printed.m_strErr = failed.str();
        return printed;
    }
    /// Runs the desk until all of these have returned, one after the other on another thread.
    int runWith(const std::function<void()>& body) {
        std::future<void> done;
        return run({
            [&] {
                if (!folder.exists("desk/control.sock")) return false;
                done = std::async(std::launch::async, body);
                return true;
            },
            [&] { return done.wait_for(std::chrono::seconds(0)) == std::future_status::ready; },
        });
    }
    std::string shownJournal() const {
        std::ostringstream shown;
        EXPECT_EQ(runJournal(folder.path("desk"), false, shown, shown, {}), 0);
        return shown.str();
    }
};

TEST_F(CallDesk, CommandThatWasSentIsPrintedWithItsOrders) {
    CPrinted printed;
    EXPECT_EQ(runWith([&] { printed = call("passorder", kRepay); }), 0);
    EXPECT_EQ(printed.m_nCode, 0);
    EXPECT_EQ(printed.m_strErr, "");
    EXPECT_EQ(printed.m_strOut, "sent: task 1\n"
                                "  [函数交易]　函数: passorder, 交易类型: 信用, 下单类型: 直接还款\n"
                                "  order 1 of task 1: C1 repay money 100: REJECTED: C1 owes no money\n");
    EXPECT_FALSE(folder.exists("desk/control.sock"));
}

/// The demo folder never changes the quote of this stock.
TEST_F(CallDesk, OrdersAreCancelledOneByOneOrAllTogether) {
    const std::string waits =
        R"({"opType":23,"orderType":1101,"prType":11,"modelPrice":"7.5","modelVolume":"200","accountID":"10001",)"
        R"("orderCode":"600104"})";
    const std::string cancel = R"({"accountId":"10001","accountType":"STOCK")";
    std::vector<CPrinted> printed;
    EXPECT_EQ(runWith([&] {
                  for (int i = 0; i < 3; ++i)
                      call("passorder", waits);
                  for (const char* order : {R"(,"orderId":"2"})", R"(,"orderId":"2"})", "}", "}"})
                      printed.push_back(call("cancel", cancel + order));
              }),
              0);
    ASSERT_EQ(printed.size(), 4u);
    const std::string shown = "  [函数交易]　函数: cancel, 资金账号: 10001, 账号类型: STOCK, 合同编号: ";
    EXPECT_EQ(printed[0].m_strOut, "sent: 1 cancel\n" + shown + "2\n");
    EXPECT_EQ(printed[0].m_nCode, 0);
    EXPECT_EQ(printed[1].m_strOut.rfind(
                  "NOTHING SENT\n" + shown + "2\n  cancel_order A1 2: order 2 does not wait", 0),
              0U)
        << printed[1].m_strOut;
    EXPECT_EQ(printed[1].m_nCode, 1);
    EXPECT_EQ(printed[2].m_strOut, "sent: 2 cancels\n" + shown + "1\n" + shown + "3\n");
    EXPECT_EQ(printed[3].m_strOut, "NOTHING SENT: no order was found that could be cancelled\n");
    EXPECT_TRUE(std::regex_search(shownJournal(), std::regex("  call  sent, call #\\d+, cancels 2\n")));
}

/// A command that must be confirmed has nobody to ask.
TEST_F(CallDesk, DeclinedCommandIsNotSent) {
    change("desk/desk.toml", "mdl_order_command_remark = true", "mdl_order_service_force_confirm = true");
    CPrinted printed;
    EXPECT_EQ(runWith([&] { printed = call("passorder", kRepay); }), 0);
    EXPECT_EQ(printed.m_nCode, 1);
    EXPECT_EQ(printed.m_strOut, "NOTHING SENT\n"
                                "  [函数交易]　函数: passorder, 交易类型: 信用, 下单类型: 直接还款\n"
                                "  command refused: it must be confirmed, but the desk cannot ask anybody\n");
}

TEST_F(CallDesk, JournalHasTheCallAndItsOutcome) {
    EXPECT_EQ(runWith([&] {
                  call("passorder", kRepay);
                  call("smartalgopypassorder", kUnknownAccount, "{}");
              }),
              0);
    const std::string shown = shownJournal();
    std::smatch asked;
    ASSERT_TRUE(
        std::regex_search(shown, asked, std::regex("#(\\d+)  call  asked: passorder \\{\"opType\":32")))
        << shown;
    EXPECT_NE(shown.find("  call  sent, call #" + asked[1].str() + ", task 1\n"), std::string::npos) << shown;
    EXPECT_NE(shown.find("|b|7\"}, algorithm {}\n"), std::string::npos) << shown;
    EXPECT_TRUE(std::regex_search(
        shown, std::regex("  call  refused, call #\\d+\n"
                          "    \\[函数交易\\]　函数: smartalgopypassorder, 账号组或账号非法或不存在!\n")))
        << shown;
    EXPECT_TRUE(has(R"("failures":[{"id":7,"key":"b","text":"[函数交易])")) << journal();
}

/// The message, and the call-back, have the same text.
TEST_F(CallDesk, RefusalIsPrintedOnceWithItsReason) {
    CPrinted printed;
    EXPECT_EQ(runWith([&] { printed = call("passorder", kUnknownAccount); }), 0);
    EXPECT_EQ(printed.m_nCode, 1);
    EXPECT_EQ(printed.m_strOut, "NOTHING SENT\n  [函数交易]　函数: passorder, 账号组或账号非法或不存在!\n");
}

TEST_F(CallDesk, UnknownFunctionAndCancelOfNothingAreNamed) {
    std::vector<CPrinted> printed;
    EXPECT_EQ(runWith([&] {
                  for (const char* function : {"PASSORDER", "cancel", "买入"})
                      printed.push_back(call(function, "{}"));
              }),
              0);
    const std::string known = "\"; the functions are passorder, smartalgopypassorder and cancel\n";
    ASSERT_EQ(printed.size(), 3u);
    EXPECT_EQ(printed[0].m_strOut, "NOTHING SENT: there is no function \"PASSORDER" + known);
    EXPECT_EQ(printed[1].m_strOut, "NOTHING SENT: no order was found that could be cancelled\n");
    EXPECT_EQ(printed[2].m_strOut, "NOTHING SENT: there is no function \"买入" + known);
    for (const CPrinted& each : printed)
        EXPECT_EQ(each.m_nCode, 1) << each.m_strOut;
}

/// The third part of the trade key is no number: the failure cannot reach its caller, and the call throws.
TEST_F(CallDesk, ExceptionOfACallIsPrinted) {
    CPrinted printed;
    EXPECT_EQ(runWith([&] {
                  printed =
                      call("passorder", R"({"opType":23,"orderType":1101,"modelVolume":"0","orderCode":"1",)"
                                        R"("tradeKey":"a|b|x"})");
              }),
              0);
    EXPECT_EQ(printed.m_nCode, 1);
    EXPECT_EQ(printed.m_strOut.rfind("NOTHING SENT: the call was ended by: bad lexical cast", 0), 0U)
        << printed.m_strOut;
    EXPECT_NE(printed.m_strOut.find("\n  [函数交易]　函数: passorder, 下单数量/金额/比例为0\n"),
              std::string::npos);
}

TEST_F(CallDesk, CallsOfManyClientsAreAllCarriedOut) {
    constexpr int kClients = 10;
    std::vector<std::future<CPrinted>> clients;
    EXPECT_EQ(runWith([&] {
                  for (int i = 0; i < kClients; ++i)
                      clients.push_back(
                          std::async(std::launch::async, [this] { return call("passorder", kRepay); }));
                  for (const auto& client : clients)
                      client.wait();
              }),
              0);
    std::set<std::string> tasks;
    for (auto& client : clients) {
        const CPrinted printed = client.get();
        EXPECT_EQ(printed.m_nCode, 0) << printed.m_strOut;
        tasks.insert(printed.m_strOut.substr(0, printed.m_strOut.find('\n')));
    }
    EXPECT_EQ(tasks.size(), 10u); // each client has its own task
}

TEST_F(CallDesk, ClientWithoutARequestDoesNotHoldUpTheEnd) {
    std::unique_ptr<CControlClient> idle, half;
    EXPECT_EQ(runWith([&] {
                  idle = std::make_unique<CControlClient>(folder.path("desk"));
                  half = std::make_unique<CControlClient>(folder.path("desk"));
                  half->send("{\"call\":");
                  call("cancel", "{}"); // the door has accepted both before
              }),
              0);
    EXPECT_EQ(idle->readLine(), R"({"result":"ending","cause":"the desk ends; nothing was carried out"})");
    EXPECT_EQ(idle->readLine(), "-");
    EXPECT_NE(half->readLine().find("\"ending\""), std::string::npos);
}

TEST_F(CallDesk, BadRequestIsAnsweredWithItsReason) {
    std::string answer;
    EXPECT_EQ(runWith([&] { answer = CControlClient(folder.path("desk")).ask("hello"); }), 0);
    EXPECT_EQ(answer.rfind(R"({"result":"bad_request","cause":"the request cannot be read: parse error)", 0),
              0U)
        << answer;
    EXPECT_FALSE(has("\"kind\":\"call\""));
}

TEST_F(CallDesk, DeskWithoutItsDoorTrades) {
    folder.write("desk/control.sock", "mine");
    CPrinted printed;
    EXPECT_EQ(run({[this] { return has("\"action\":\"start\",\"channel\":4"); },
                   [&] {
                       printed = call("cancel", "{}");
                       return true;
                   }}),
              0);
    const std::string why =
        folder.path("desk/control.sock") + ": there is a file with this name that is not a socket";
    EXPECT_EQ(printed.m_nCode, 3);
    EXPECT_EQ(printed.m_strErr, why + '\n'); // not that no desk runs
    EXPECT_NE(
        out.str().find("WARNING: the desk has no control door, so orderdesk call cannot reach it: " + why),
        std::string::npos)
        << out.str();
    EXPECT_NE(shownJournal().find("door  control.sock failed: " + why), std::string::npos);
    EXPECT_EQ(folder.read("desk/control.sock"), "mine");
}

/// A full disk must not keep a user from leaving a trade. Here a folder is in the place of the journal.
TEST_F(CallDesk, OnlyCancelsAreCarriedOutWhileTheJournalCannotBeWritten) {
    CPrinted placed, cancelled;
    std::future<void> done;
    EXPECT_EQ(run({
                  [&] {
                      if (!folder.exists("desk/control.sock")) return false;
                      std::filesystem::rename(folder.path("desk/journal.jsonl"), folder.path("moved"));
                      std::filesystem::create_directory(folder.path("desk/journal.jsonl"));
                      return true;
                  },
                  [&] {
                      if (out.str().find("New commands are refused") == std::string::npos) return false;
                      done = std::async(std::launch::async, [&] {
                          placed = call("passorder", kRepay);
                          cancelled = call("cancel", "{}");
                      });
                      return true;
                  },
                  [&] {
                      if (done.wait_for(std::chrono::seconds(0)) != std::future_status::ready) return false;
                      std::filesystem::remove(folder.path("desk/journal.jsonl"));
                      return true;
                  },
              }),
              0);
    EXPECT_EQ(placed.m_nCode, 1);
    EXPECT_EQ(placed.m_strOut.rfind("NOTHING SENT: the call cannot be recorded: cannot open journal ", 0), 0U)
        << placed.m_strOut;
    EXPECT_EQ(cancelled.m_strOut, "NOTHING SENT: no order was found that could be cancelled\n");
}

TEST_F(CallDesk, DeskThatDoesNotRunHasItsOwnExitCode) {
    const CPrinted printed = call("passorder", kRepay);
    EXPECT_EQ(printed.m_nCode, 3);
    EXPECT_EQ(printed.m_strOut, "");
    EXPECT_EQ(printed.m_strErr,
              "no desk answers in " + folder.path("desk") +
                  ": none runs, or it is starting or ending, or it has no control door (its "
                  "screen says so)\n");
    std::ostringstream said;
    EXPECT_EQ(runCall(folder.path(), {"cancel", "{}", {}}, said, said), 3);
    EXPECT_EQ(said.str(), folder.path() + ": this is not a desk folder: it has no desk.toml\n");
}

TEST_F(CallDesk, TextsThatCannotBeACallAreAMistake) {
    const struct {
        CCallRequest request;
        const char* mistake;
    } rows[] = {
        {{"", "{}", {}}, "FUNCTION is empty\n"},
        {{"\xff", "{}", {}}, "FUNCTION is not UTF-8\n"},
        {{"f", "[]", {}}, "JSON cannot be used: it is not an object\n"},
        {{"f", R"({"a":1,"a":2})", {}}, "JSON cannot be used: the key \"a\" is there twice\n"},
        {{"smartalgopypassorder", "{}", "1"}, "the JSON of --algo cannot be used: it is not an object\n"},
        {{"smartalgopypassorder", "{}", ""},
         "smartalgopypassorder needs the settings of an algorithm (algo); without them it would be a plain "
         "order\n"},
        {{"passorder", "{}", "{}"},
         "only smartalgopypassorder takes the settings of an algorithm (algo); passorder would ignore "
         "them\n"},
    };
    for (const auto& row : rows) {
        const CPrinted printed = call(row.request.m_strFunction, row.request.m_strParam, row.request.m_algo);
        EXPECT_EQ(printed.m_nCode, 2);
        EXPECT_EQ(printed.m_strErr, row.mistake);
    }
    EXPECT_EQ(call("f", "{\"a\":\"\xff\"}").m_nCode, 2);
}

/// A desk that dies while it carries out a call.
TEST_F(CallDesk, MissingAnswerHasItsOwnExitCode) {
    boost::asio::io_context io;
    boost::asio::local::stream_protocol::acceptor dying(
        io, boost::asio::local::stream_protocol::endpoint(folder.path("desk/control.sock")));
    std::future<void> death = std::async(std::launch::async, [&] { dying.accept().close(); });
    const CPrinted printed = call("passorder", kRepay);
    EXPECT_EQ(printed.m_nCode, 4);
    EXPECT_EQ(printed.m_strErr,
              "the desk ended without an answer; it is not known what came of the call; look "
              "in the journal: orderdesk journal " +
                  folder.path("desk") + "\n");
}

TEST(PrintAnswer, LongListsEndWithTheNumberOfTheRest) {
    std::ostringstream said, failed;
    EXPECT_EQ(
        printAnswer(R"({"result":"sent","tasks":[3,4],"cancels":2,"cause":"why","messages":[{"text":"a"},)"
                    R"({"text":"a"}],"more_messages":5,"orders":["o"],"more_orders":1})",
                    said, failed),
        0);
    EXPECT_EQ(said.str(), "sent: task 3, task 4, 2 cancels; why\n  a\n  and 5 messages more\n  o\n"
                          "  and 1 order more\n");
}

TEST(PrintAnswer, NumberOfTheRestIsPrintedInItsPlace) {
    CJson answer{{"result", "refused"}, {"cause", "why"}, {"more_failures", 7}};
    for (int i = 0; i < 200; ++i)
        answer["failures"].push_back({{"text", 'f' + std::to_string(i)}});
    std::ostringstream said, failed;
    EXPECT_EQ(printAnswer(answer.dump(), said, failed), 1);
    EXPECT_EQ(said.str().rfind("NOTHING SENT: why\n  f0\n", 0), 0U);
    EXPECT_NE(said.str().find("  f149\n  and 7 failures more\n  f150\n"), std::string::npos) << said.str();
}

/// A script must not repeat the call because of the exit code.
TEST(PrintAnswer, OutcomeThatIsNotKnownIsNotNothing) {
    std::ostringstream said, failed;
    EXPECT_EQ(printAnswer(R"({"result":"unknown","cause":"an error"})", said, failed), 4);
    EXPECT_EQ(said.str(), "NOT KNOWN: an error\n");
}

TEST(PrintAnswer, ControlCharactersDoNotReachTheTerminal) {
    std::ostringstream said, failed;
    EXPECT_EQ(printAnswer(R"({"result":"refused","messages":[{"text":"a\u001b[2Jb","title":"t\n"}]})", said,
                          failed),
              1);
    EXPECT_EQ(said.str(), "NOTHING SENT\n  t : a [2Jb\n");
}

TEST(PrintAnswer, AnswerThatCannotBeReadIsNoAnswer) {
    std::ostringstream said, failed;
    for (const char* answer : {"", "nonsense", "[]", "{}", R"({"result":1})"})
        EXPECT_EQ(printAnswer(answer, said, failed), 4) << answer;
    EXPECT_EQ(said.str(), "");
}

} // namespace
} // namespace desk
