#include "orderservice/socket/LineFraming.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace {

using TC::CLineFraming;
using TC::EFrame;

class LineFraming : public testing::Test {
protected:
    std::string_view bytes() const { return {buffer.constData(), static_cast<std::size_t>(buffer.size())}; }
    void append(const std::string& piece) { buffer.append(piece.data(), static_cast<int>(piece.size())); }
    EFrame next() { return framing.next(bytes()); }
    std::string line() { return std::string(framing.line(bytes())); }

    /// Takes all whole lines of the buffer, then compacts it.
    std::vector<std::string> takeAll() {
        std::vector<std::string> lines;
        for (; next() == EFrame::Line; framing.take())
            lines.push_back(line());
        framing.compact(buffer);
        return lines;
    }

    QByteArray buffer;
    CLineFraming framing;
};

using CLines = std::vector<std::string>;

TEST_F(LineFraming, ALineEndsWithCarriageReturnAndLineFeed) {
    append("user a\r\npass b\r\nqui");
    EXPECT_EQ(takeAll(), (CLines{"user a\r\n", "pass b\r\n"}));
    EXPECT_EQ(buffer, "qui");
    EXPECT_EQ(framing.left(bytes()), 3u);
    append("t\r\n");
    EXPECT_EQ(takeAll(), CLines{"quit\r\n"});
    EXPECT_TRUE(buffer.isEmpty());
}

TEST_F(LineFraming, NothingIsALineBeforeItsLineFeed) {
    EXPECT_EQ(next(), EFrame::NeedsMore);
    append("user a\r");
    EXPECT_EQ(next(), EFrame::NeedsMore);
    EXPECT_EQ(framing.left(bytes()), 7u);
    append("\n");
    EXPECT_EQ(next(), EFrame::Line);
    EXPECT_EQ(line(), "user a\r\n");
}

TEST_F(LineFraming, AnEmptyLineIsALine) {
    append("\r\n\r\n");
    EXPECT_EQ(takeAll(), (CLines{"\r\n", "\r\n"}));
}

TEST_F(LineFraming, ACarriageReturnOrAZeroByteWithinALineBelongsToIt) {
    const std::string text("a\rb\0c\r\r\n", 8);
    append(text);
    EXPECT_EQ(takeAll(), CLines{text});
}

TEST_F(LineFraming, ALineFeedNeedsACarriageReturnOfTheSameLine) {
    append("a\n");
    EXPECT_EQ(next(), EFrame::LoneFeed);
    EXPECT_EQ(line(), "a\n");
}

/// The carriage return before the second line feed belongs to the previous line.
TEST_F(LineFraming, TheCarriageReturnOfTheLineBeforeDoesNotEndALine) {
    append("a\r\n\n");
    ASSERT_EQ(next(), EFrame::Line);
    framing.take();
    EXPECT_EQ(next(), EFrame::LoneFeed);
    EXPECT_EQ(line(), "\n");
    framing.compact(buffer);
    EXPECT_EQ(buffer, "\n");
    EXPECT_EQ(next(), EFrame::LoneFeed);
}

TEST_F(LineFraming, BytesBeforeTheFirstLineAreNotLookedAt) {
    const std::string_view bytes("\r\n");
    EXPECT_EQ(framing.next(bytes.substr(1)), EFrame::LoneFeed);
}

TEST_F(LineFraming, ALineThatIsNotTakenIsFoundAgain) {
    append("one\r\ntwo\r\n");
    ASSERT_EQ(next(), EFrame::Line);
    framing.take();
    ASSERT_EQ(next(), EFrame::Line);
    framing.compact(buffer);
    EXPECT_EQ(buffer, "two\r\n");
    append("three\r\n");
    EXPECT_EQ(takeAll(), (CLines{"two\r\n", "three\r\n"}));
}

TEST_F(LineFraming, LinesMayBeTakenWithoutCompacting) {
    append("one\r\n");
    ASSERT_EQ(next(), EFrame::Line);
    framing.take();
    append("two\r\nthr");
    EXPECT_EQ(framing.left(bytes()), 8u);
    EXPECT_EQ(takeAll(), CLines{"two\r\n"});
    EXPECT_EQ(buffer, "thr");
}

TEST_F(LineFraming, CutsMakeNoDifference) {
    const std::string stream = "user a\r\n\r\npass \r b\r\nplaceorder 23,3,10,600000,100\r\nrest\r";
    const CLines expected{"user a\r\n", "\r\n", "pass \r b\r\n", "placeorder 23,3,10,600000,100\r\n"};
    for (std::size_t size = 1; size <= stream.size(); ++size) {
        buffer.clear();
        framing = {};
        CLines lines;
        for (std::size_t at = 0; at < stream.size(); at += size) {
            append(stream.substr(at, size));
            for (const std::string& each : takeAll())
                lines.push_back(each);
        }
        EXPECT_EQ(lines, expected) << size;
        EXPECT_EQ(buffer, "rest\r") << size;
    }
}

TEST_F(LineFraming, ALargeBufferGivesItsRoomBack) {
    append(std::string(4 * CLineFraming::kKeptRoom, 'x') + "\r\nrest");
    ASSERT_GT(buffer.capacity(), CLineFraming::kKeptRoom);
    EXPECT_EQ(takeAll().size(), 1u);
    EXPECT_EQ(buffer, "rest");
    EXPECT_LE(buffer.capacity(), CLineFraming::kKeptRoom);
}

TEST_F(LineFraming, ABufferKeepsTheRoomThatItsBytesNeed) {
    const std::string rest(2 * CLineFraming::kKeptRoom, 'x');
    append("one\r\n" + rest);
    EXPECT_EQ(takeAll(), CLines{"one\r\n"});
    EXPECT_EQ(bytes(), rest);
    EXPECT_GE(buffer.capacity(), buffer.size());
}

TEST_F(LineFraming, AnEmptyBufferKeepsTheMemoryOfOneLine) {
    append("placeorder 23,3,10.5,600000,100\r\n");
    takeAll();
    append("a"); // from here on the buffer has its own memory
    const char* memory = buffer.constData();
    append("bc\r\n");
    takeAll();
    ASSERT_TRUE(buffer.isEmpty());
    EXPECT_GT(buffer.capacity(), 0);
    append("abc\r\n");
    EXPECT_EQ(static_cast<const void*>(buffer.constData()), memory);
}

TEST_F(LineFraming, AnEmptyBufferFreesTheMemoryOfManyLines) {
    for (int i = 0; i < 2 * CLineFraming::kKeptWhenEmpty; ++i)
        append("\r\n");
    takeAll();
    EXPECT_TRUE(buffer.isEmpty());
    EXPECT_EQ(buffer.capacity(), 0);
}

} // namespace
