#include "desk/paper/PaperStore.h"

#include "desk/paper/Sql.h"

#include <sqlite3.h>

#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <iterator>
#include <system_error>

namespace desk {
namespace {

constexpr mode_t kFileMode = 0600; // only the owner may read orders and accounts
constexpr const char* kLogSuffix = kStoreSuffixes[0];

// Each schema upgrades a store from the version that equals its index in kUpgrades to the next one. A schema
// must never change, because stores of that version exist.
constexpr const char* kFirstSchema = R"(
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
)";

// Version 1 knew only stocks. Positions were long and paid in full. Money was price times volume, without the
// instrument's multiplier. Only sales (operation 19) froze volume.
constexpr const char* kFamilySchema = R"(
    ALTER TABLE funds ADD COLUMN margin INTEGER NOT NULL DEFAULT 0;
    ALTER TABLE positions RENAME TO stock_positions;
    CREATE TABLE positions (account TEXT NOT NULL, stock TEXT NOT NULL, side INTEGER NOT NULL,
        volume INTEGER NOT NULL, sellable INTEGER NOT NULL, today INTEGER NOT NULL, frozen INTEGER NOT NULL,
        frozen_today INTEGER NOT NULL, cost INTEGER NOT NULL, paid INTEGER NOT NULL, margin INTEGER NOT NULL,
        multiplier INTEGER NOT NULL, PRIMARY KEY (account, stock, side));
    INSERT INTO positions SELECT account, stock, 0, volume, sellable, volume - sellable, frozen, 0, cost, cost, 0, 1
        FROM stock_positions;
    DROP TABLE stock_positions;
    CREATE TABLE debts (account TEXT NOT NULL, stock TEXT NOT NULL, volume INTEGER NOT NULL,
        amount INTEGER NOT NULL, to_return INTEGER NOT NULL, reserved INTEGER NOT NULL, claimed INTEGER NOT NULL,
        multiplier INTEGER NOT NULL, PRIMARY KEY (account, stock));
    ALTER TABLE orders ADD COLUMN family INTEGER NOT NULL DEFAULT 1;
    ALTER TABLE orders ADD COLUMN multiplier INTEGER NOT NULL DEFAULT 1;
    ALTER TABLE orders ADD COLUMN margin_rate INTEGER NOT NULL DEFAULT 0;
    ALTER TABLE orders ADD COLUMN close_earlier INTEGER NOT NULL DEFAULT 0;
    ALTER TABLE orders ADD COLUMN close_today INTEGER NOT NULL DEFAULT 0;
    ALTER TABLE orders ADD COLUMN credit INTEGER NOT NULL DEFAULT 0;
    ALTER TABLE orders ADD COLUMN proceeds INTEGER NOT NULL DEFAULT 0;
    UPDATE orders SET close_earlier = volume - filled WHERE operation = 19 AND status IN (0, 1);
    PRAGMA user_version = 2;
)";

constexpr const char* kUpgrades[] = {kFirstSchema, kFamilySchema};
constexpr int kSchemaVersion = static_cast<int>(std::size(kUpgrades));

/// Creates the file before SQLite does, readable only by its owner. SQLite gives its side files the same
/// mode.
void makeFile(const std::string& path) {
    const int descriptor = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, kFileMode);
    if (descriptor >= 0) ::close(descriptor);
}

int versionOf(sqlite3* database) {
    CSqlStatement query(database, "PRAGMA user_version");
    query.step();
    return query.number(0);
}

/// Reads all pages. Otherwise a damaged page that is not read at the start could make a later change fail, or
/// wrong data could be used as the account's state.
void checkPages(sqlite3* database) {
    // Closing a store writes its log into it. A damaged store must stay unchanged, so this is switched off
    // until the check has succeeded.
    sqlite3_db_config(database, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    CSqlStatement check(database, "PRAGMA integrity_check(1)");
    const std::string found = check.step() ? check.text(0) : "ok";
    if (found != "ok") throw CSqlError(found, ESqlFailure::Damaged);
    sqlite3_db_config(database, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 0, nullptr);
}

constexpr const char* kCloseOtherProgram =
    "; another program has paper.db open for writing: close that program";

/// What the user can do about a store that cannot be opened; empty for other failures. The text names the
/// log, because SQLite would replay an old log over another copy of the store, and the books would be wrong.
std::string remedyAtOpen(ESqlFailure failure) {
    switch (failure) {
    case ESqlFailure::Damaged:
        return ". The file is damaged, and the desk has changed nothing. Stop the desk. Move paper.db, "
               "paper.db-wal and paper.db-shm away. Then either put back a copy of paper.db that was made "
               "while the desk was off (it knows nothing of later fills and cancels; its waiting orders "
               "trade again), or start without one: the desk then begins anew with the folder's funds and "
               "positions, and the journal still shows what was traded";
    case ESqlFailure::Locked:
        return kCloseOtherProgram;
    case ESqlFailure::Other:
        break;
    }
    return {};
}

/// What the user can do about a store that fails while the desk runs. The text is short because each failed
/// command shows it.
std::string remedyAtSave(ESqlFailure failure) {
    switch (failure) {
    case ESqlFailure::Damaged:
        return "; stop the desk first; its next start says what to do";
    case ESqlFailure::Locked:
        return kCloseOtherProgram;
    case ESqlFailure::Other:
        break;
    }
    return {};
}

/// Whether the file exists and has no bytes.
bool isEmptyFile(const std::string& path) {
    std::error_code missing;
    return std::filesystem::file_size(path, missing) == 0 && !missing;
}

/// SQLite treats an empty file as a new store and deletes its log at the first read, even if the database is
/// opened for reading only. So an empty file is refused if the journal knows earlier events or if a log
/// exists. A log without its store is refused too.
void checkIsWhole(const std::string& path, bool isKnown) {
    std::error_code missing, noLog;
    const std::uintmax_t size = std::filesystem::file_size(path, missing);
    if (!missing && size > 0) return;
    const std::uintmax_t log = std::filesystem::file_size(path + kLogSuffix, noLog);
    const bool hasLog = !noLog && log > 0;
    if (!missing && (isKnown || hasLog)) throw CSqlError("the file is empty", ESqlFailure::Damaged);
    if (hasLog) throw CSqlError("the file is missing, but its log is there", ESqlFailure::Damaged);
}

/// If the store needs an upgrade, the transaction of the upgrade is left open. The first save commits it.
CSqlDatabase openStore(const std::string& path, bool isKnown) {
    checkIsWhole(path, isKnown);
    makeFile(path);
    CSqlDatabase database = openDatabase(path);
    checkPages(database.get());
    execute(database.get(), "PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL;");
    const int version = versionOf(database.get());
    if (version < 0 || version > kSchemaVersion) throw CSqlError("another version of the desk made it");
    if (version != kSchemaVersion) execute(database.get(), "BEGIN IMMEDIATE");
    for (int i = version; i < kSchemaVersion; ++i)
        execute(database.get(), kUpgrades[i]);
    return database;
}

void loadFunds(sqlite3* database, CPaperBook& book) {
    CSqlStatement rows(database, "SELECT account, cash, frozen, margin FROM funds");
    while (rows.step())
        book.m_funds.edit(rows.text(0)) = {rows.text(0), rows.integer(1), rows.integer(2), rows.integer(3)};
}

void loadPositions(sqlite3* database, CPaperBook& book) {
    CSqlStatement rows(database, "SELECT account, stock, side, volume, sellable, today, frozen, "
                                 "frozen_today, cost, paid, margin, multiplier FROM positions");
    while (rows.step()) {
        const auto side = static_cast<EPositionSide>(rows.number(2));
        book.m_positions.edit({rows.text(0), rows.text(1), side}) = {
            rows.text(0),    rows.text(1),     side,
            rows.integer(3), rows.integer(4),  rows.integer(5),
            rows.integer(6), rows.integer(7),  rows.integer(8),
            rows.integer(9), rows.integer(10), rows.number(11)};
    }
}

void loadDebts(sqlite3* database, CPaperBook& book) {
    CSqlStatement rows(
        database,
        "SELECT account, stock, volume, amount, to_return, reserved, claimed, multiplier FROM debts");
    while (rows.step()) {
        book.m_debts.edit({rows.text(0), rows.text(1)}) = {rows.text(0),    rows.text(1),    rows.integer(2),
                                                           rows.integer(3), rows.integer(4), rows.integer(5),
                                                           rows.integer(6), rows.number(7)};
    }
}

void loadTasks(sqlite3* database, CPaperBook& book) {
    CSqlStatement rows(database, "SELECT id, reference, orders, remark, time FROM tasks ORDER BY id");
    while (rows.step()) {
        const int id = rows.number(0);
        book.m_tasks.edit(id) = {id, rows.integer(1), rows.number(2), rows.text(3), rows.text(4)};
        book.m_counters.m_nLastTask = id;
    }
}

void loadOrders(sqlite3* database, CPaperBook& book) {
    CSqlStatement rows(
        database, "SELECT id, task, account, stock, operation, price_type, market, price, volume, filled, "
                  "filled_amount, frozen, status, reason, time, family, multiplier, margin_rate, "
                  "close_earlier, close_today, credit, proceeds FROM orders ORDER BY id");
    while (rows.step()) {
        const int id = rows.number(0);
        book.m_orders.edit(id) = {id,
                                  rows.number(1),
                                  rows.text(2),
                                  rows.text(3),
                                  static_cast<TC::EOperationType>(rows.number(4)),
                                  static_cast<TC::EPriceType>(rows.number(5)),
                                  rows.number(6) != 0,
                                  rows.integer(7),
                                  rows.number(8),
                                  rows.number(9),
                                  rows.integer(10),
                                  rows.integer(11),
                                  static_cast<EOrderStatus>(rows.number(12)),
                                  rows.text(13),
                                  rows.text(14),
                                  static_cast<TC::EQdTraderType>(rows.number(15)),
                                  rows.number(16),
                                  rows.number(17),
                                  rows.number(18),
                                  rows.number(19),
                                  rows.integer(20),
                                  rows.integer(21)};
        book.m_counters.m_nLastOrder = id;
    }
}

void loadFills(sqlite3* database, CPaperBook& book) {
    CSqlStatement rows(database, "SELECT id, order_id, price, volume, time FROM fills ORDER BY id");
    while (rows.step()) {
        const int id = rows.number(0);
        book.m_fills.edit(id) = {id, rows.number(1), rows.integer(2), rows.number(3), rows.text(4)};
        book.m_counters.m_nLastFill = id;
    }
}

void loadCounters(sqlite3* database, CPaperBook& book) {
    CSqlStatement row(database, "SELECT last_event, trading_day FROM desk");
    if (!row.step()) return;
    book.m_counters.m_nLastEvent = row.integer(0);
    book.m_counters.m_strTradingDay = row.text(1);
}

/// An event row has only the fields of an order that change. The other fields are read from the order.
std::vector<CBrokerEvent> loadEvents(sqlite3* database, const CPaperBook& book) {
    std::vector<CBrokerEvent> events;
    CSqlStatement rows(database,
                       "SELECT number, order_id, fill_id, filled, filled_amount, status, reason, time "
                       "FROM events ORDER BY number");
    while (rows.step()) {
        const CPaperOrder* order = book.m_orders.find(rows.number(1));
        if (order == nullptr) continue;
        CBrokerEvent& event = events.emplace_back();
        event.m_nNumber = rows.integer(0);
        event.m_order = *order;
        if (const CPaperFill* fill = book.m_fills.find(rows.number(2))) event.m_fill = *fill;
        if (const CPaperTask* task = book.m_tasks.find(order->m_nTask))
            event.m_nReference = task->m_nReference;
        event.m_order.m_nFilled = rows.number(3);
        event.m_order.m_nFilledAmount = rows.integer(4);
        event.m_order.m_eStatus = static_cast<EOrderStatus>(rows.number(5));
        event.m_order.m_strReason = rows.text(6);
        event.m_order.m_strTime = rows.text(7);
    }
    return events;
}

utils::KNError storeError(const std::string& what) {
    return {kPaperStoreFailed, "the paper broker's store failed: " + what};
}

std::set<std::string> accountsOf(sqlite3* database) {
    std::set<std::string> accounts;
    if (versionOf(database) == 0) return accounts; // created, but never saved
    CSqlStatement rows(database, "SELECT account FROM funds");
    while (rows.step())
        accounts.insert(rows.text(0));
    return accounts;
}

std::string storePath(const std::string& folder) {
    return folder + '/' + kPaperStoreName;
}

} // namespace

bool hasPaperStore(const std::string& folder) {
    std::error_code unreadable;
    return std::filesystem::exists(storePath(folder), unreadable) || unreadable;
}

std::optional<std::set<std::string>> storedAccounts(const std::string& folder) {
    const std::string path = storePath(folder);
    try {
        checkIsWhole(path, false);
        if (!hasPaperStore(folder) || isEmptyFile(path)) return std::set<std::string>();
        return accountsOf(openDatabaseToRead(path).get());
    } catch (const CSqlError&) {
        return {};
    }
}

/// The database and the statements that every change uses.
struct CPaperStore::CConnection {
    explicit CConnection(CSqlDatabase opened) : database(std::move(opened)) {}

    bool isInTransaction() const { return sqlite3_get_autocommit(raw) == 0; }
    void write(const CPaperBook& book, std::int64_t deliveredEvent);
    void writeOrders(const CPaperBook& book);
    void writeEvents(const CPaperBook& book, std::int64_t deliveredEvent);

    CSqlDatabase database;
    sqlite3* raw = database.get();
    CSqlStatement begin{raw, "BEGIN IMMEDIATE"};
    CSqlStatement commit{raw, "COMMIT"};
    CSqlStatement counters{raw, "INSERT OR REPLACE INTO desk VALUES (1, ?, ?)"};
    CSqlStatement funds{raw, "INSERT OR REPLACE INTO funds VALUES (?, ?, ?, ?)"};
    CSqlStatement positions{raw,
                            "INSERT OR REPLACE INTO positions VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"};
    CSqlStatement debts{raw, "INSERT OR REPLACE INTO debts VALUES (?, ?, ?, ?, ?, ?, ?, ?)"};
    CSqlStatement tasks{raw, "INSERT OR REPLACE INTO tasks VALUES (?, ?, ?, ?, ?)"};
    CSqlStatement orders{raw, "INSERT OR REPLACE INTO orders VALUES "
                              "(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"};
    CSqlStatement fills{raw, "INSERT OR REPLACE INTO fills VALUES (?, ?, ?, ?, ?)"};
    CSqlStatement events{raw, "INSERT OR REPLACE INTO events VALUES (?, ?, ?, ?, ?, ?, ?, ?)"};
    CSqlStatement dropEvents{raw, "DELETE FROM events WHERE number <= ?"};
};

CPaperStore::CPaperStore() = default;
CPaperStore::~CPaperStore() = default;

utils::KNError CPaperStore::open(const std::string& folder, CPaperBook& book,
                                 std::vector<CBrokerEvent>& events, bool isKnown) {
    const std::string path = storePath(folder);
    try {
        auto connection = std::make_unique<CConnection>(openStore(path, isKnown));
        sqlite3* database = connection->raw;
        loadCounters(database, book);
        loadFunds(database, book);
        loadPositions(database, book);
        loadDebts(database, book);
        loadTasks(database, book);
        loadOrders(database, book);
        loadFills(database, book);
        events = loadEvents(database, book);
        book.keep();
        m_connection = std::move(connection);
        return {};
    } catch (const CSqlError& error) {
        book.rollBack();
        return {kPaperStoreFailed, "cannot use the paper broker's store " + path + ": " + error.what() +
                                       remedyAtOpen(error.m_eFailure)};
    }
}

void CPaperStore::close() {
    m_connection.reset();
}

utils::KNError CPaperStore::save(const CPaperBook& book, std::int64_t deliveredEvent) {
    if (!m_connection) return storeError("it is not open");
    try {
        if (!m_connection->isInTransaction()) m_connection->begin.run();
        m_connection->write(book, deliveredEvent);
        m_connection->commit.run();
        waitForLocks(m_connection->raw, true);
        return {};
    } catch (const CSqlError& error) {
        const utils::KNError result = storeError(error.what() + remedyAtSave(error.m_eFailure));
        // If one wait for the lock has failed, later orders must not wait for it too.
        if (error.m_eFailure == ESqlFailure::Locked) waitForLocks(m_connection->raw, false);
        // SQLite itself rolls back after some failures.
        if (m_connection->isInTransaction())
            sqlite3_exec(m_connection->raw, "ROLLBACK", nullptr, nullptr, nullptr);
        return result;
    }
}

void CPaperStore::CConnection::write(const CPaperBook& book, std::int64_t deliveredEvent) {
    counters.run(book.m_counters.m_nLastEvent, book.m_counters.m_strTradingDay);
    book.m_funds.visitChanged([this](const CPaperFunds*, const CPaperFunds& row) {
        funds.run(row.m_strAccount, row.m_nCash, row.m_nFrozen, row.m_nMargin);
    });
    book.m_positions.visitChanged([this](const CPaperPosition*, const CPaperPosition& row) {
        positions.run(row.m_strAccount, row.m_strStock, static_cast<int>(row.m_eSide), row.m_nVolume,
                      row.m_nSellable, row.m_nToday, row.m_nFrozen, row.m_nFrozenToday, row.m_nCost,
                      row.m_nPaid, row.m_nMargin, row.m_nMultiplier);
    });
    book.m_debts.visitChanged([this](const CPaperDebt*, const CPaperDebt& row) {
        debts.run(row.m_strAccount, row.m_strStock, row.m_nVolume, row.m_nAmount, row.m_nReturning,
                  row.m_nReserved, row.m_nClaimed, row.m_nMultiplier);
    });
    book.m_tasks.visitChanged([this](const CPaperTask*, const CPaperTask& row) {
        tasks.run(row.m_nId, row.m_nReference, row.m_nOrders, row.m_strRemark, row.m_strTime);
    });
    writeOrders(book);
    book.m_fills.visitChanged([this](const CPaperFill*, const CPaperFill& row) {
        fills.run(row.m_nId, row.m_nOrder, row.m_nPrice, row.m_nVolume, row.m_strTime);
    });
    writeEvents(book, deliveredEvent);
}

void CPaperStore::CConnection::writeOrders(const CPaperBook& book) {
    book.m_orders.visitChanged([this](const CPaperOrder*, const CPaperOrder& row) {
        orders.run(row.m_nId, row.m_nTask, row.m_strAccount, row.m_strStock,
                   static_cast<int>(row.m_eOperation), static_cast<int>(row.m_ePriceType), row.m_bMarket,
                   row.m_nPrice, row.m_nVolume, row.m_nFilled, row.m_nFilledAmount, row.m_nFrozen,
                   static_cast<int>(row.m_eStatus), row.m_strReason, row.m_strTime,
                   static_cast<int>(row.m_eFamily), row.m_nMultiplier, row.m_nMarginRate, row.m_nCloseEarlier,
                   row.m_nCloseToday, row.m_nCredit, row.m_nProceeds);
    });
}

void CPaperStore::CConnection::writeEvents(const CPaperBook& book, std::int64_t deliveredEvent) {
    dropEvents.run(deliveredEvent);
    for (const CBrokerEvent& event : book.m_events) {
        const CPaperOrder& order = event.m_order;
        events.run(event.m_nNumber, order.m_nId, event.m_fill.m_nId, order.m_nFilled, order.m_nFilledAmount,
                   static_cast<int>(order.m_eStatus), order.m_strReason, order.m_strTime);
    }
}

} // namespace desk
