#pragma once

#include "base/KNError.h"

#include <cstdint>
#include <fstream>
#include <optional>
#include <string>

namespace desk {

/// One line of a journal as it stands in the file, without its newline.
struct CJournalLine {
    std::string m_strText;
    bool m_bDamaged = false; ///< no JSON object with a `kind`: what a crash or a full disk cut short
};

/// Reads a journal line by line, also while it is being written. One thread.
class CJournalReader {
public:
    /// Fails where the folder holds no journal that can be read.
    [[nodiscard]] utils::KNError open(const std::string& folder);

    /// The next whole line, or empty while there is none; a later call sees what was appended since. A record
    /// that follows a torn line without a line end comes as a line of its own.
    std::optional<CJournalLine> next();

    /// Whether another file is at the journal's path by now, or the file is shorter than what was read. Then
    /// next goes on at the beginning of what is there. A desk writes into the old file until it notices the
    /// change, so another file is gone over to only once it has a `continued` line, or more than a second
    /// after the change was seen by the clock of base/Clock.h, and one call later. For a reader that waits,
    /// once next has nothing more; to be called again and again.
    bool reopenIfChanged();

    /// What stands behind the last newline, as a damaged line; empty where nothing does. For a reader that
    /// does not wait.
    std::optional<CJournalLine> rest() const;

private:
    bool openPath();
    bool isOldFileRead();

    std::string m_strPath;
    std::ifstream m_stream;
    std::uint64_t m_nDevice = 0, m_nInode = 0; ///< of the open file
    std::uint64_t m_nRead = 0;                 ///< bytes of it
    std::string m_strHalfLine;
    std::optional<double> m_changeSeen; ///< when another file was first seen at the path
    bool m_bLastLines = false;          ///< nothing more is written to the open file
    std::optional<CJournalLine> m_next; ///< the record behind a torn line
};

} // namespace desk
