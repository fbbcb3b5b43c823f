#pragma once

#include "base/KNError.h"

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

    /// The next whole line, or empty while there is none; a later call sees what was appended since.
    std::optional<CJournalLine> next();

    /// What stands behind the last newline, as a damaged line; empty where nothing does. For a reader that
    /// does not wait.
    std::optional<CJournalLine> rest() const;

private:
    std::ifstream m_stream;
    std::string m_strHalfLine;
};

} // namespace desk
