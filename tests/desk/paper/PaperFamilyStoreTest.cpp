#include "tests/desk/paper/FamilyDesk.h"

#include <sqlite3.h>

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

using namespace desk;
using namespace desk::test;

namespace {

constexpr EFamily kFuture = EFamily::FutureSpeculation;

class PaperFamilyStore : public FamilyDesk {
protected:
    template<typename... A>
    static std::string join(const std::string& head, A... numbers) {
        std::string text = head;
        ((text += ' ' + std::to_string(numbers)), ...);
        return text + '\n';
    }

    /// What the families added to the books, as one text.
    std::string books() const {
        std::string text;
        for (const CPaperFunds& f : m_broker->funds())
            text += join(f.m_strAccount, f.m_nCash, f.m_nFrozen, f.m_nMargin);
        for (const CPaperPosition& p : m_broker->positions()) {
            text +=
                join(p.m_strAccount + p.m_strStock, static_cast<int>(p.m_eSide), p.m_nVolume, p.m_nSellable,
                     p.m_nToday, p.m_nFrozen, p.m_nFrozenToday, p.m_nCost, p.m_nPaid, p.m_nMargin);
        }
        for (const CPaperDebt& d : m_broker->debts()) {
            text += join(d.m_strAccount + ':' + d.m_strStock, d.m_nVolume, d.m_nAmount, d.m_nReturning,
                         d.m_nReserved);
        }
        for (const CPaperOrder& o : m_broker->orders()) {
            text += join(o.m_strAccount + o.m_strStock, o.m_nId, static_cast<int>(o.m_eFamily),
                         static_cast<int>(o.m_eOperation), o.m_nVolume, o.m_nFilled, o.m_nFrozen,
                         o.m_nMultiplier, o.m_nMarginRate, o.m_nCloseEarlier, o.m_nCloseToday, o.m_nCredit);
        }
        return text;
    }

    void tradeEveryFamily() {
        orderOf(kFuture, 0, 5, 100);
        orderOf(kFuture, 3, 2, 100);
        orderOf(kFuture, 11, 8, 150);
        orderOf(EFamily::Option, 34, 2, 0.1);
        orderOf(EFamily::Option, 35, 1, 0.05);
        orderOf(EFamily::Credit, 20, 100, 10);
        orderOf(EFamily::Credit, 20, 100, 9);
        orderOf(EFamily::Credit, 21, 100, 10);
        orderOf(EFamily::Credit, 22, 50, 9);
    }

    void runSql(const std::string& sql) const {
        sqlite3* database = nullptr;
        ASSERT_EQ(sqlite3_open(m_folder.file(kPaperStoreName).c_str(), &database), SQLITE_OK);
        EXPECT_EQ(sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
            << sqlite3_errmsg(database);
        sqlite3_close(database);
    }

    void removeStore() {
        m_broker.reset();
        for (const char* name : {"paper.db", "paper.db-wal", "paper.db-shm"})
            std::filesystem::remove(m_folder.file(name));
    }
};

/// A store as the desk made it while it knew stocks alone: A1 with a position and two waiting orders.
constexpr const char* kStockStore = R"(
    CREATE TABLE desk (only INTEGER PRIMARY KEY CHECK (only = 1), last_event INTEGER NOT NULL, trading_day TEXT NOT NULL);
    CREATE TABLE funds (account TEXT PRIMARY KEY, cash INTEGER NOT NULL, frozen INTEGER NOT NULL);
    CREATE TABLE positions (account TEXT NOT NULL, stock TEXT NOT NULL, volume INTEGER NOT NULL,
        sellable INTEGER NOT NULL, frozen INTEGER NOT NULL, cost INTEGER NOT NULL, PRIMARY KEY (account, stock));
    CREATE TABLE tasks (id INTEGER PRIMARY KEY, reference INTEGER NOT NULL, orders INTEGER NOT NULL,
        remark TEXT NOT NULL, time TEXT NOT NULL);
    CREATE TABLE orders (id INTEGER PRIMARY KEY, task INTEGER NOT NULL, account TEXT NOT NULL, stock TEXT NOT NULL,
        operation INTEGER NOT NULL, price_type INTEGER NOT NULL, market INTEGER NOT NULL, price INTEGER NOT NULL,
        volume INTEGER NOT NULL, filled INTEGER NOT NULL, filled_amount INTEGER NOT NULL, frozen INTEGER NOT NULL,
        status INTEGER NOT NULL, reason TEXT NOT NULL, time TEXT NOT NULL);
    CREATE TABLE fills (id INTEGER PRIMARY KEY, order_id INTEGER NOT NULL, price INTEGER NOT NULL,
        volume INTEGER NOT NULL, time TEXT NOT NULL);
    CREATE TABLE events (number INTEGER PRIMARY KEY, order_id INTEGER NOT NULL, fill_id INTEGER NOT NULL,
        filled INTEGER NOT NULL, filled_amount INTEGER NOT NULL, status INTEGER NOT NULL, reason TEXT NOT NULL,
        time TEXT NOT NULL);
    PRAGMA user_version = 1;
    INSERT INTO desk VALUES (1, 2, '20260105');
    INSERT INTO funds VALUES ('A1', 1000000000, 9500000);
    INSERT INTO positions VALUES ('A1', 'SH600000', 1250, 1050, 300, 100000000);
    INSERT INTO tasks VALUES (1, 0, 3, '', '');
    INSERT INTO orders VALUES (1, 1, 'A1', 'SH600000', 18, 11, 0, 95000, 100, 0, 0, 9500000, 0, '', '');
    INSERT INTO orders VALUES (2, 1, 'A1', 'SH600000', 19, 11, 0, 105000, 400, 100, 10500000, 0, 1, '', '');
    INSERT INTO orders VALUES (3, 1, 'A1', 'SH600000', 19, 11, 0, 105000, 500, 0, 0, 0, 3, '', '');
)";

} // namespace

TEST_F(PaperFamilyStore, BooksOfEveryFamilyAreThereAfterARestart) {
    tradeEveryFamily();
    const std::string before = books();
    openFamilies();
    EXPECT_EQ(books(), before);
    offer(kFuture, 150);
    EXPECT_EQ(longOf(kFuture), 0) << "what waited trades on";
    EXPECT_EQ(shortOf(kFuture), 5);
    EXPECT_EQ(frozen(kFuture), 0);
    for (int task = 1; task <= 9; ++task)
        (void)m_broker->cancelTask(task, "");
    for (const CPaperFunds& each : m_broker->funds())
        EXPECT_EQ(each.m_nFrozen, 0) << each.m_strAccount;
}

TEST_F(PaperFamilyStore, BooksAddUpAfterTheProcessWasKilled) {
    m_broker.reset();
    int answers[2];
    ASSERT_EQ(::pipe(answers), 0);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        openFamilies();
        for (char answer = 1; ::write(answers[1], &answer, 1) == 1;)
            tradeEveryFamily();
        ::_exit(1);
    }
    ::close(answers[1]);
    char answer = 0;
    for (int i = 0; i < 5; ++i)
        ASSERT_EQ(::read(answers[0], &answer, 1), 1);
    ::kill(child, SIGKILL);
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status));
    ::close(answers[0]);

    openFamilies();
    CMoney held = 0;
    for (const CPaperFunds& each : m_broker->funds())
        held += each.m_nMargin + each.m_nFrozen;
    for (const CPaperPosition& each : m_broker->positions())
        held -= each.m_nMargin;
    for (const CPaperDebt& each : m_broker->debts())
        held -= each.m_strStock.empty() ? 0 : each.m_nAmount;
    for (const CPaperOrder& each : m_broker->orders())
        held -= each.m_nFrozen;
    EXPECT_GE(m_broker->orders().size(), 36u);
    EXPECT_EQ(held, 0);
}

TEST_F(PaperFamilyStore, CommandThatCannotBeStoredLeavesDebtsAndMarginsAsTheyWere) {
    tradeEveryFamily();
    const std::string before = books();
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(m_folder.file(kPaperStoreName).c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
    int taskId = 0;
    TC::COrderComandParam command = stockCommand({recordOf(EFamily::Credit, 20, 50, 10)});
    command.m_eTraderType = EFamily::Credit;
    EXPECT_EQ(m_broker->placeCommand(command, 0, taskId).errorId(), kPaperStoreFailed);
    sqlite3_close(other);
    EXPECT_EQ(books(), before);
}

TEST_F(PaperFamilyStore, StoreOfStocksAloneIsBroughtUpToDate) {
    removeStore();
    runSql(kStockStore);
    open(2);
    const CPaperPosition held = position();
    EXPECT_EQ(held.m_eSide, EPositionSide::Long);
    EXPECT_EQ(held.m_nToday, 200);
    EXPECT_EQ(held.m_nPaid, held.m_nCost);
    EXPECT_EQ(order(2).m_nCloseEarlier, 300);
    EXPECT_EQ(order(3).m_nCloseEarlier, 0);
    m_quotes.setQuote(kStock, {{10.6, 1000}}, {});
    ASSERT_TRUE(m_broker->onQuote(kStock).isSuccess());
    EXPECT_EQ(order(2).m_eStatus, EOrderStatus::Filled);
    EXPECT_EQ(position().m_nVolume, 950);
    EXPECT_EQ(position().m_nFrozen, 0);
    EXPECT_EQ(funds().m_nCash, toMoney(100000 + 300 * 10.6).value());
    ASSERT_TRUE(m_broker->cancelTask(1, "").isSuccess());
    EXPECT_EQ(funds().m_nFrozen, 0);
    reopen(m_events.back().m_nNumber);
    EXPECT_EQ(position().m_nVolume, 950);
}

TEST_F(PaperFamilyStore, StoreOfALaterVersionIsRefused) {
    removeStore();
    runSql("PRAGMA user_version = 3;");
    CPaperBroker broker(m_quotes, nullptr);
    const std::string error = broker.open(m_folder.path(), {}, 0).errorMsg();
    EXPECT_NE(error.find("another version of the desk made it"), std::string::npos) << error;
}
