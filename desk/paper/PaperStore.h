#pragma once

#include "base/KNError.h"
#include "desk/config/FolderFiles.h"
#include "desk/paper/PaperBook.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace desk {

/// Whether FOLDER/paper.db is there, or cannot be asked for.
bool hasPaperStore(const std::string& folder);

/// Error numbers of the store's and the broker's operations.
enum EPaperError : int { kPaperStoreFailed = 1, kPaperBadRequest = 2, kPaperNothingOpen = 3 };

/// Keys of the accounts that FOLDER/paper.db holds, of whatever version it is; none if there is no store yet
/// or its file is new and empty. Not set if the store cannot be read, or if it is empty or gone and its log
/// is there: CPaperStore::open reports why. Changes nothing in the store and its log.
std::optional<std::set<std::string>> storedAccounts(const std::string& folder);

/// The broker's state on disk: one SQLite database, one transaction for each change. Not thread safe: the
/// broker's mutex guards it.
///
/// Write-ahead log with synchronous=NORMAL: a transaction whose save succeeded outlives the process, kill -9
/// included, and the database never breaks. All its pages are checked when it is opened. A power cut may cost
/// the last moments, as it may cost the journal's last lines: FULL would pay a disk flush for every command
/// and keep a promise that the journal beside it does not make.
class CPaperStore {
public:
    CPaperStore();
    ~CPaperStore();
    CPaperStore(const CPaperStore&) = delete;
    CPaperStore& operator=(const CPaperStore&) = delete;

    /// Opens or makes FOLDER/paper.db and loads all of it into an empty book; the events that it still holds
    /// go to `events`, oldest first. A store of an older version is brought up to this one, which the first
    /// save makes last: until then close or a crash leaves it as it was. Fails where the database cannot be
    /// used or a newer version made it. `isKnown`: something outside the store tells of events that it had.
    /// An empty file is damaged then; a file that is missing is made in any case, unless its log is there.
    [[nodiscard]] utils::KNError open(const std::string& folder, CPaperBook& book,
                                      std::vector<CBrokerEvent>& events, bool isKnown = false);

    /// Writes what the book's change touched, and its events, in one transaction, and drops the events up to
    /// `deliveredEvent`. On failure the database is as it was. While another program has locked it, waits for
    /// up to kLockPatienceSeconds (Sql.h); after a wait in vain, saves fail at once until one succeeds.
    [[nodiscard]] utils::KNError save(const CPaperBook& book, std::int64_t deliveredEvent);

    /// Lets go of the database. What was not saved is lost.
    void close();

private:
    struct CConnection;

    std::unique_ptr<CConnection> m_connection; ///< null: not open
};

} // namespace desk
