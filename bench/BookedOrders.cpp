#include "bench/BookedOrders.h"

#include "bench/BenchHost.h"

#include <sqlite3.h>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace bench {
namespace {

using CSeconds = std::chrono::duration<double>;

constexpr const char* kTables[] = {"tasks", "orders"};
constexpr std::size_t kRowsOfCommand[] = {1, CDeskFolder::kAccounts};

struct CSqlFree {
    void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    void operator()(sqlite3_value* value) const { sqlite3_value_free(value); }
};
using CDatabase = std::unique_ptr<sqlite3, CSqlFree>;
using CStatement = std::unique_ptr<sqlite3_stmt, CSqlFree>;

void check(sqlite3* database, bool isDone) {
    if (!isDone) throw std::runtime_error(std::string("the database fails: ") + sqlite3_errmsg(database));
}

CDatabase openDatabase(const std::string& path) {
    sqlite3* raw = nullptr;
    const int result = sqlite3_open(path.c_str(), &raw);
    CDatabase database(raw);
    check(raw, result == SQLITE_OK);
    return database;
}

void execute(sqlite3* database, const std::string& sql) {
    check(database, sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK);
}

CStatement prepare(sqlite3* database, const std::string& sql) {
    sqlite3_stmt* raw = nullptr;
    check(database, sqlite3_prepare_v2(database, sql.c_str(), -1, &raw, nullptr) == SQLITE_OK);
    return CStatement(raw);
}

std::string readText(sqlite3* database, const std::string& query) {
    const CStatement statement = prepare(database, query);
    check(database, sqlite3_step(statement.get()) == SQLITE_ROW);
    return reinterpret_cast<const char*>(sqlite3_column_text(statement.get(), 0));
}

/// All rows of one table, in the order of their ids.
struct CRows {
    CRows(sqlite3* database, const std::string& name)
        : schema(readText(database, "SELECT sql FROM sqlite_master WHERE name = '" + name + "'")) {
        const CStatement query = prepare(database, "SELECT * FROM " + name + " ORDER BY id");
        columns = sqlite3_column_count(query.get());
        while (sqlite3_step(query.get()) == SQLITE_ROW) {
            for (int i = 0; i < columns; ++i)
                values.emplace_back(sqlite3_value_dup(sqlite3_column_value(query.get(), i)));
        }
        insert = "INSERT INTO " + name + " VALUES (?";
        for (int i = 1; i < columns; ++i)
            insert += ",?";
        insert += ")";
    }

    std::string schema;
    std::string insert;
    int columns = 0;
    std::vector<std::unique_ptr<sqlite3_value, CSqlFree>> values;
};

/// Writes rows of one table with a prepared statement.
class CRowWriter {
public:
    CRowWriter(sqlite3* database, const CRows& rows)
        : m_pDatabase(database), m_rows(rows), m_insert(prepare(database, rows.insert)) {}

    void write(std::size_t first, std::size_t count) {
        sqlite3_stmt* insert = m_insert.get();
        const auto columns = static_cast<std::size_t>(m_rows.columns);
        for (std::size_t row = first; row < first + count; ++row) {
            for (std::size_t i = 0; i < columns; ++i)
                sqlite3_bind_value(insert, static_cast<int>(i) + 1, m_rows.values[row * columns + i].get());
            check(m_pDatabase, sqlite3_step(insert) == SQLITE_DONE);
            sqlite3_reset(insert);
        }
    }

private:
    sqlite3* const m_pDatabase;
    const CRows& m_rows;
    CStatement m_insert;
};

/// The lines of the journal from the first line about the file on.
std::string readJournal(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(file), {});
    const std::size_t begin = bytes.find("{\"kind\":\"intake\"");
    if (begin == std::string::npos) throw std::runtime_error("the journal has no orders");
    return bytes.substr(begin);
}

void writeBytes(int file, const char* bytes, std::size_t count) {
    if (::write(file, bytes, count) != static_cast<ssize_t>(count))
        throw std::runtime_error("the journal cannot be written");
}

/// The two files, written in batches.
class CBareStore {
public:
    CBareStore(const std::string& folder, const std::string& source)
        : m_database(openDatabase(folder + "/paper.db")),
          m_nJournal(::open((folder + "/journal").c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600)) {
        const CDatabase from = openDatabase(source);
        // The same two settings as in the desk's store.
        execute(m_database.get(), "PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL");
        m_rows.reserve(std::size(kTables));
        for (const char* table : kTables) {
            m_rows.emplace_back(from.get(), table);
            execute(m_database.get(), m_rows.back().schema);
            m_writers.emplace_back(m_database.get(), m_rows.back());
        }
    }
    ~CBareStore() { ::close(m_nJournal); }
    CBareStore(const CBareStore&) = delete;
    CBareStore& operator=(const CBareStore&) = delete;

    void store(std::size_t commands, std::size_t batch, const std::string& journal) {
        std::size_t written = 0;
        for (std::size_t first = 0; first < commands; first += batch) {
            const std::size_t count = std::min(batch, commands - first);
            execute(m_database.get(), "BEGIN IMMEDIATE");
            for (std::size_t i = 0; i < m_writers.size(); ++i)
                m_writers[i].write(first * kRowsOfCommand[i], count * kRowsOfCommand[i]);
            execute(m_database.get(), "COMMIT");
            const std::size_t end = journal.size() * (first + count) / commands;
            writeBytes(m_nJournal, journal.data() + written, end - written);
            written = end;
        }
    }

private:
    const CDatabase m_database;
    const int m_nJournal;
    std::vector<CRows> m_rows;
    std::vector<CRowWriter> m_writers;
};

} // namespace

void checkBooks(const CDeskFolder& folder, int orders) {
    const CDatabase books = openDatabase(folder.storePath());
    const std::string all = readText(books.get(), "SELECT count(*) FROM orders");
    const std::string waiting = readText(books.get(), "SELECT count(*) FROM orders WHERE status = 0");
    if (all != std::to_string(orders) || waiting != all)
        throw std::runtime_error("the books have " + all + " orders, and " + waiting + " of them wait");
}

CBookedOrders::CBookedOrders(int commands) : m_nCommands(commands) {
    CDeskProcess desk(m_folder);
    CJournalCount orders(m_folder.journalPath(), "order");
    const auto begin = std::chrono::steady_clock::now();
    m_folder.dropOrders(commands);
    const int expected = commands * CDeskFolder::kAccounts;
    desk.waitForLines(orders, expected);
    m_dSeconds = CSeconds(std::chrono::steady_clock::now() - begin).count();
    desk.end();
    checkBooks(m_folder, expected);
}

double CBookedOrders::storeAgain(int batch) const {
    const std::string folder = makeFolder();
    double seconds = 0;
    {
        const std::string journal = readJournal(m_folder.journalPath());
        CBareStore store(folder, m_folder.storePath());
        const auto begin = std::chrono::steady_clock::now();
        store.store(static_cast<std::size_t>(m_nCommands), static_cast<std::size_t>(batch), journal);
        seconds = CSeconds(std::chrono::steady_clock::now() - begin).count();
    }
    removeFolder(folder);
    return seconds;
}

} // namespace bench
