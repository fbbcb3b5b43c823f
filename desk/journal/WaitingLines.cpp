#include "desk/journal/WaitingLines.h"

#include "orderservice/base/Clock.h"

namespace desk {

void CWaitingLines::add(const CJournalRecord& record, std::int64_t seq) {
    m_strBytes += R"({"kind":")";
    m_strBytes += record.m_strKind;
    m_strBytes += R"(","time":")";
    m_strBytes += utils::currentTimeText();
    m_strBytes += R"(","seq":)";
    m_strBytes += std::to_string(seq);
    if (!record.m_strFields.empty()) m_strBytes += ',';
    m_strBytes += record.m_strFields;
    m_strBytes += "}\n";
    m_lines.push_back({m_strBytes.size() - 1, record.m_numbers});
}

void CWaitingLines::clear() {
    m_strBytes.clear();
    m_lines.clear();
}

std::size_t CWaitingLines::completeLines(std::size_t writtenBytes) const {
    std::size_t complete = 0;
    while (complete < m_lines.size() && m_lines[complete].m_nEnd <= writtenBytes)
        ++complete;
    return complete;
}

} // namespace desk
