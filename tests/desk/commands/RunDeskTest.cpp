#include "desk/commands/CheckFolder.h"
#include "desk/commands/ShowJournal.h"
#include "desk/config/ConfigLoader.h"
#include "desk/host/FolderLock.h"
#include "desk/host/OrderLines.h"
#include "orderservice/base/Log.h"
#include "orderservice/service/OrderService.h"
#include "tests/desk/commands/RunningFolder.h"

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <filesystem>
#include <future>
#include <sstream>
#include <utility>
#include <vector>

namespace desk {
namespace {

class RunDesk : public CRunningFolder {
protected:
    /// Runs the desk until an order from a file is filled.
    int tradeOnce() {
        return run({
            [this] { return has("\"action\":\"start\",\"channel\":4"); },
            [this] {
                folder.handOver("desk/orders/group.txt", "23,0,11.02,600101,1000\n");
                return true;
            },
            [this] { return has("\"kind\":\"fill\""); },
        });
    }

    /// Leaves an empty paper.db and a log, as a crash may do.
    void emptyTheBooks() const {
        folder.write("desk/paper.db", "");
        folder.write("desk/paper.db-wal", kLog);
    }
    void expectLogIsKept() const {
        EXPECT_EQ(folder.read("desk/paper.db-wal"), kLog);
        EXPECT_EQ(folder.read("desk/paper.db"), "");
    }

    const std::string kLog = "changes that are not in paper.db yet";
};

TEST_F(RunDesk, OrderFileIsFilledJournalledAndSurvivesARestart) {
    const int code = run({
        [this] { return has("\"action\":\"start\",\"channel\":4"); },
        [this] {
            folder.handOver("desk/orders/group.txt", "23,0,11.02,600101,1000\n");
            return true;
        },
        [this] { return has("\"kind\":\"fill\""); },
    });
    EXPECT_EQ(code, 0);
    EXPECT_TRUE(has("\"kind\":\"command\""));
    EXPECT_TRUE(has("\"kind\":\"stopped\""));
    const std::string before = journal();
    EXPECT_EQ(run({[this] { return has("\"action\":\"start\",\"channel\":4"); }}), 0);
    EXPECT_EQ(journal().compare(0, before.size(), before), 0); // never rewritten
}

/// The demo folder never changes the quote of this stock.
TEST_F(RunDesk, ScreenSaysWhatHappenedToEachOrder) {
    const int code = run({
        [this] { return has("\"action\":\"start\",\"channel\":4"); },
        [this] {
            folder.handOver("desk/orders/group.txt", "23,0,8.02,600104,1000\n23,0,7.50,600104,2000\n"
                                                     "23,0,8.02,600104,150\n");
            return true;
        },
        [this] { return has("\"status\":\"rejected\""); },
    });
    EXPECT_EQ(code, 0);
    const std::string shown = out.str();
    for (const char* line :
         {"order 1 of task 1: A1 buy 600 SH600104 @ 8.02: filled at 8.01\n",
          "order 3 of task 2: A1 buy 1200 SH600104 @ 7.5: waits\n",
          "order 5 of task 3: A1 buy 150 SH600104 @ 8.02: REJECTED: volume 150 is not a multiple of 100\n"})
        EXPECT_NE(shown.find(line), std::string::npos) << line << shown;
}

TEST_F(RunDesk, ScreenSaysWhyAFileGaveNoOrder) {
    const std::string path = folder.path("desk/orders/group.txt");
    const int code = run({
        [this] { return has("\"action\":\"start\",\"channel\":4"); },
        [this] {
            folder.handOver("desk/orders/group.txt", "23,9,11.02,600101,100\n23\n24,9,11.02,600101,100\n");
            return true;
        },
        [this] { return has("\"lines\":3,\"orders\":0"); },
    });
    EXPECT_EQ(code, 0);
    const std::string why = path + " gave no order from 3 lines; 3 lines without effect: 2 x \"it is for "
                                   "channel 9\", 1 x \"it has fewer than two fields\", the first is line 1: "
                                   "it is for channel 9\n";
    EXPECT_NE(out.str().find(why), std::string::npos) << out.str();
}

/// One command of many orders, which the broker rejects within one call.
TEST_F(RunDesk, FloodOfOrdersDoesNotFloodTheScreen) {
    constexpr int kOrders = 400;
    std::string lines = "25,0\n";
    for (int i = 0; i < kOrders; ++i)
        lines += "600102\t150\n";
    const int code = run({
        [this] { return has("\"action\":\"start\",\"channel\":4"); },
        [&] {
            folder.handOver("desk/orders/basket.txt", lines);
            return true;
        },
        [this] { return has("\"order\":" + std::to_string(kOrders) + ","); },
    });
    EXPECT_EQ(code, 0);
    const std::string shown = out.str();
    int rejected = 0;
    for (std::size_t at = 0; (at = shown.find(": REJECTED: ", at)) != std::string::npos; ++at)
        ++rejected;
    EXPECT_GE(rejected, COrderLines::kOrdersPerSecond);
    EXPECT_LT(rejected, kOrders);
    EXPECT_NE(shown.find(" like \"volume 150 is not a multiple of 100\"); the journal has each of them\n"),
              std::string::npos)
        << shown;
}

TEST_F(RunDesk, RemovedBooksBeginAnewAndTheScreenSaysSo) {
    EXPECT_EQ(tradeOnce(), 0);
    EXPECT_EQ(out.str().find("there is no paper.db"), std::string::npos) << out.str();
    for (const char* name : {"desk/paper.db", "desk/paper.db-wal", "desk/paper.db-shm"})
        std::filesystem::remove(folder.path(name));
    EXPECT_EQ(runDesk(folder.path("desk"), 0.0, out, [] { return true; }), 0);
    EXPECT_NE(out.str().find("WARNING: there is no paper.db, but the journal has orders."), std::string::npos)
        << out.str();
}

TEST_F(RunDesk, EmptyBooksWithALogAreRefusedAndTheLogIsKept) {
    EXPECT_EQ(tradeOnce(), 0);
    emptyTheBooks();
    EXPECT_EQ(runDesk(folder.path("desk"), 0.0, out, [] { return true; }), 1);
    EXPECT_NE(out.str().find("the file is empty"), std::string::npos) << out.str();
    expectLogIsKept();
}

TEST_F(RunDesk, EmptyBooksWithALogAreRefusedWithoutAJournalToo) {
    emptyTheBooks();
    EXPECT_EQ(runDesk(folder.path("desk"), 0.0, out, [] { return true; }), 1);
    EXPECT_NE(out.str().find("the file is empty"), std::string::npos) << out.str();
    expectLogIsKept();
}

TEST_F(RunDesk, CheckAndJournalLeaveTheLogOfEmptyBooks) {
    EXPECT_EQ(tradeOnce(), 0);
    emptyTheBooks();
    EXPECT_EQ(runCheck(folder.path("desk"), out), 0);
    EXPECT_EQ(runJournal(folder.path("desk"), false, out, out, [] { return false; }), 0);
    expectLogIsKept();
}

TEST_F(RunDesk, EmptyBooksWithoutALogBeginAnewIfTheJournalKnowsNoOrders) {
    folder.write("desk/paper.db", "");
    EXPECT_EQ(runDesk(folder.path("desk"), 0.0, out, [] { return true; }), 0);
    EXPECT_NE(folder.read("desk/paper.db"), "");
}

TEST_F(RunDesk, JournalOfAStoppedDeskIsRotatedWithoutDoubledLines) {
    EXPECT_EQ(tradeOnce(), 0);
    EXPECT_TRUE(has("\"kind\":\"fill\""));
    std::filesystem::rename(folder.path("desk/journal.jsonl"), folder.path("desk/journal.old"));
    EXPECT_EQ(runDesk(folder.path("desk"), 0.0, out, [] { return true; }), 0);
    EXPECT_FALSE(has("\"kind\":\"order\"")) << journal();
    EXPECT_FALSE(has("\"kind\":\"fill\""));
}

TEST_F(RunDesk, DeskThatIsEndedDuringItsStartStartsNoStrategy) {
    std::filesystem::create_directories(folder.path("desk/orders"));
    folder.handOver("desk/orders/group.txt", "23,0,11.02,600101,1000\n");
    EXPECT_EQ(runDesk(folder.path("desk"), std::nullopt, out, [] { return false; }), 0);
    EXPECT_FALSE(has("\"kind\":\"strategy\"")) << journal();
    EXPECT_TRUE(has("\"kind\":\"stopped\""));
    EXPECT_TRUE(folder.exists("desk/orders/group.txt")) << "a strategy that starts would delete it";
}

TEST_F(RunDesk, JournalThatIsRemovedInTheLastSecondIsReportedAtTheEnd) {
    const int code = run({
        [this] { return has("\"action\":\"start\",\"channel\":4"); },
        [this] { return std::filesystem::remove(folder.path("desk/journal.jsonl")); },
    });
    EXPECT_EQ(code, 0);
    EXPECT_TRUE(has("\"kind\":\"continued\""));
    EXPECT_TRUE(has("\"kind\":\"stopped\""));
    EXPECT_NE(out.str().find("was deleted while the desk ran"), std::string::npos) << out.str();
}

TEST_F(RunDesk, OrderNumbersGoOnAfterTheBooksWereRemoved) {
    EXPECT_EQ(tradeOnce(), 0);
    for (const char* name : {"desk/paper.db", "desk/paper.db-wal", "desk/paper.db-shm"})
        std::filesystem::remove(folder.path(name));
    const std::string before = journal();
    EXPECT_EQ(run({
                  [&] {
                      return journal().find("\"action\":\"start\",\"channel\":4", before.size()) !=
                             std::string::npos;
                  },
                  [this] {
                      folder.handOver("desk/orders/group.txt", "23,0,11.02,600101,1000\n");
                      return true;
                  },
                  [&] { return journal().find("\"kind\":\"fill\"", before.size()) != std::string::npos; },
              }),
              0);
    EXPECT_EQ(journal().find("\"order\":1,", before.size()), std::string::npos) << journal();
}

TEST_F(RunDesk, DamagedOrderFileIsRefusedShownAndKept) {
    const std::string damaged = "23,0,11.02,600101,7100\n23,0,11.02,600101,200\r23,0,11.02,600101,100\n";
    const int code = run({
        [this] { return has("\"action\":\"start\",\"channel\":4"); },
        [&] {
            folder.handOver("desk/orders/group.txt", damaged);
            return true;
        },
        [this] { return has("\"rejected\":true"); },
        [this] {
            folder.handOver("desk/orders/group.txt", "23,0,11.02,600101,300\n");
            return true;
        },
        [this] { return has("\"kind\":\"fill\""); },
    });
    EXPECT_EQ(code, 0);
    EXPECT_TRUE(has("\"cause\":\"line 2: a carriage return without a line feed\""));
    const std::string command = "\"kind\":\"command\"";
    EXPECT_EQ(journal().find(command), journal().rfind(command)) << "only that of the good file";
    const std::string shown =
        "group.txt was refused whole: line 2: a carriage return without a line feed; the "
        "file is kept as ";
    EXPECT_NE(out.str().find(shown + folder.path("desk/rejected/group.txt.")), std::string::npos)
        << out.str();
    std::vector<std::filesystem::path> kept;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path("desk/rejected")))
        kept.push_back(entry.path().filename());
    ASSERT_EQ(kept.size(), 1u);
    EXPECT_EQ(folder.read("desk/rejected/" + kept[0].string()), damaged);
}

TEST_F(RunDesk, OrdersOfACreditGroupAreSplitToTheShare) {
    folder.write("desk/desk.toml",
                 folder.read("desk/desk.toml") +
                     "[[account]]\nkey = \"C2\"\nbroker = \"credit\"\nfunds = 300000.0\ncredit_limit = "
                     "500000.0\n[[group]]\nname = \"lent\"\nbroker = \"credit\"\nmembers = [{ account = "
                     "\"C1\", weight = 6 }, { account = \"C2\", weight = 4 }]\n");
    std::string strategies = folder.read("desk/strategies.toml");
    const std::string account = "account = \"C1\"";
    ASSERT_NE(strategies.find(account), std::string::npos);
    folder.write("desk/strategies.toml",
                 strategies.replace(strategies.find(account), account.size(), "group = \"lent\""));
    const int code = run({
        [this] { return has("\"action\":\"start\",\"channel\":14"); },
        [this] {
            folder.handOver("desk/orders/credit.txt", "27,0,11.02,600101,100\n27,0,11.02,600101,1000\n");
            return true;
        },
        [this] { return has("\"kind\":\"fill\"") && has("\"volume\":400"); },
    });
    EXPECT_EQ(code, 0);
    EXPECT_TRUE(has("volume 60 is not a multiple of 100"));
    EXPECT_TRUE(has("volume 40 is not a multiple of 100"));
    EXPECT_TRUE(has("\"volume\":600"));
}

TEST_F(RunDesk, ChangedMultiplierUnderAPositionIsNotStarted) {
    EXPECT_EQ(runDesk(folder.path("desk"), 0.0, out, [] { return true; }), 0);
    std::string instruments = folder.read("desk/instruments.csv");
    const std::string before = "future,300,";
    ASSERT_NE(instruments.find(before), std::string::npos);
    folder.write("desk/instruments.csv",
                 instruments.replace(instruments.find(before), before.size(), "future,200,"));
    EXPECT_EQ(runDesk(folder.path("desk"), 0.0, out, [] { return true; }), 1);
    EXPECT_NE(
        out.str().find("account F1: position CFIF2609 was opened with multiplier 300, but the instrument "
                       "has 200"),
        std::string::npos)
        << out.str();
}

TEST_F(RunDesk, IdleDeskEndsByItself) {
    EXPECT_EQ(runDesk(folder.path("desk"), 0.0, out, [] { return true; }), 0);
    EXPECT_TRUE(has("\"reason\":\"idle\""));
}

TEST_F(RunDesk, FolderInUseIsRefused) {
    CFolderLock lock;
    ASSERT_TRUE(lock.acquire(folder.path("desk")).isSuccess());
    EXPECT_EQ(runDesk(folder.path("desk"), std::nullopt, out, [] { return true; }), 2);
    EXPECT_NE(out.str().find("is in use by process"), std::string::npos);
}

TEST_F(RunDesk, FolderIsReadOnlyOnceItIsHeld) {
    CFolderLock lock;
    ASSERT_TRUE(lock.acquire(folder.path("desk")).isSuccess());
    folder.write("desk/strategies.toml", "half of a file that the other desk is wri");
    EXPECT_EQ(runDesk(folder.path("desk"), std::nullopt, out, [] { return true; }), 2);
    EXPECT_NE(out.str().find("is in use by process"), std::string::npos);
    EXPECT_EQ(out.str().find("strategies.toml"), std::string::npos) << out.str();
}

TEST_F(RunDesk, PathThatIsNotAFolderIsReported) {
    EXPECT_EQ(runDesk(folder.path("none"), std::nullopt, out, [] { return true; }), 2);
    EXPECT_NE(out.str().find("none: is not a folder; make one with: orderdesk new"), std::string::npos);
    EXPECT_FALSE(folder.exists("none"));
}

TEST_F(RunDesk, FolderWithoutADeskStaysAsItIs) {
    std::filesystem::create_directory(folder.path("photos"));
    EXPECT_EQ(runDesk(folder.path("photos"), std::nullopt, out, [] { return true; }), 2);
    EXPECT_NE(out.str().find("desk.toml"), std::string::npos) << out.str();
    EXPECT_NE(out.str().find("not started"), std::string::npos) << out.str();
    EXPECT_TRUE(std::filesystem::is_empty(folder.path("photos")));
}

TEST_F(RunDesk, FolderWithMistakesIsNotStarted) {
    folder.write("desk/strategies.toml", "[[strategy]]\nchanel = 1\n");
    EXPECT_EQ(runDesk(folder.path("desk"), std::nullopt, out, [] { return true; }), 2);
    EXPECT_NE(out.str().find("strategies.toml:2: strategy: unknown key \"chanel\""), std::string::npos);
    EXPECT_FALSE(folder.exists("desk/journal.jsonl"));
}

TEST_F(RunDesk, OrderSocketTakesOrdersAndItsDoorIsJournalled) {
    const std::string source = "127.0.0.1:" + std::to_string(socketPort);
    std::future<std::string> replies;
    const auto trade = [this] {
        CTestSocket client(socketPort);
        std::string text = client.readLine();
        for (const char* line : {"user demo", "pass change-me", "placeorder 23,5,11.02,600101,1000"})
            text += client.ask(line);
        return text;
    };
    const int code = run({
        [&] {
            if (!has("\"event\":\"opened\",\"source\":\"" + source + "\",\"loopback\":true")) return false;
            replies = std::async(std::launch::async, trade);
            return true;
        },
        [this] { return has("\"kind\":\"fill\""); },
    });
    EXPECT_EQ(code, 0);
    const std::string text = replies.get();
    EXPECT_EQ(text.substr(text.find('\n') + 1), "+OK\r\n+OK\r\n+OK\r\n");
    EXPECT_TRUE(has("\"event\":\"closed\",\"source\":\"" + source + "\""));
}

/// If a socket strategy cannot get its port, the file strategies of the folder still trade.
TEST_F(RunDesk, ATakenPortIsReportedAndTheOthersTrade) {
    boost::asio::io_service io;
    const boost::asio::ip::tcp::acceptor other(io, {boost::asio::ip::address_v4::loopback(), socketPort});
    const std::string reason = "启动socket服务失败（可能因为端口被占用或其它原因）";
    const int code = run({
        [&] { return has("\"event\":\"strategy_not_started\",\"channel\":5,"); },
        [this] {
            folder.handOver("desk/orders/group.txt", "23,0,11.02,600101,1000\n");
            return true;
        },
        [this] { return has("\"kind\":\"fill\""); },
    });
    EXPECT_EQ(code, 0);
    EXPECT_NE(out.str().find("channel 5: the strategy does not run: " + reason), std::string::npos)
        << out.str();
    EXPECT_FALSE(has("\"kind\":\"door\""));
    EXPECT_TRUE(has("\"action\":\"start\",\"channel\":4"));
    EXPECT_FALSE(has("\"action\":\"start\",\"channel\":5"));
}

/// Sends ten wrong passwords until the connection is closed. Then logs in correctly and places an order.
std::string talkOfPasswords(unsigned short port) {
    CTestSocket stranger(port);
    stranger.readLine();
    std::string text = stranger.ask("user demo");
    for (int i = 0; i < 10; ++i)
        text += stranger.ask("pass wrong-secret");
    CTestSocket trader(port);
    trader.readLine();
    for (const char* line : {"user demo", "pass change-me", "placeorder 23,5,11.02,600101,1000"})
        text += trader.ask(line);
    return text;
}

TEST_F(RunDesk, PasswordsReachNeitherJournalNorLogNorScreen) {
    std::future<std::string> replies;
    const int code = run({
        [this] { return has("\"action\":\"start\",\"channel\":5"); },
        [&] {
            replies = std::async(std::launch::async, talkOfPasswords, socketPort);
            return !utils::CLogCenter::logEnabled();
        },
        [this] { return has("\"kind\":\"fill\""); },
        [] {
            QString error;
            TC::COrderService& service = *TC::COrderService::instance();
            service.stopOrderStrategy(5, error);
            TC::COrderStrategyParam changed = service.getStrategyMap().value(5);
            changed.m_strPass = QStringLiteral("another secret");
            changed.m_nVolume = -1;
            return service.updateOrderStrategy(5, changed) == 0;
        },
        [this] { return has("\"action\":\"not_saved\",\"channel\":5"); },
    });
    EXPECT_EQ(code, 0);
    std::string expected = "+OK\r\n";
    for (int i = 0; i < 9; ++i)
        expected += "-ERR User or Pass is Not Right\r\n";
    expected += "-ERR Too Many Failed Logins\r\n+OK\r\n+OK\r\n+OK\r\n";
    EXPECT_EQ(replies.get(), expected);
    // The results of the logins are recorded.
    EXPECT_TRUE(has("\"cause\":\"Too Many Failed Logins\""));
    EXPECT_TRUE(has("\"kind\":\"intake\"")) << "the order of the good login";
    EXPECT_TRUE(has("\"user\":\"demo\""));
    for (const char* secret : {"change-me", "wrong-secret", "another secret"}) {
        EXPECT_FALSE(has(secret)) << secret;
        EXPECT_EQ(out.str().find(secret), std::string::npos) << secret;
    }
}

TEST_F(RunDesk, AsManyFilesMayBeOpenAsTheSystemAllows) {
    struct rlimit before {};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
    const struct rlimit low { before.rlim_max / 2, before.rlim_max };
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &low), 0);
    EXPECT_EQ(runDesk(folder.path("desk"), 0.0, out, [] { return true; }), 0);
    struct rlimit after {};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &after), 0);
    EXPECT_EQ(after.rlim_cur, before.rlim_max);
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &before), 0);
}

/// The demo's futures accounts hold 4 and 2 lots from earlier days. Here the second account has the larger
/// weight, so it would get the single lot. But the order service refuses a close order that skips the first
/// account, so the desk closes the lot on the first account.
TEST_F(RunDesk, OneLotIsClosedOnAGroupWhoseSecondAccountHasTheWeight) {
    change("desk/desk.toml", "{ account = \"F1\", weight = 2 }, { account = \"F2\", weight = 1 }",
           "{ account = \"F1\", weight = 1 }, { account = \"F2\", weight = 2 }");
    const int code = run({
        [this] { return has("\"action\":\"start\",\"channel\":16"); },
        [this] {
            folder.handOver("desk/orders/future.txt", "1,0,3999.8,IF2609,1\n");
            return true;
        },
        [this] { return has("\"kind\":\"fill\"") || has("\"kind\":\"trade_error\""); },
    });
    EXPECT_EQ(code, 0);
    EXPECT_FALSE(has("平仓仓位不足"));
    EXPECT_TRUE(
        has("\"account\":\"F1\",\"stock\":\"CFIF2609\",\"operation_type\":1,\"price\":3999.8,\"volume\":1"));
}

TEST_F(RunDesk, AClosingVolumeIsSplitOverWhatCanBeClosed) {
    change("desk/positions.csv", "F2,IF2609,long,2,2,3960", "F2,IF2609,long,1,1,3960");
    const int code = run({
        [this] { return has("\"action\":\"start\",\"channel\":16"); },
        [this] {
            folder.handOver("desk/orders/future.txt", "1,0,3999.8,IF2609,5\n");
            return true;
        },
        [this] { return has("\"account\":\"F2\"") && has("\"kind\":\"fill\""); },
    });
    EXPECT_EQ(code, 0);
    EXPECT_FALSE(has("\"status\":\"rejected\""));
    EXPECT_TRUE(
        has("\"account\":\"F1\",\"stock\":\"CFIF2609\",\"operation_type\":1,\"price\":3999.8,\"volume\":4"));
    EXPECT_TRUE(
        has("\"account\":\"F2\",\"stock\":\"CFIF2609\",\"operation_type\":1,\"price\":3999.8,\"volume\":1"));
}

TEST_F(RunDesk, WarningsAreReportedAndTheDeskStarts) {
    change("desk/desk.toml", "kind = 100 ", "kind = 102 ");
    EXPECT_EQ(runDesk(folder.path("desk"), 0.0, out, [] { return true; }), 0);
    EXPECT_NE(out.str().find("desk.toml:7: warning: user: users of kind 102 issue no commands"),
              std::string::npos)
        << out.str();
}

} // namespace
} // namespace desk
