#include "desk/journal/JournalReader.h"

#include "desk/journal/Journal.h"
#include "desk/journal/RecordHeads.h"
#include "desk/journal/TornLine.h"
#include "orderservice/base/Clock.h"

#include <sys/stat.h>

#include <string_view>
#include <utility>

namespace desk {
namespace {

/// The desk checks once a second whether its file is still at the path. Until it notices a change, it writes
/// into the old file.
constexpr double kMostLookSeconds = 1.0;

/// Whether a desk already writes to this file.
bool hasContinued(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    for (std::string line; std::getline(stream, line);) {
        if (!stream.eof() && std::string_view(line).substr(0, kContinuedHead.size()) == kContinuedHead)
            return true;
    }
    return false;
}

/// If a record follows a torn line in the same line, moves that record to `behind`.
void splitOffRecord(CJournalLine& line, std::optional<CJournalLine>& behind) {
    const std::size_t place = recordBehindTornLine(line.m_strText);
    if (place == 0) return;
    behind = CJournalLine{line.m_strText.substr(place), false};
    line.m_strText.resize(place);
}

} // namespace

utils::KNError CJournalReader::open(const std::string& folder) {
    m_strPath = folder + '/' + kJournalFileName;
    if (!openPath()) return {kJournalOpenFailed, "cannot read journal " + m_strPath};
    return {};
}

bool CJournalReader::openPath() {
    struct stat status {};
    if (::stat(m_strPath.c_str(), &status) != 0) return false;
    m_stream.close();
    m_stream.clear();
    m_stream.open(m_strPath, std::ios::binary);
    if (!m_stream) return false;
    m_nDevice = status.st_dev;
    m_nInode = status.st_ino;
    m_nRead = 0;
    m_strHalfLine.clear();
    m_changeSeen.reset();
    m_bLastLines = false;
    return true;
}

bool CJournalReader::reopenIfChanged() {
    struct stat status {};
    // If there is no file, the desk creates one at its next check.
    if (::stat(m_strPath.c_str(), &status) != 0) return false;
    const bool isSame = status.st_dev == m_nDevice && status.st_ino == m_nInode;
    const bool isCut = isSame && static_cast<std::uint64_t>(status.st_size) < m_nRead;
    if (isSame && !isCut) {
        m_changeSeen.reset();
        m_bLastLines = false;
        return false;
    }
    return (isCut || isOldFileRead()) && openPath();
}

/// Whether nothing more will be written to the old file and next was called since then.
bool CJournalReader::isOldFileRead() {
    if (m_bLastLines) return true;
    const double now = utils::getTime();
    if (!m_changeSeen) m_changeSeen = now;
    m_bLastLines = now - *m_changeSeen > kMostLookSeconds || hasContinued(m_strPath);
    return false;
}

std::optional<CJournalLine> CJournalReader::next() {
    if (m_next) return std::exchange(m_next, std::nullopt);
    m_stream.clear(); // the file may have grown since its end was reached
    std::string part;
    while (std::getline(m_stream, part)) {
        m_strHalfLine += part;
        m_nRead += part.size();
        if (m_stream.eof()) return {};
        ++m_nRead;
        CJournalLine line;
        line.m_strText.swap(m_strHalfLine);
        if (line.m_strText.empty()) continue;
        splitOffRecord(line, m_next);
        line.m_bDamaged = !isRecord(line.m_strText);
        return line;
    }
    return {};
}

std::optional<CJournalLine> CJournalReader::rest() const {
    if (m_strHalfLine.empty()) return {};
    return CJournalLine{m_strHalfLine, true};
}

} // namespace desk
