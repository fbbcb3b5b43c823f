#pragma once

#include "desk/journal/JournalRecord.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace desk {

/// A record that was appended, or that the journal has refused.
struct CCapturedRecord {
    std::string m_strKind;
    std::string m_strFields;   ///< as in CJournalRecord; empty for a `command`, which may be very long
    std::optional<int> m_task; ///< of a `command`
    std::int64_t m_nSeq = 0;   ///< 0: the journal has refused it
};

/// Collects the records that the calling thread passes to CJournal::append while the object lives, in their
/// order. So a thread that performs one call knows what the host services have recorded about it. Records of
/// CJournal::appendAll are left out, because they may belong to other callers. Create and destroy it on the
/// same thread. It may be nested; then only the inner one collects.
class CRecordCapture {
public:
    CRecordCapture();
    ~CRecordCapture();
    CRecordCapture(const CRecordCapture&) = delete;
    CRecordCapture& operator=(const CRecordCapture&) = delete;

    /// Whether the calling thread collects.
    static bool isActive();
    /// The journal calls it for each record of append. Does nothing on a thread that does not collect.
    static void note(const CJournalRecord& record, std::int64_t seq);

    const std::vector<CCapturedRecord>& records() const { return m_records; }

private:
    CRecordCapture* const m_pOuter;
    std::vector<CCapturedRecord> m_records;
};

} // namespace desk
