#include "orderservice/intake/LineReader.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <limits>
#include <memory>
#include <vector>

namespace {

/// All lines of the bytes, as the reader returns them.
std::vector<std::string> readAll(const std::string& bytes,
                                 long long most = std::numeric_limits<long long>::max()) {
    std::FILE* stream = std::tmpfile();
    std::fwrite(bytes.data(), 1, bytes.size(), stream);
    std::rewind(stream);
    const auto reader = std::make_unique<TC::CLineReader>(stream, most);
    std::vector<std::string> lines;
    for (std::string line; reader->readLine(line);)
        lines.push_back(line);
    std::fclose(stream);
    return lines;
}

using Lines = std::vector<std::string>;

TEST(LineReader, KeepsTheLineFeedAndTheLastLineWithoutOne) {
    EXPECT_EQ(readAll("a\n\nb"), (Lines{"a\n", "\n", "b"}));
}

TEST(LineReader, EmptyFileHasNoLine) {
    EXPECT_TRUE(readAll("").empty());
}

TEST(LineReader, CarriageReturnBeforeALineFeedDisappears) {
    EXPECT_EQ(readAll("a\r\nb\rc\r\r\nd\r"), (Lines{"a\n", "b\rc\r\n", "d\r"}));
}

TEST(LineReader, LongLineArrivesInPiecesOf2047) {
    const std::string line(5000, 'x');
    EXPECT_EQ(readAll(line), (Lines{std::string(2047, 'x'), std::string(2047, 'x'), std::string(906, 'x')}));
}

TEST(LineReader, LineOf2046BytesIsWhole) {
    const std::string line(2046, 'x');
    EXPECT_EQ(readAll(line + "\ny"), (Lines{line + "\n", "y"}));
    EXPECT_EQ(readAll(line + "\r\ny"), (Lines{line + "\n", "y"}));
}

TEST(LineReader, LineOf2047BytesLeavesItsLineFeedForTheNextLine) {
    const std::string line(2047, 'x');
    EXPECT_EQ(readAll(line + "\ny"), (Lines{line, "\n", "y"}));
    EXPECT_EQ(readAll(line + "\r\ny"), (Lines{line, "\n", "y"}));
}

TEST(LineReader, LoneCarriageReturnAtTheEndOfAPieceStays) {
    const std::string line = std::string(2046, 'x') + "\r";
    EXPECT_EQ(readAll(line + "y"), (Lines{line, "y"}));
    EXPECT_EQ(readAll(line), (Lines{line}));
}

TEST(LineReader, BytesFromTheFirstZeroOnAreLost) {
    EXPECT_EQ(readAll(std::string("ab\0cd\nef\n", 9)), (Lines{"ab", "ef\n"}));
    EXPECT_EQ(readAll(std::string("\0\nx", 3)), (Lines{"", "x"}));
}

TEST(LineReader, LinesCrossTheBufferBoundary) {
    std::string bytes;
    for (int i = 0; i < 20000; ++i)
        bytes += "0123456789\r\n";
    const Lines lines = readAll(bytes);
    ASSERT_EQ(lines.size(), 20000u);
    for (const std::string& line : lines)
        ASSERT_EQ(line, "0123456789\n");
}

TEST(LineReader, ReadsNoMoreBytesThanItMay) {
    EXPECT_EQ(readAll("a\nb\nc\n", 4), (Lines{"a\n", "b\n"}));
    EXPECT_EQ(readAll("a\nb\nc\n", 6), (Lines{"a\n", "b\n", "c\n"}));
    EXPECT_TRUE(readAll("a\n", 0).empty());
    const std::string line(70000, 'x'); // longer than the buffer
    EXPECT_EQ(readAll(line + "\n" + line, 70001).back(), line.substr(0, 70000 % 2047) + "\n");
}

} // namespace
