#pragma once

#include <array>
#include <cstddef>
#include <cstdio>
#include <limits>
#include <string>

namespace TC {

/// Reads an order file line by line, the way a text-mode fgets with a buffer of 2048 bytes does: CR LF counts
/// as one line feed, and a line of 2047 bytes or more arrives in pieces of 2047. Of each piece the bytes from
/// the first zero byte on are lost.
class CLineReader {
public:
    /// Most bytes of one piece, the line feed counted.
    static constexpr std::size_t kMaxPiece = 2047;

    /// The stream stays the caller's and open while the reader lives. No more than that many bytes are read.
    explicit CLineReader(std::FILE* stream, long long bytes = std::numeric_limits<long long>::max())
        : m_pStream(stream), m_nBytesLeft(bytes) {}

    /// The next line or piece, with its line feed where it has one. False at the end of the file, and where
    /// reading fails.
    bool readLine(std::string& line);

    /// Whether reading ended by an error of the file system rather than at the end of the file.
    bool failed() const { return std::ferror(m_pStream) != 0; }

private:
    bool fill();
    void appendRun(std::string& line);

    std::FILE* m_pStream;
    long long m_nBytesLeft;
    std::array<char, 65536> m_buffer;
    std::size_t m_nPosition = 0;
    std::size_t m_nSize = 0;
};

} // namespace TC
