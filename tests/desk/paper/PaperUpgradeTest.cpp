#include "tests/desk/paper/StoredDesk.h"

using namespace desk;
using namespace desk::test;

namespace {

class PaperUpgrade : public StoredDesk {
protected:
    /// The reason why the store cannot be used, or an empty text.
    std::string refusal(const std::vector<CAccountEntry>& accounts = familyAccounts()) {
        m_broker.reset();
        CPaperBroker broker(m_quotes, nullptr);
        return broker.open(m_folder.path(), accounts, 0).errorMsg();
    }

    int storeVersion() const {
        sqlite3* database = nullptr;
        EXPECT_EQ(sqlite3_open(m_folder.file(kPaperStoreName).c_str(), &database), SQLITE_OK);
        int version = -1;
        const auto read = [](void* out, int, char** cells, char**) {
            *static_cast<int*>(out) = std::stoi(cells[0]);
            return 0;
        };
        sqlite3_exec(database, "PRAGMA user_version", read, &version, nullptr);
        sqlite3_close(database);
        return version;
    }

    void setMultiplier(EFamily family, int multiplier) {
        CInstrumentEntry entry = *m_quotes.instrument(keyOf(family));
        entry.multiplier = multiplier;
        m_quotes.addInstrument(entry);
    }

    static CAccountEntry accountWith(EFamily family, const CPositionEntry& position) {
        CAccountEntry entry;
        entry.key = rowOf(family).m_pszAccount;
        entry.broker = rowOf(family).m_eBroker;
        entry.funds = kFunds;
        entry.positions = {position};
        return entry;
    }
};

/// A store in the format of the time when the desk only knew stocks: A1 has a position and two waiting
/// orders.
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

const std::string kPaidOtherwise = "was not paid for as instruments of its kind are; take the account out of "
                                   "the folder, and its books stay as "
                                   "they are; removing paper.db deletes the books of all accounts";

} // namespace

TEST_F(PaperUpgrade, StoreOfStocksAloneIsBroughtUpToDate) {
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

TEST_F(PaperUpgrade, StoreOfALaterVersionIsRefused) {
    removeStore();
    runSql("PRAGMA user_version = 3;");
    CPaperBroker broker(m_quotes, nullptr);
    const std::string error = broker.open(m_folder.path(), {}, 0).errorMsg();
    EXPECT_NE(error.find("another version of the desk made it"), std::string::npos) << error;
}

TEST_F(PaperUpgrade, FutureOfTheFirstStoreIsRefusedAndTheStoreLeftAlone) {
    removeStore();
    runSql(kStockStore);
    runSql("INSERT INTO funds VALUES ('FU', 1000000000, 0);"
           "INSERT INTO positions VALUES ('FU', 'SFrb2605', 4, 4, 0, 158000000);");
    EXPECT_EQ(refusal(), "account FU: position SFrb2605 " + kPaidOtherwise);
    EXPECT_EQ(storeVersion(), 1);
    EXPECT_EQ(refusal({}), "") << "without the account nobody can trade it";
    EXPECT_EQ(storeVersion(), 2);
    EXPECT_EQ(refusal(), "account FU: position SFrb2605 " + kPaidOtherwise) << "nor later";
}

TEST_F(PaperUpgrade, FirstStoreBookedEverythingWithAMultiplierOfOne) {
    removeStore();
    runSql(kStockStore);
    // 3 lots at 0.1, equal to the position in the folder.
    runSql("INSERT INTO funds VALUES ('OP', 1000000000, 0);"
           "INSERT INTO positions VALUES ('OP', 'SHO10000001', 3, 3, 0, 3000);");
    const CAccountEntry account =
        accountWith(EFamily::Option, {"SHO10000001", EPositionSide::Long, 3, 3, 0.1});
    const int multiplier = m_quotes.instrument("SHO10000001")->multiplier;
    EXPECT_EQ(refusal({account}),
              "account OP: position SHO10000001 was opened with multiplier 1, but the instrument has " +
                  std::to_string(multiplier) +
                  "; set it back in instruments.csv until nothing of it is held");
    EXPECT_EQ(storeVersion(), 1);
    setMultiplier(EFamily::Option, 1);
    EXPECT_EQ(refusal({account}), "");
    EXPECT_EQ(storeVersion(), 2);
}

TEST_F(PaperUpgrade, PositionThatIsNotPaidAsItsKindIsRefused) {
    orderOf(kFuture, 0, 2, 100);
    m_broker.reset();
    runSql("UPDATE positions SET paid = cost WHERE account = 'FU';");
    EXPECT_EQ(refusal(), "account FU: position SFrb2605 " + kPaidOtherwise);
}

TEST_F(PaperUpgrade, MultiplierThatHasChangedUnderAPositionIsRefused) {
    orderOf(kFuture, 0, 2, 100);
    setMultiplier(kFuture, 300);
    EXPECT_EQ(refusal(), "account FU: position SFrb2605 was opened with multiplier 10, but the "
                         "instrument has 300; set it back in instruments.csv until nothing of it is held");
    setMultiplier(kFuture, 10);
    openFamilies();
    EXPECT_EQ(outcomeOf(kFuture, 2, 2, 100), "filled");
    setMultiplier(kFuture, 300);
    openFamilies();
    EXPECT_EQ(outcomeOf(kFuture, 0, 1, 100), "filled");
    EXPECT_EQ(positionOf(kFuture).m_nMultiplier, 300);
}

TEST_F(PaperUpgrade, MultiplierThatHasChangedUnderAWaitingOrderIsRefused) {
    orderOf(kFuture, 0, 2, 90);
    setMultiplier(kFuture, 300);
    EXPECT_EQ(refusal(), "account FU: waiting order 1 of SFrb2605 was placed with multiplier 10, but the "
                         "instrument has 300; set it back in instruments.csv until nothing of it is held");
}

TEST_F(PaperUpgrade, MultiplierThatChangesWhileTheDeskRunsBooksNothing) {
    orderOf(kFuture, 0, 2, 100);
    orderOf(kFuture, 2, 1, 101);
    setMultiplier(kFuture, 300);
    for (const int operation : {0, 2, 5, 11}) {
        EXPECT_EQ(outcomeOf(kFuture, operation, 1, 100),
                  "the position was opened with multiplier 10, the instrument has 300");
    }
    offer(kFuture, 101);
    EXPECT_EQ(cash(kFuture), kFunds + 10) << "the waiting order closes as the position was opened";
}

TEST_F(PaperUpgrade, MultiplierThatHasChangedUnderSharesOwedIsRefused) {
    setMultiplier(kCredit, 10);
    openFamilies();
    ASSERT_EQ(outcomeOf(kCredit, 21, 10, 10), "filled");
    const auto multiplierOwed = [this] { return m_broker->debts().at(0).m_nMultiplier; };
    EXPECT_EQ(multiplierOwed(), 10);
    setMultiplier(kCredit, 1);
    EXPECT_EQ(refusal(), "account CR: debt of SH600001 was sold with multiplier 10, but the instrument "
                         "has 1; set it back in instruments.csv until nothing of it is owed");
    setMultiplier(kCredit, 10);
    openFamilies();
    EXPECT_EQ(multiplierOwed(), 10);
    ASSERT_EQ(outcomeOf(kCredit, 22, 10, 10), "filled");
    EXPECT_EQ(cash(kCredit), kFunds);
    setMultiplier(kCredit, 1);
    openFamilies();
    ASSERT_EQ(outcomeOf(kCredit, 21, 100, 10), "filled");
    EXPECT_EQ(multiplierOwed(), 1);
}

TEST_F(PaperUpgrade, MultiplierThatChangesUnderSharesOwedRejectsWhatMovesThem) {
    outcomeOf(kCredit, 18, 100, 10);
    startDay("20260105");
    startDay("20260106");
    ASSERT_EQ(outcomeOf(kCredit, 21, 100, 10), "filled");
    ASSERT_EQ(outcomeOf(kCredit, 19, 100, 10), "filled");
    setMultiplier(kCredit, 10);
    for (const int operation : {21, 22, 23}) {
        EXPECT_EQ(outcomeOf(kCredit, operation, 10, 10),
                  "the shares owed were sold with multiplier 1, the instrument has 10");
    }
    EXPECT_EQ(outcomeOf(kCredit, 18, 10, 10), "filled") << "its own";
}
