#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

struct sqlite3;
struct sqlite3_stmt;

namespace desk {

/// What a user can do about a failure of SQLite.
enum class ESqlFailure { Other, Damaged, Locked };

/// A failure of SQLite, with its text. The store's operations catch it.
struct CSqlError : std::runtime_error {
    explicit CSqlError(const std::string& text, ESqlFailure failure = ESqlFailure::Other)
        : std::runtime_error(text), m_eFailure(failure) {}

    ESqlFailure m_eFailure;
};

/// The last failure of the database, as a value to throw.
CSqlError lastError(sqlite3* database);

/// How long an operation waits for a lock that another program holds.
inline constexpr double kLockPatienceSeconds = 5.0;

struct CSqlCloser {
    void operator()(sqlite3* database) const;
    void operator()(sqlite3_stmt* statement) const;
};

using CSqlDatabase = std::unique_ptr<sqlite3, CSqlCloser>;

/// Opens or creates a database file. If another program has locked it, operations on it retry for up to
/// kLockPatienceSeconds by the clock of base/Clock.h. The caller guards the database and its statements:
/// SQLite's own locks are off: they would be taken for each bound argument, which is slow. Throws CSqlError.
CSqlDatabase openDatabase(const std::string& path);
/// Opens an existing database file for reading, with the same rule for threads. Throws CSqlError.
CSqlDatabase openDatabaseToRead(const std::string& path);

/// Sets whether operations wait for locks or fail at once.
void waitForLocks(sqlite3* database, bool wait);

/// Runs statements that have no arguments and whose rows are not needed. Throws CSqlError.
void execute(sqlite3* database, const char* sql);

/// One prepared statement. Not thread-safe. The constructor, run and step throw CSqlError.
class CSqlStatement {
public:
    CSqlStatement(sqlite3* database, const char* sql);

    /// Runs a statement that returns no rows. The arguments, integers and texts, are bound in order.
    template<typename... A>
    void run(const A&... arguments) {
        reset();
        int place = 0;
        (bind(++place, arguments), ...);
        step();
        reset();
    }

    /// Moves to the next row of a query. Returns false at its end.
    bool step();
    std::int64_t integer(int column) const;
    int number(int column) const { return static_cast<int>(integer(column)); }
    std::string text(int column) const;

private:
    void reset();
    void bind(int place, std::int64_t value);
    void bind(int place, int value) { bind(place, static_cast<std::int64_t>(value)); }
    void bind(int place, bool value) { bind(place, static_cast<std::int64_t>(value)); }
    void bind(int place, const std::string& value);
    void check(int result) const;

    sqlite3* m_pDatabase;
    std::unique_ptr<sqlite3_stmt, CSqlCloser> m_statement;
};

} // namespace desk
