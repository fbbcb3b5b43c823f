#include "orderservice/intake/LineReader.h"

#include <algorithm>
#include <cstring>

namespace TC {

bool CLineReader::fill() {
    m_nPosition = 0;
    const auto most = std::min(m_nBytesLeft, static_cast<long long>(m_buffer.size()));
    m_nSize = std::fread(m_buffer.data(), 1, static_cast<std::size_t>(most), m_pStream);
    m_nBytesLeft -= static_cast<long long>(m_nSize);
    return m_nSize > 0;
}

/// Appends bytes up to and including the next line feed, or until the buffer is used up or the piece is full.
void CLineReader::appendRun(std::string& line) {
    const char* begin = m_buffer.data() + m_nPosition;
    const std::size_t room = std::min(m_nSize - m_nPosition, kMaxPiece - line.size());
    const void* feed = std::memchr(begin, '\n', room);
    const std::size_t length = feed != nullptr ? static_cast<const char*>(feed) - begin + 1 : room;
    line.append(begin, length);
    m_nPosition += length;
}

bool CLineReader::readLine(std::string& line) {
    line.clear();
    while (line.size() < kMaxPiece && (line.empty() || line.back() != '\n')) {
        if (m_nPosition == m_nSize && !fill()) break;
        appendRun(line);
        const std::size_t size = line.size();
        if (size >= 2 && line[size - 1] == '\n' && line[size - 2] == '\r') line.erase(size - 2, 1);
    }
    // The last byte of a full piece is a carriage return: if a line feed follows, both are one line end.
    if (line.size() == kMaxPiece && line.back() == '\r' && (m_nPosition < m_nSize || fill()) &&
        m_buffer[m_nPosition] == '\n') {
        line.back() = '\n';
        ++m_nPosition;
    }
    const bool hasLine = !line.empty();
    line.resize(std::min(line.size(), line.find('\0')));
    return hasLine;
}

} // namespace TC
