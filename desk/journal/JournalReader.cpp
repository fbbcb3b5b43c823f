#include "desk/journal/JournalReader.h"

#include "desk/journal/Journal.h"

#include <nlohmann/json.hpp>

namespace desk {
namespace {

bool isRecord(const std::string& text) {
    const CJson record = CJson::parse(text, nullptr, false);
    return record.is_object() && record.contains("kind") && record["kind"].is_string();
}

} // namespace

utils::KNError CJournalReader::open(const std::string& folder) {
    const std::string path = folder + '/' + kJournalFileName;
    m_stream.open(path, std::ios::binary);
    if (!m_stream) return {kJournalOpenFailed, "cannot read journal " + path};
    return {};
}

std::optional<CJournalLine> CJournalReader::next() {
    m_stream.clear(); // an end of file met earlier is no end: the file may have grown
    std::string part;
    while (std::getline(m_stream, part)) {
        m_strHalfLine += part;
        if (m_stream.eof()) return {};
        CJournalLine line;
        line.m_strText.swap(m_strHalfLine);
        if (line.m_strText.empty()) continue;
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
