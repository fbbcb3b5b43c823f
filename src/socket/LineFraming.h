#pragma once

#include <QByteArray>

#include <cstddef>
#include <string_view>

namespace TC {

/// Kind of the next bytes of a connection.
enum class EFrame {
    Line,     ///< a line that ends in CR LF
    LoneFeed, ///< a line feed without a carriage return before it in the same line
    NeedsMore ///< the line feed of the next line was not received yet
};

/// Cuts the bytes of one connection into lines; the bytes may arrive in pieces of any size. Pure: the caller
/// owns the bytes, and no line is served here. The caller appends to the bytes, only compact() removes from
/// them, and each call gets all of them. No byte is searched twice. Not thread-safe.
class CLineFraming {
public:
    /// Capacity that an almost empty buffer may keep, in bytes.
    static constexpr int kKeptRoom = 128 * 1024;
    /// Capacity that an empty buffer may keep, in bytes. Most clients send one line at a time.
    static constexpr int kKeptWhenEmpty = 1024;

    /// Looks for the end of the first line that was not taken. Finds the same line again until take() is
    /// called.
    EFrame next(std::string_view bytes);
    /// Returns the line that next() found, with its line feed. The result points into `bytes`.
    std::string_view line(std::string_view bytes) const;
    /// Marks the line that next() found as served. next() then continues after it.
    void take() { m_nBegin = m_nLooked = m_nEnd; }
    /// Returns the number of bytes after the last line that was taken.
    std::size_t left(std::string_view bytes) const { return bytes.size() - m_nBegin; }
    /// Removes all taken lines from the buffer at once, so that many short lines cost no more than one long
    /// line. Views into the buffer become invalid.
    void compact(QByteArray& buffer);

private:
    std::size_t m_nBegin = 0;  ///< start of the first line that was not taken
    std::size_t m_nEnd = 0;    ///< position after the line feed that next() found
    std::size_t m_nLooked = 0; ///< there is no line feed between m_nBegin and this position
};

} // namespace TC
