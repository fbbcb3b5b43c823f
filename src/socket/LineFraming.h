#pragma once

#include <QByteArray>

#include <cstddef>
#include <string_view>

namespace TC {

/// What the next bytes of a connection are.
enum class EFrame {
    Line,     ///< a line that ends in CR LF
    LoneFeed, ///< a line feed without a carriage return before it in the same line
    NeedsMore ///< the line feed has not come yet
};

/// Cuts what one connection has sent into lines, in whatever pieces it comes. Pure: the bytes are the
/// caller's, and nothing is served here. The caller appends to the bytes and lets compact() remove from them,
/// and passes all of them to each call. No byte is looked at twice. One thread.
class CLineFraming {
public:
    /// Room that an almost empty buffer may keep, in bytes.
    static constexpr int kKeptRoom = 128 * 1024;

    /// Looks for the end of the first line that was not taken. Gives the same line again until take().
    EFrame next(std::string_view bytes);
    /// The line that next() found, with its line feed. It points into `bytes`.
    std::string_view line(std::string_view bytes) const;
    /// The line that next() found is served: next() goes on behind it.
    void take() { m_nBegin = m_nLooked = m_nEnd; }
    /// How many bytes are behind the last line that was taken.
    std::size_t left(std::string_view bytes) const { return bytes.size() - m_nBegin; }
    /// Removes the lines that were taken from the buffer, all in one go, so that many short lines are as
    /// cheap as one long one. Views of the buffer end here.
    void compact(QByteArray& buffer);

private:
    std::size_t m_nBegin = 0;  ///< of the first line that was not taken
    std::size_t m_nEnd = 0;    ///< behind the line feed that next() found
    std::size_t m_nLooked = 0; ///< no line feed is between m_nBegin and here
};

} // namespace TC
