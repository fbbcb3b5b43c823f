#pragma once

#include "base/KNError.h"
#include "desk/config/FolderFiles.h"
#include "desk/journal/Json.h"

#include <cstdint>
#include <mutex>
#include <string>

namespace desk {

/// Error numbers of the journal's operations.
enum EJournalError : int { kJournalOpenFailed = 1, kJournalWriteFailed = 2, kJournalClosed = 3 };

/// The desk's memory and its proof: an append-only file, one JSON object a line, UTF-8, never rewritten.
///
/// Keys of a line: `kind` first, then `time` (local, ISO 8601 with milliseconds), `seq` (1, 2, 3 and so on
/// through the whole file), then the event's own. Any thread; lines stand in the order of their seq.
///
/// Durability: each line is one write(2) on a descriptor in append mode, so that a line whose append
/// succeeded outlives the process, kill -9 included. fdatasync runs at close only: a power cut may cost the
/// last moments. That is the same promise that the paper broker's store gives.
///
/// A file that is deleted, moved or cut while it is open is noticed by checkFile; the journal then goes on in
/// the file at the path.
///
/// A write that fails or comes out short puts the journal in the failed state: every append is refused with
/// the cause until a probe succeeds. What a short write left behind is closed with a newline before anything
/// else is written, and readers show it as damaged.
class CJournal {
public:
    CJournal() = default;
    /// Closes the file without a record: an orderly end is a call of close.
    ~CJournal();
    CJournal(const CJournal&) = delete;
    CJournal& operator=(const CJournal&) = delete;

    /// Opens or makes FOLDER/journal.jsonl and writes a `started` record with `recovered`, `after_crash` and
    /// `pid`. A last line without newline, as a crash leaves it, is closed with one, and `recovered` is true.
    /// On failure nothing is open.
    [[nodiscard]] utils::KNError open(const std::string& folder);

    /// Writes one record. `fields` is an object with the event's own keys. On success the record's number
    /// goes to `seq` where one is given. In the failed state it writes nothing and gives the cause of that
    /// state.
    [[nodiscard]] utils::KNError append(const std::string& kind, const CJson& fields,
                                        std::int64_t* seq = nullptr);

    /// Looks whether the open file is still the one at the path, and as long as it was written. If another
    /// file or none is at the path, goes on in the file there, which it makes if need be. Of a file that was
    /// deleted, the lines since the look before are written again, so that they are not lost with it. In any
    /// case a `continued` record with the cause and the largest numbers follows. Gives the cause for people;
    /// empty: nothing changed. If the file at the path cannot be used, the journal is in the failed state
    /// afterwards. In the failed state, the lines and the `continued` record that cannot be written wait for
    /// a probe. Two system calls if nothing changed: meant for once a second.
    std::string checkFile();

    /// In the failed state: goes on in the file at the path if checkFile could not, closes a half line,
    /// writes the lines that wait since checkFile, a `resumed` record with the cause and the number of
    /// records refused meanwhile, and the `continued` record that waits. If all of it is written, the state
    /// ends. Outside the failed state it does nothing and succeeds.
    [[nodiscard]] utils::KNError probe();

    bool isFailed() const { return !failure().isSuccess(); }
    /// The cause of the failed state; success outside it.
    utils::KNError failure() const;

    /// Number of the last broker event (`order` and `fill` records) that was journalled; 0 where there was
    /// none. The paper broker delivers again what comes after it.
    std::int64_t lastBrokerEvent() const;

    /// Largest number of a task, an order and a fill that the journal has; 0 if it has none. The paper broker
    /// gives no number up to it again.
    int lastTask() const;
    int lastOrder() const;
    int lastFill() const;

    /// Whether the file held lines when it was opened, and the last was not `stopped`.
    bool isAfterCrash() const;

    /// Number of the last record written.
    std::int64_t lastSeq() const;

    /// Writes a `stopped` record with the reason, brings the file to the disk and closes it. In the failed
    /// state it first does what a probe does. The file is closed whatever comes back.
    [[nodiscard]] utils::KNError close(const std::string& reason);

private:
    utils::KNError writeRecord(const std::string& kind, const CJson& fields);
    void keepNumbers(const std::string& kind, const CJson& fields);
    utils::KNError writeBytes(const std::string& bytes);
    utils::KNError closeHalfLine();
    utils::KNError fail(const std::string& cause);
    std::string lookAtFile();
    utils::KNError openPath(int& descriptor) const;
    utils::KNError moveToPath();
    utils::KNError writeUnwritten();
    utils::KNError noteContinued();
    utils::KNError resume();

    mutable std::mutex m_mutex;
    int m_nDescriptor = -1;
    std::string m_strPath;
    std::int64_t m_nLastSeq = 0;
    std::int64_t m_nLastBrokerEvent = 0;
    int m_nLastTask = 0;
    int m_nLastOrder = 0;
    int m_nLastFill = 0;
    std::int64_t m_nRefused = 0;
    bool m_bHalfLine = false; ///< the file ends within a line
    bool m_bAfterCrash = false;
    bool m_bElsewhere = false;       ///< another file, or none, is at the path
    std::int64_t m_nSize = 0;        ///< bytes of the file, as far as this journal knows
    std::int64_t m_nCheckedSize = 0; ///< m_nSize at the opening, or when checkFile found all in order
    std::int64_t m_nCheckedSeq = 0;  ///< m_nLastSeq at the same time
    std::string m_strContinued; ///< cause of the `continued` record that could not be written yet, or empty
    std::string m_strUnwritten; ///< whole lines of a deleted file that no file has yet
    utils::KNError m_failure;
};

} // namespace desk
