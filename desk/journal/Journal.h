#pragma once

#include "desk/config/FolderFiles.h"
#include "desk/journal/JournalRecord.h"
#include "desk/journal/Json.h"
#include "desk/journal/WaitingLines.h"
#include "orderservice/base/KNError.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace desk {

/// Error numbers of the journal's operations.
enum EJournalError : int { kJournalOpenFailed = 1, kJournalWriteFailed = 2, kJournalClosed = 3 };

/// The desk's permanent record: an append-only file with one JSON object per line, UTF-8. Lines are never
/// rewritten.
///
/// Keys of a line: `kind` first, then `time` (local, ISO 8601 with milliseconds), `seq` (1, 2, 3 and so on
/// through the whole file), then the event's own keys. Any thread. Lines are in the order of their seq.
///
/// Durability: all lines that wait are written with one write(2) on a descriptor in append mode. An append
/// writes before it returns. So a line whose append succeeded survives the process, even after kill -9. A
/// line that was only posted waits in memory for the next append or flush, and kill -9 loses it until then.
/// fdatasync runs only at close, so a power cut may lose the last moments. The paper broker's store gives the
/// same guarantee.
///
/// checkFile notices if the file was deleted, moved or cut while it is open. The journal then continues in
/// the file at the path.
///
/// If a write fails or is incomplete, the journal is in the failed state: every record is refused with the
/// cause until a probe succeeds. The lines of that write that are in the file remain records, the others are
/// refused. After an incomplete write, the partial line is ended with a newline before
/// anything else is written. Readers show it as damaged.
class CJournal {
public:
    CJournal() = default;
    /// Closes the file without writing a record of its own. For an orderly end call close first.
    ~CJournal();
    CJournal(const CJournal&) = delete;
    CJournal& operator=(const CJournal&) = delete;

    /// Sets a receiver of the lines that were written; each ends with a newline. It is called on the writer's
    /// thread with the journal locked, so it must not call the journal and must not wait. If it throws, it
    /// gets these lines no more. Set it before open.
    void setListener(std::function<void(const std::string& lines)> listener) {
        m_listener = std::move(listener);
    }

    /// Opens or creates FOLDER/journal.jsonl and writes a `started` record with `recovered`, `after_crash`
    /// and `pid`. If the last line has no newline, as after a crash, one is added and `recovered` is true.
    /// After a failure the journal is not open.
    [[nodiscard]] utils::KNError open(const std::string& folder);

    /// Writes one record. `fields` is an object with the event's own keys. On success the record's number is
    /// stored in `seq`, if given. In the failed state it writes nothing and returns the cause of that state.
    [[nodiscard]] utils::KNError append(const std::string& kind, const CJson& fields,
                                        std::int64_t* seq = nullptr);
    [[nodiscard]] utils::KNError append(const CJournalRecord& record, std::int64_t* seq = nullptr);

    /// Writes several records with one write, in their order. Returns how many of them, from the first, are
    /// in the file now; the others are refused. The caller keeps those and appends them again later, so they
    /// are not in the count of the `resumed` record.
    [[nodiscard]] std::size_t appendAll(const std::vector<CJournalRecord>& records);

    /// Checks whether the open file is still at the path and still has its written length. If the path has
    /// another file or none, the journal continues in the file at the path and creates it if needed. If the
    /// old file was deleted, its lines since the previous check are written again, so that they are not lost.
    /// After every change a `continued` record with the cause and the largest numbers is written. Returns the
    /// cause as a text for the user; empty if nothing changed. If the file at the path cannot be used, the
    /// journal is in the failed state afterwards. In the failed state, the lines and the `continued` record
    /// wait for a probe. It needs two system calls if nothing changed, and is meant to be called once a
    /// second.
    std::string checkFile();

    /// Tries to end the failed state. Continues in the file at the path if checkFile could not, and ends a
    /// partial line. Then it writes the lines that wait since checkFile, a `resumed` record with the cause
    /// and the number of records lost meanwhile, and the waiting `continued` record. If all of it is
    /// written, the failed state ends. Outside the failed state it does nothing and succeeds.
    [[nodiscard]] utils::KNError probe();

    bool isFailed() const { return !failure().isSuccess(); }
    /// The cause of the failed state. Success if the journal is not in that state. Does not wait for a write.
    utils::KNError failure() const;

    /// Number of the last broker event (`order` and `fill` records) in the journal; 0 without such a record.
    /// The paper broker delivers later events again.
    std::int64_t lastBrokerEvent() const;

    /// Largest number of a task, an order and a fill in the journal; 0 without such a record. The paper
    /// broker uses only larger numbers for new ones.
    int lastTask() const;
    int lastOrder() const;
    int lastFill() const;

    /// Whether the file had lines when it was opened and the last one was not `stopped`.
    bool isAfterCrash() const;

    /// Number of the last record.
    std::int64_t lastSeq() const;

    /// Writes a `stopped` record with the reason, flushes the file to disk and closes it. In the failed state
    /// it first does the work of a probe. The file is closed even if an error is returned.
    [[nodiscard]] utils::KNError close(const std::string& reason);

private:
    std::size_t write(const CJournalRecord* records, std::size_t count, utils::KNError& error);
    utils::KNError writeRecord(const std::string& kind, const CJson& fields);
    std::size_t writeWaiting(utils::KNError& error);
    void tellListener(std::size_t written) noexcept;
    void addWaiting(const CJournalRecord& record);
    void keepNumbers(const CJournalNumbers& numbers);
    utils::KNError writeBytes(const std::string& bytes);
    utils::KNError closeHalfLine();
    utils::KNError fail(const std::string& cause);
    utils::KNError setFailure(utils::KNError failure);
    std::string lookAtFile();
    utils::KNError openPath(int& descriptor) const;
    utils::KNError moveToPath();
    utils::KNError writeUnwritten();
    utils::KNError noteContinued();
    utils::KNError resume();

    mutable std::mutex m_mutex;
    std::function<void(const std::string&)> m_listener;
    int m_nDescriptor = -1;
    std::string m_strPath;
    CWaitingLines m_waiting;     ///< empty between two writes
    std::int64_t m_nLastSeq = 0; ///< of the last line in the file
    std::int64_t m_nLastBrokerEvent = 0;
    int m_nLastTask = 0;
    int m_nLastOrder = 0;
    int m_nLastFill = 0;
    /// Records that are lost. Records that appendAll refused are not counted: the caller appends them again.
    std::int64_t m_nRefused = 0;
    bool m_bHalfLine = false; ///< the file ends within a line
    bool m_bAfterCrash = false;
    bool m_bElsewhere = false;       ///< the path has another file or none
    std::int64_t m_nSize = 0;        ///< known size of the file in bytes
    std::int64_t m_nCheckedSize = 0; ///< m_nSize at the opening or at the last successful check
    std::int64_t m_nCheckedSeq = 0;  ///< m_nLastSeq at that moment
    std::string m_strContinued;      ///< cause of the `continued` record that still must be written, or empty
    std::string m_strUnwritten;      ///< whole lines of a deleted file that still must be written
    mutable std::mutex m_failureMutex; ///< taken alone or after m_mutex
    utils::KNError m_failure;          ///< a writer holds both locks, a reader only one
};

} // namespace desk
