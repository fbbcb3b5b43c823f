#pragma once

#include "orderservice/base/KNError.h"

#include <cstdint>
#include <fstream>
#include <optional>
#include <string>

namespace desk {

/// One line of a journal as it is in the file, without its newline.
struct CJournalLine {
    std::string m_strText;
    bool m_bDamaged = false; ///< not a JSON object with a `kind`; cut by a crash or a full disk
};

/// Reads a journal line by line, even while a desk writes it. Not thread-safe.
class CJournalReader {
public:
    /// Fails if the folder has no readable journal.
    [[nodiscard]] utils::KNError open(const std::string& folder);

    /// The next whole line, or not set if there is none yet. A later call also returns lines that were
    /// appended since. If a record follows a torn line without a newline, it is returned as a separate line.
    std::optional<CJournalLine> next();

    /// Checks whether another file is at the journal's path, or whether the file is shorter than the bytes
    /// already read. If so, it opens the present file and returns true; next then starts at its beginning. A
    /// desk writes into the old file until it notices the change. So the reader first waits until the other
    /// file has a `continued` line, or until more than a second has passed since it saw the change, by the
    /// clock of base/Clock.h. It opens the other file one call later, so that next can read the last lines of
    /// the old file. A reader that waits for lines calls it repeatedly, when next has no more lines.
    bool reopenIfChanged();

    /// The text after the last newline, as a damaged line; not set if the file ends with a newline. For a
    /// reader that does not wait for more lines.
    std::optional<CJournalLine> rest() const;

private:
    bool openPath();
    bool isOldFileRead();

    std::string m_strPath;
    std::ifstream m_stream;
    std::uint64_t m_nDevice = 0, m_nInode = 0; ///< device and inode of the open file
    std::uint64_t m_nRead = 0;                 ///< bytes read from the open file
    std::string m_strHalfLine;
    std::optional<double> m_changeSeen; ///< clock time at which another file was first seen at the path
    bool m_bLastLines = false;          ///< nothing more will be written to the open file
    std::optional<CJournalLine> m_next; ///< the record after a torn line
};

} // namespace desk
