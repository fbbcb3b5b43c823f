#pragma once

#include "desk/config/FolderFiles.h"
#include "desk/paper/PaperBook.h"
#include "orderservice/base/KNError.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace desk {

/// Whether FOLDER/paper.db exists. True also if this cannot be found out.
bool hasPaperStore(const std::string& folder);

/// Error numbers of the store's and the broker's operations.
enum EPaperError : int { kPaperStoreFailed = 1, kPaperBadRequest = 2, kPaperNothingOpen = 3 };

/// Keys of the accounts in FOLDER/paper.db, of any version. Empty if there is no store yet, or if its file is
/// new and has no bytes. Not set if the store cannot be read, or if it is empty or missing while its log
/// exists; CPaperStore::open reports the reason. Does not change the store or its log.
std::optional<std::set<std::string>> storedAccounts(const std::string& folder);

/// The broker's state on disk: one SQLite database, one transaction for each change. Not thread-safe: the
/// broker's mutex guards it.
///
/// The database uses a write-ahead log with synchronous=NORMAL. So a transaction whose save succeeded
/// survives the process, even after kill -9, and the file stays consistent. All pages are checked when the
/// store is opened. A power cut may lose the last moments, in the store and in the journal. synchronous=FULL
/// would need a disk flush for each command and would still promise more than the journal does.
class CPaperStore {
public:
    CPaperStore();
    ~CPaperStore();
    CPaperStore(const CPaperStore&) = delete;
    CPaperStore& operator=(const CPaperStore&) = delete;

    /// Opens or creates FOLDER/paper.db and loads all of it into an empty book. The events that the store
    /// still holds are put into `events`, oldest first. An older version is upgraded to the present one. The
    /// first save commits the upgrade; until then, a close or a crash leaves the store as it was. Fails if
    /// the database cannot be used or if a newer version created it. `isKnown`: a record outside the
    /// store names events of this store. In this case an empty file is reported as damaged. A missing file is
    /// always created, unless its log exists.
    [[nodiscard]] utils::KNError open(const std::string& folder, CPaperBook& book,
                                      std::vector<CBrokerEvent>& events, bool isKnown = false);

    /// Writes the book's current change and its events in one transaction, and deletes the events up to
    /// `deliveredEvent`. If it fails, the database is unchanged. If another program has locked the database,
    /// it waits up to kLockPatienceSeconds (Sql.h). After such a wait has failed, saves fail at once until
    /// one succeeds.
    [[nodiscard]] utils::KNError save(const CPaperBook& book, std::int64_t deliveredEvent);

    /// Closes the database. Changes that were not saved are lost.
    void close();

private:
    struct CConnection;

    std::unique_ptr<CConnection> m_connection; ///< null if the store is not open
};

} // namespace desk
