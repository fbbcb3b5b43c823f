#include "orderservice/socket/LineFraming.h"

namespace TC {

EFrame CLineFraming::next(std::string_view bytes) {
    const std::size_t feed = bytes.find('\n', m_nLooked);
    if (feed == std::string_view::npos) {
        m_nLooked = bytes.size();
        return EFrame::NeedsMore;
    }
    m_nLooked = feed;
    m_nEnd = feed + 1;
    return feed > m_nBegin && bytes[feed - 1] == '\r' ? EFrame::Line : EFrame::LoneFeed;
}

std::string_view CLineFraming::line(std::string_view bytes) const {
    return bytes.substr(m_nBegin, m_nEnd - m_nBegin);
}

void CLineFraming::compact(QByteArray& buffer) {
    const bool isAllTaken = m_nBegin == static_cast<std::size_t>(buffer.size());
    if (isAllTaken && buffer.capacity() > kKeptWhenEmpty) {
        buffer = QByteArray();
    } else if (m_nBegin > 0) {
        buffer.reserve(buffer.size()); // otherwise an empty buffer would be freed
        buffer.remove(0, static_cast<int>(m_nBegin));
    }
    if (buffer.capacity() > kKeptRoom && buffer.size() < kKeptRoom) buffer.squeeze();
    m_nLooked -= m_nBegin;
    m_nBegin = m_nEnd = 0;
}

} // namespace TC
