#include "desk/paper/Sql.h"

#include "orderservice/base/Clock.h"

#include <sqlite3.h>

namespace desk {
namespace {

constexpr double kLockLookSeconds = 0.01;

/// SQLite calls this while another program holds a lock. Returns 0 to give up.
int tryAgain(void*, int tries) {
    if (tries * kLockLookSeconds >= kLockPatienceSeconds) return 0;
    utils::sleep(kLockLookSeconds);
    return 1;
}

ESqlFailure failureOf(int result) {
    switch (result & 0xff) {
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        return ESqlFailure::Damaged;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return ESqlFailure::Locked;
    default:
        return ESqlFailure::Other;
    }
}

CSqlDatabase openWith(const std::string& path, int flags) {
    sqlite3* raw = nullptr;
    const int result = sqlite3_open_v2(path.c_str(), &raw, flags | SQLITE_OPEN_NOMUTEX, nullptr);
    CSqlDatabase database(raw);
    if (result != SQLITE_OK) throw CSqlError(raw != nullptr ? sqlite3_errmsg(raw) : sqlite3_errstr(result));
    waitForLocks(raw, true);
    return database;
}

} // namespace

CSqlError lastError(sqlite3* database) {
    return CSqlError(sqlite3_errmsg(database), failureOf(sqlite3_errcode(database)));
}

void CSqlCloser::operator()(sqlite3* database) const {
    sqlite3_close_v2(database);
}

void CSqlCloser::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

CSqlDatabase openDatabase(const std::string& path) {
    return openWith(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
}

CSqlDatabase openDatabaseToRead(const std::string& path) {
    return openWith(path, SQLITE_OPEN_READONLY);
}

void waitForLocks(sqlite3* database, bool wait) {
    sqlite3_busy_handler(database, wait ? tryAgain : nullptr, nullptr);
}

void execute(sqlite3* database, const char* sql) {
    if (sqlite3_exec(database, sql, nullptr, nullptr, nullptr) != SQLITE_OK) throw lastError(database);
}

CSqlStatement::CSqlStatement(sqlite3* database, const char* sql) : m_pDatabase(database) {
    sqlite3_stmt* raw = nullptr;
    check(sqlite3_prepare_v3(database, sql, -1, SQLITE_PREPARE_PERSISTENT, &raw, nullptr));
    m_statement.reset(raw);
}

bool CSqlStatement::step() {
    const int result = sqlite3_step(m_statement.get());
    if (result == SQLITE_ROW) return true;
    if (result == SQLITE_DONE) return false;
    const CSqlError error = lastError(m_pDatabase);
    reset();
    throw error;
}

std::int64_t CSqlStatement::integer(int column) const {
    return sqlite3_column_int64(m_statement.get(), column);
}

std::string CSqlStatement::text(int column) const {
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(m_statement.get(), column));
    return bytes == nullptr
               ? std::string()
               : std::string(bytes,
                             static_cast<std::size_t>(sqlite3_column_bytes(m_statement.get(), column)));
}

void CSqlStatement::reset() {
    sqlite3_reset(m_statement.get());
}

void CSqlStatement::bind(int place, std::int64_t value) {
    check(sqlite3_bind_int64(m_statement.get(), place, value));
}

void CSqlStatement::bind(int place, const std::string& value) {
    // The caller keeps the text until the statement has run.
    check(sqlite3_bind_text(m_statement.get(), place, value.data(), static_cast<int>(value.size()),
                            SQLITE_STATIC));
}

void CSqlStatement::check(int result) const {
    if (result != SQLITE_OK) throw lastError(m_pDatabase);
}

} // namespace desk
