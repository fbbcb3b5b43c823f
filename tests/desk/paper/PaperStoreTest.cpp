#include "desk/paper/PaperBroker.h"

#include "tests/desk/paper/PaperDesk.h"

#include <sqlite3.h>

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

using namespace desk;
using namespace desk::test;

namespace {

constexpr const char* kMoveAway = "Move paper.db, paper.db-wal and paper.db-shm away. Then either put back a "
                                  "copy of paper.db that was made while the desk was off";
constexpr const char* kStoreFiles[] = {"paper.db", "paper.db-wal", "paper.db-shm"};

class PaperStore : public PaperDesk {
protected:
    void copyStore(const std::string& from, const std::string& to) const {
        for (const char* name : kStoreFiles) {
            if (std::filesystem::exists(from + '/' + name))
                std::filesystem::copy_file(from + '/' + name, to + '/' + name,
                                           std::filesystem::copy_options::overwrite_existing);
        }
    }
    void removeStore() const {
        for (const char* name : kStoreFiles)
            std::filesystem::remove(m_folder.file(name));
    }

    /// All data that queries return, as one text.
    std::string snapshot() const {
        std::string text;
        for (const CPaperFunds& f : m_broker->funds())
            text += join(f.m_strAccount, f.m_nCash, f.m_nFrozen);
        for (const CPaperPosition& p : m_broker->positions()) {
            text += join(p.m_strAccount + p.m_strStock, p.m_nVolume, p.m_nSellable, p.m_nFrozen, p.m_nCost);
        }
        for (const CPaperTask& t : m_broker->tasks()) {
            text += join(t.m_strRemark + t.m_strTime, t.m_nId, t.m_nReference, t.m_nOrders);
        }
        for (const CPaperOrder& o : m_broker->orders()) {
            text += join(o.m_strAccount + o.m_strStock + o.m_strReason + o.m_strTime, o.m_nId, o.m_nTask,
                         static_cast<int>(o.m_eOperation), static_cast<int>(o.m_ePriceType), o.m_bMarket,
                         o.m_nPrice, o.m_nVolume, o.m_nFilled, o.m_nFilledAmount, o.m_nFrozen,
                         static_cast<int>(o.m_eStatus));
        }
        for (const CPaperFill& f : m_broker->fills()) {
            text += join(f.m_strTime, f.m_nId, f.m_nOrder, f.m_nPrice, f.m_nVolume);
        }
        return text;
    }

    template<typename... A>
    static std::string join(const std::string& head, A... numbers) {
        std::string text = head;
        ((text += ' ' + std::to_string(numbers)), ...);
        return text + '\n';
    }

    utils::KNError openAgain(std::int64_t lastEventTaken = 0) {
        CPaperBroker broker(m_quotes, {});
        return broker.open(m_folder.path(), deskAccounts(), lastEventTaken);
    }

    void tradeSomething() {
        place({buy(1000, 10.01), sell(350, 9.99), buy(150, 9.5), buy(100, TC::kUnsetDouble, kMarket)});
        place({sell(100, 10.5)});
        ASSERT_TRUE(m_broker->cancelTask(2, "reason").isSuccess());
    }
};

/// Another program that locks the database, so that the broker cannot write.
class CForeignWriter {
public:
    explicit CForeignWriter(const std::string& path) {
        EXPECT_EQ(sqlite3_open(path.c_str(), &m_pDatabase), SQLITE_OK);
        EXPECT_EQ(sqlite3_exec(m_pDatabase, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
    }
    ~CForeignWriter() { letGo(); }
    void letGo() {
        sqlite3_close(m_pDatabase);
        m_pDatabase = nullptr;
    }
    CForeignWriter(const CForeignWriter&) = delete;
    CForeignWriter& operator=(const CForeignWriter&) = delete;

private:
    sqlite3* m_pDatabase = nullptr;
};

} // namespace

TEST_F(PaperStore, EverythingIsThereAfterARestart) {
    tradeSomething();
    const std::string before = snapshot();
    reopen();
    EXPECT_EQ(snapshot(), before);
    EXPECT_EQ(place({buy(100, 9.5)}), 3) << "ids go on";
    EXPECT_EQ(m_broker->orders().back().m_nId, 6);
}

TEST_F(PaperStore, WaitingOrdersTradeOnAfterARestart) {
    place({buy(300, 9.50)});
    reopen();
    m_quotes.setQuote(kStock, {}, {{9.50, 100}});
    ASSERT_TRUE(m_broker->onQuote(kStock).isSuccess());
    EXPECT_EQ(order(1).m_nFilled, 100);
    ASSERT_TRUE(m_broker->cancelTask(1, "").isSuccess());
    EXPECT_EQ(funds().m_nFrozen, 0);
}

TEST_F(PaperStore, ConfigurationIsUsedOnlyForNewAccounts) {
    place({buy(200, 10.00)});
    m_broker = std::make_unique<CPaperBroker>(m_quotes, nullptr);
    std::vector<CAccountEntry> accounts = deskAccounts();
    accounts[0].funds = 7;
    accounts[0].positions.clear();
    accounts.push_back({});
    accounts.back().key = "NEW";
    accounts.back().funds = 12.5;
    ASSERT_TRUE(m_broker->open(m_folder.path(), accounts, 0).isSuccess());
    EXPECT_EQ(funds().m_nCash, toMoney(98000).value());
    EXPECT_EQ(position().m_nVolume, 1450);
    EXPECT_EQ(funds("NEW").m_nCash, toMoney(12.5).value());
}

TEST_F(PaperStore, AccountThatLeftTheConfigurationKeepsItsMoneyButMayNotTrade) {
    m_broker = std::make_unique<CPaperBroker>(m_quotes, nullptr);
    ASSERT_TRUE(m_broker->open(m_folder.path(), {}, 0).isSuccess());
    EXPECT_EQ(funds().m_nCash, toMoney(100000).value());
    EXPECT_EQ(rejection(buy(100, 10.00)), "unknown account A1");
}

TEST_F(PaperStore, TradingDayIsRememberedOverARestart) {
    ASSERT_TRUE(m_broker->startTradingDay("20260105").isSuccess());
    place({buy(200, 10.00)});
    reopen();
    ASSERT_TRUE(m_broker->startTradingDay("20260105").isSuccess());
    EXPECT_EQ(position().available(), 1050);
    ASSERT_TRUE(m_broker->startTradingDay("20260106").isSuccess());
    EXPECT_EQ(position().available(), 1450);
}

TEST_F(PaperStore, CommandThatCannotBeStoredIsRefusedAndNothingHasHappened) {
    tradeSomething();
    const std::string before = snapshot();
    const std::size_t events = m_events.size();
    {
        const CForeignWriter writer(m_folder.file(kPaperStoreName));
        const utils::KNError error = placeNow(*m_broker, stockCommand({buy(100, 10.05)})).m_error;
        EXPECT_EQ(error.errorId(), kPaperStoreFailed);
        EXPECT_EQ(error.errorMsg(),
                  "the paper broker's store failed: database is locked; another program has paper.db "
                  "open for writing: close that program");
        EXPECT_FALSE(m_broker->cancelTask(1, "").isSuccess());
    }
    EXPECT_EQ(snapshot(), before);
    EXPECT_EQ(m_events.size(), events);
    EXPECT_EQ(placed(buy(1000, 10.05)).m_nFilled, 900)
        << "what the refused order would have taken is still there";
}

TEST_F(PaperStore, LockHeldForAMomentRefusesNothing) {
    CForeignWriter writer(m_folder.file(kPaperStoreName));
    int sleeps = 0;
    m_clock.m_onSleep = [&] {
        if (++sleeps == 100) writer.letGo();
    };
    place({buy(100, 10.05)});
    EXPECT_EQ(sleeps, 100);
    EXPECT_EQ(order(1).m_eStatus, EOrderStatus::Filled);
}

TEST_F(PaperStore, LockThatLastsHoldsUpOneCommandAndNotThoseBehindIt) {
    int sleeps = 0;
    m_clock.m_onSleep = [&] { ++sleeps; };
    {
        const CForeignWriter writer(m_folder.file(kPaperStoreName));
        EXPECT_FALSE(placeNow(*m_broker, stockCommand({buy(100, 10.05)})).m_error.isSuccess());
        EXPECT_EQ(sleeps, 500) << "five seconds";
        EXPECT_FALSE(placeNow(*m_broker, stockCommand({buy(100, 10.05)})).m_error.isSuccess());
        EXPECT_EQ(sleeps, 500);
    }
    place({buy(100, 10.05)});
    CForeignWriter writer(m_folder.file(kPaperStoreName));
    m_clock.m_onSleep = [&] { writer.letGo(); };
    place({buy(100, 10.05)}); // this waits again
}

TEST_F(PaperStore, LockAtTheStartIsWaitedForAndThenRefusedWithTheRemedy) {
    m_broker.reset();
    CForeignWriter writer(m_folder.file(kPaperStoreName));
    const utils::KNError error = openAgain();
    EXPECT_EQ(error.errorId(), kPaperStoreFailed);
    EXPECT_NE(error.errorMsg().find("another program has paper.db open for writing"), std::string::npos)
        << error.errorMsg();
    m_clock.m_onSleep = [&] { writer.letGo(); };
    EXPECT_TRUE(openAgain().isSuccess());
}

TEST_F(PaperStore, DamagedPagesAreFoundAtTheStartAndStayAsTheyAre) {
    tradeSomething();
    m_broker.reset();
    const std::string whole = m_folder.read(kPaperStoreName);
    constexpr std::size_t kPage = 4096;
    ASSERT_GT(whole.size(), 3 * kPage);
    int found = 0;
    for (std::size_t page = 1; page < whole.size() / kPage; ++page) {
        std::string damaged = whole;
        damaged.replace(page * kPage, 64, std::string(64, '\xa5'));
        std::ofstream(m_folder.file(kPaperStoreName), std::ios::binary | std::ios::trunc) << damaged;
        const utils::KNError error = openAgain();
        EXPECT_EQ(error.errorId(), kPaperStoreFailed) << "page " << page;
        if (error.errorMsg().find(kMoveAway) != std::string::npos) ++found;
        EXPECT_EQ(m_folder.read(kPaperStoreName), damaged) << "page " << page;
    }
    EXPECT_EQ(found, static_cast<int>(whole.size() / kPage) - 1);
}

/// Follows the instructions that a start with a damaged store prints.
TEST_F(PaperStore, CopyThatTakesTheDamagedStoresPlaceHasTheBooksOfItsTime) {
    const CDeskFolder copy, killed;
    tradeSomething();
    const std::string before = snapshot();
    m_broker.reset();
    copyStore(m_folder.path(), copy.path());
    open();
    place({buy(100, 10.05)});
    copyStore(m_folder.path(), killed.path()); // the state after the desk was killed: the log has changes
    m_broker.reset();
    copyStore(killed.path(), m_folder.path());
    ASSERT_GT(std::filesystem::file_size(m_folder.file("paper.db-wal")), 0u);
    std::filesystem::resize_file(m_folder.file(kPaperStoreName), 5000);
    m_folder.append(kPaperStoreName, std::string(3192, '\xa5'));
    std::filesystem::resize_file(m_folder.file("paper.db-wal"), 100);
    const std::string damaged = m_folder.read(kPaperStoreName);
    EXPECT_NE(openAgain().errorMsg().find(kMoveAway), std::string::npos) << openAgain().errorMsg();
    EXPECT_EQ(m_folder.read(kPaperStoreName), damaged);

    removeStore();
    copyStore(copy.path(), m_folder.path());
    open();
    EXPECT_EQ(snapshot(), before);
}

TEST_F(PaperStore, FileThatIsNoDatabaseIsRefusedWithTheRemedy) {
    m_broker.reset();
    std::ofstream(m_folder.file(kPaperStoreName), std::ios::binary | std::ios::trunc)
        << std::string(8192, 'x');
    const utils::KNError error = openAgain();
    EXPECT_NE(error.errorMsg().find(kMoveAway), std::string::npos) << error.errorMsg();
}

TEST_F(PaperStore, EmptyFileIsRefusedIfTheJournalKnowsOfEvents) {
    m_broker.reset();
    std::filesystem::resize_file(m_folder.file(kPaperStoreName), 0);
    const utils::KNError error = openAgain(1);
    EXPECT_NE(error.errorMsg().find("the file is empty"), std::string::npos) << error.errorMsg();
    EXPECT_NE(error.errorMsg().find(kMoveAway), std::string::npos) << error.errorMsg();
    EXPECT_EQ(std::filesystem::file_size(m_folder.file(kPaperStoreName)), 0u);
    EXPECT_TRUE(openAgain(0).isSuccess()) << "a start that was cut off may have left it";
}

TEST_F(PaperStore, LogWithoutItsStoreIsRefusedAndStays) {
    m_broker.reset();
    const std::string log = std::string(kPaperStoreName) + "-wal";
    m_folder.append(log, "changes");
    std::filesystem::resize_file(m_folder.file(kPaperStoreName), 0);
    EXPECT_NE(openAgain().errorMsg().find("the file is empty"), std::string::npos);
    std::filesystem::remove(m_folder.file(kPaperStoreName));
    const utils::KNError error = openAgain();
    EXPECT_NE(error.errorMsg().find(kMoveAway), std::string::npos) << error.errorMsg();
    EXPECT_EQ(m_folder.read(log), "changes");
    EXPECT_FALSE(std::filesystem::exists(m_folder.file(kPaperStoreName)));
}

TEST_F(PaperStore, DamageWhileItRunsNamesTheNextStartAndNotTheRemedy) {
    place({buy(100, 9.50)});
    const std::string store = m_folder.file(kPaperStoreName);
    {
        sqlite3* database = nullptr; // moves the log into the store, so that pages are read from the store
        ASSERT_EQ(sqlite3_open(store.c_str(), &database), SQLITE_OK);
        ASSERT_EQ(sqlite3_exec(database, "PRAGMA wal_checkpoint(TRUNCATE)", nullptr, nullptr, nullptr),
                  SQLITE_OK);
        sqlite3_close(database);
    }
    std::fstream pages(store, std::ios::binary | std::ios::in | std::ios::out);
    constexpr std::size_t kPage = 4096;
    for (std::size_t page = 1; page < std::filesystem::file_size(store) / kPage; ++page) {
        pages.seekp(static_cast<std::streamoff>(page * kPage));
        pages << std::string(kPage, '\xa5');
    }
    pages.close();
    // The connection caches unchanged pages. A write by another connection makes it read them again.
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(store.c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "PRAGMA application_id = 7", nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(other);
    const std::string error = placeNow(*m_broker, stockCommand({buy(100, 9.50)})).m_error.errorMsg();
    EXPECT_NE(error.find("malformed; stop the desk first; its next start says what to do"), std::string::npos)
        << error;
    EXPECT_EQ(error.find("away"), std::string::npos) << error;
}

TEST_F(PaperStore, NumbersThatTheJournalKnowsAreNotGivenAgainByAStoreThatIsNew) {
    place({buy(200, 10.00)});
    m_broker.reset();
    removeStore();
    m_broker = std::make_unique<CPaperBroker>(
        m_quotes, [](const std::vector<CBrokerEvent>& events) { return events.size(); });
    ASSERT_TRUE(m_broker->open(m_folder.path(), deskAccounts(), 3, {7, 15, 9}).isSuccess());
    place({buy(100, 10.00)});
    EXPECT_EQ(m_broker->tasks().at(0).m_nId, 8);
    EXPECT_EQ(m_broker->orders().at(0).m_nId, 16);
    EXPECT_EQ(m_broker->fills().at(0).m_nId, 10);
    EXPECT_FALSE(m_broker->cancelOrders({"cancel_order", "A1", "15"}, "").isSuccess());
}

TEST_F(PaperStore, FullDiskRefusesCommandsUntilThereIsRoom) {
    tradeSomething();
    const std::string before = snapshot();
    utils::KNError error;
    {
        const CFullDisk disk(std::filesystem::file_size(m_folder.file("paper.db-wal")));
        error = placeNow(*m_broker, stockCommand({buy(100, 10.05)})).m_error;
    }
    EXPECT_EQ(error.errorId(), kPaperStoreFailed);
    EXPECT_EQ(snapshot(), before);
    place({buy(100, 10.05)});
    const std::string after = snapshot();
    reopen();
    EXPECT_EQ(snapshot(), after);
}

TEST_F(PaperStore, QuoteThatCannotBeStoredLeavesOrdersWaitingForTheNext) {
    place({buy(100, 9.50)});
    m_quotes.setQuote(kStock, {}, {{9.50, 100}});
    {
        const CForeignWriter writer(m_folder.file(kPaperStoreName));
        EXPECT_FALSE(m_broker->onQuote(kStock).isSuccess());
    }
    EXPECT_EQ(order(1).m_eStatus, EOrderStatus::Working);
    ASSERT_TRUE(m_broker->onQuote(kStock).isSuccess());
    EXPECT_EQ(order(1).m_eStatus, EOrderStatus::Filled);
}

TEST_F(PaperStore, ChangeThatFailsBringsNoOlderQuoteBack) {
    for (const double ask : {10.00, 11.00}) {
        m_quotes.setQuote(kStock, {}, {{ask, 100}});
        ASSERT_TRUE(m_broker->onQuote(kStock).isSuccess());
    }
    {
        const CForeignWriter writer(m_folder.file(kPaperStoreName));
        EXPECT_FALSE(placeNow(*m_broker, stockCommand({buy(100, 9.00)}), 1).m_error.isSuccess());
    }
    place({buy(100, 10.50)});
    EXPECT_EQ(order(1).m_eStatus, EOrderStatus::Working);
}

TEST_F(PaperStore, EventsThatTheListenerRefusedComeAgainInOrderAndOnce) {
    m_bTakeEvents = false;
    place({buy(200, 10.00)});
    EXPECT_TRUE(m_events.empty());
    m_broker->deliverEvents();
    EXPECT_TRUE(m_events.empty());
    m_bTakeEvents = true;
    m_broker->deliverEvents();
    ASSERT_EQ(m_events.size(), 3u);
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(m_events[i].m_nNumber, static_cast<std::int64_t>(i) + 1);
    m_broker->deliverEvents();
    EXPECT_EQ(m_events.size(), 3u);
}

TEST_F(PaperStore, EventsThatTheListenerNeverSawComeAfterARestartAsTheyWere) {
    m_bTakeEvents = false;
    ASSERT_TRUE(placeNow(*m_broker, stockCommand({buy(300, 10.00)}), 5).m_error.isSuccess());
    m_bTakeEvents = true;
    reopen(1);
    ASSERT_EQ(m_events.size(), 2u) << "the listener had taken event 1";
    EXPECT_EQ(m_events[0].m_nNumber, 2);
    EXPECT_EQ(m_events[0].m_fill.m_nVolume, 200);
    EXPECT_EQ(m_events[0].m_fill.m_nPrice, 100000);
    EXPECT_EQ(m_events[1].m_order.m_eStatus, EOrderStatus::PartFilled);
    EXPECT_EQ(m_events[1].m_order.m_nFilled, 200);
    EXPECT_EQ(m_events[1].m_order.m_strAccount, "A1");
    EXPECT_EQ(m_events[1].m_nReference, 5);
}

TEST_F(PaperStore, EventsNumberOnAfterTheListenersLastWhenTheStoreIsNew) {
    m_broker.reset();
    removeStore();
    open(500);
    place({buy(200, 10.00)});
    EXPECT_EQ(m_events.at(0).m_nNumber, 501);
}

TEST_F(PaperStore, AccountsThatMakeNoSenseAreRefusedAtOpen) {
    const auto refusal = [this](const CAccountEntry& entry) {
        CPaperBroker broker(m_quotes, nullptr);
        return broker.open(m_folder.path(), {entry}, 0).errorMsg();
    };
    CAccountEntry entry;
    entry.key = "BAD";
    entry.funds = -1;
    EXPECT_EQ(refusal(entry), "account BAD: funds are negative or out of range");
    entry.funds = 1e300;
    EXPECT_EQ(refusal(entry), "account BAD: funds are negative or out of range");
    entry.funds = 0;
    entry.positions = {{"SH600000", EPositionSide::Long, 100, 200, 1.0}};
    EXPECT_EQ(refusal(entry), "account BAD: position SH600000 makes no sense");
}

TEST_F(PaperStore, FileThatIsNoStoreIsRefused) {
    const CDeskFolder folder;
    folder.append(kPaperStoreName, std::string(4096, 'x'));
    CPaperBroker broker(m_quotes, nullptr);
    const utils::KNError error = broker.open(folder.path(), {}, 0);
    EXPECT_EQ(error.errorId(), kPaperStoreFailed);
    EXPECT_NE(error.errorMsg().find("not a database"), std::string::npos) << error.errorMsg();
    EXPECT_FALSE(broker.startTradingDay("20260105").isSuccess());
}

TEST_F(PaperStore, WhatACallHasAnsweredOutlivesAKilledProcess) {
    m_broker.reset();
    int answers[2];
    ASSERT_EQ(::pipe(answers), 0);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        CPaperBroker broker(m_quotes, nullptr);
        int task = broker.open(m_folder.path(), deskAccounts(), 0).isSuccess() ? 1 : 0;
        while (task != 0) {
            task = placeNow(broker, stockCommand({buy(100, 9.50), buy(50, 9.50), buy(100, 10.00)})).m_nTask;
            (void)broker.onQuote(kStock);
            if (::write(answers[1], &task, sizeof task) != static_cast<ssize_t>(sizeof task)) break;
        }
        ::_exit(1);
    }
    ::close(answers[1]);
    int last = 0;
    for (int i = 0; i < 20; ++i)
        ASSERT_EQ(::read(answers[0], &last, sizeof last), static_cast<ssize_t>(sizeof last));
    ::kill(child, SIGKILL);
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status));
    for (int more = 0; ::read(answers[0], &more, sizeof more) == static_cast<ssize_t>(sizeof more);)
        last = more;
    ::close(answers[0]);

    open();
    ASSERT_GE(static_cast<int>(m_broker->tasks().size()), last);
    EXPECT_EQ(m_broker->orders().size(), 3 * m_broker->tasks().size())
        << "a command is there whole or not at all";
    CMoney frozen = 0;
    CMoney spent = 0;
    for (const CPaperOrder& each : m_broker->orders()) {
        frozen += each.m_nFrozen;
        spent += each.m_nFilledAmount;
    }
    EXPECT_EQ(funds().m_nFrozen, frozen);
    EXPECT_EQ(funds().m_nCash, toMoney(100000).value() - spent);
    std::int64_t number = 0;
    for (const CBrokerEvent& event : m_events)
        EXPECT_EQ(event.m_nNumber, ++number);
    EXPECT_GE(number, last * 3);
}
