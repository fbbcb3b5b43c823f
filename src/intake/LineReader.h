#pragma once

#include <array>
#include <cstddef>
#include <cstdio>
#include <limits>
#include <string>

namespace TC {

/// Reads an order file line by line, like a text-mode fgets with a buffer of 2048 bytes. CR LF is read as one
/// line feed. A line of 2047 bytes or more arrives in pieces of 2047 bytes. In each piece, the first zero
/// byte and all bytes after it are lost.
class CLineReader {
public:
    /// Largest size of one piece in bytes, including the line feed.
    static constexpr std::size_t kMaxPiece = 2047;

    /// The caller owns the stream and keeps it open while the reader exists. At most `bytes` bytes are read.
    explicit CLineReader(std::FILE* stream, long long bytes = std::numeric_limits<long long>::max())
        : m_pStream(stream), m_nBytesLeft(bytes) {}

    /// Reads the next line or piece, with its line feed if it has one. False at the end of the file, or if
    /// reading fails.
    bool readLine(std::string& line);

    /// Whether reading ended because of a file system error and not at the end of the file.
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
