#pragma once

#include "desk/journal/JournalRecord.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace desk {

/// The lines of a journal that wait for the next write. Not thread-safe.
class CWaitingLines {
public:
    /// Adds the line of a record. Its time is the present time.
    void add(const CJournalRecord& record, std::int64_t seq);
    void clear();

    std::size_t count() const { return m_lines.size(); }
    /// All lines, each with its newline.
    const std::string& bytes() const { return m_strBytes; }
    /// The first lines, each with its newline. `lines` must be at least 1.
    std::string firstLines(std::size_t lines) const {
        return m_strBytes.substr(0, m_lines[lines - 1].m_nEnd + 1);
    }
    const CJournalNumbers& numbers(std::size_t line) const { return m_lines[line].m_numbers; }

    /// The number of lines that are complete if only so many bytes were written. A line that lacks only its
    /// newline is complete.
    std::size_t completeLines(std::size_t writtenBytes) const;

private:
    struct CLine {
        std::size_t m_nEnd; ///< position of the line's newline
        CJournalNumbers m_numbers;
    };

    std::string m_strBytes;
    std::vector<CLine> m_lines;
};

} // namespace desk
