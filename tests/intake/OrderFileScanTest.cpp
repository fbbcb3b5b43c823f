#include "orderservice/intake/OrderFileScan.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace {

using namespace TC;

struct CScanCase {
    const char* name;
    std::string bytes;
    EFileFault fault;
    long long line;
    const char* text;
};

void PrintTo(const CScanCase& c, std::ostream* out) {
    *out << c.name;
}

std::string operator""_bytes(const char* text, std::size_t size) {
    return std::string(text, size);
}

const std::string kLongest(64 * 1024, 'x');

const CScanCase kCases[] = {
    {"Line", "23,0\n", EFileFault::None, 0, ""},
    {"LinesOfBothKinds", "23,0\r\n\r\n\n24,0\n", EFileFault::None, 0, ""},
    {"ChineseTextInGbk", "orderParam=remark:\xD4\xE7\xC5\xCC\n", EFileFault::None, 0, ""},
    {"LongestLine", kLongest + "\n" + kLongest + "\r\n", EFileFault::None, 0, ""},
    {"Empty", "", EFileFault::Empty, 1, "line 1: the file is empty"},
    {"LoneReturn", "23,0\n23,0,1,600000,1\r23,0\n", EFileFault::LoneReturn, 2,
     "line 2: a carriage return without a line feed"},
    {"TwoReturns", "23,0\r\r\n", EFileFault::LoneReturn, 1, "line 1: a carriage return without a line feed"},
    {"ZeroByte", "23,0\0,5\n"_bytes, EFileFault::ZeroByte, 1, "line 1: a zero byte"},
    {"ReturnBeforeAZeroByte", "23,0\r\0\n"_bytes, EFileFault::LoneReturn, 1,
     "line 1: a carriage return without a line feed"},
    {"EndMark", "23,0\n\n\x1A", EFileFault::EndMark, 3, "line 3: a byte 0x1A"},
    {"LongLine", "23,0\n" + kLongest + "x\n", EFileFault::LongLine, 2,
     "line 2: more than 65536 bytes on the line"},
    {"NoLineEnd", "23,0\n23,0,10.5,600000,1", EFileFault::NoLineEnd, 2,
     "line 2: no line end at the end of the file"},
    {"HalfALineEnd", "23,0\r", EFileFault::NoLineEnd, 1, "line 1: no line end at the end of the file"},
    {"TheFirstFaultCounts", "a\x1A\rb\0"_bytes, EFileFault::EndMark, 1, "line 1: a byte 0x1A"},
};

class OrderFileScan : public testing::TestWithParam<CScanCase> {};

TEST_P(OrderFileScan, FindsTheFaultHoweverTheBytesAreCut) {
    const std::string& bytes = GetParam().bytes;
    for (const std::size_t piece : {std::size_t{1}, std::size_t{2}, std::size_t{4096}, bytes.size() + 1}) {
        COrderFileScan scan;
        for (std::size_t at = 0; at < bytes.size(); at += piece)
            scan.takeBytes(std::string_view(bytes).substr(at, piece));
        const CFileVerdict verdict = scan.verdict();
        EXPECT_EQ(verdict.m_eFault, GetParam().fault);
        EXPECT_EQ(verdict.m_nLine, GetParam().line);
        EXPECT_EQ(verdict.isGood(), GetParam().fault == EFileFault::None);
        const std::string text = verdict.isGood() ? "" : verdict.toText().toStdString();
        EXPECT_EQ(text, GetParam().text);
    }
}

INSTANTIATE_TEST_SUITE_P(Files, OrderFileScan, testing::ValuesIn(kCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(OrderFileScanState, IsOverAtTheFirstFault) {
    COrderFileScan scan;
    scan.takeBytes("23,0");
    EXPECT_FALSE(scan.isOver()); // the line may continue
    scan.takeBytes("\x1A");
    EXPECT_TRUE(scan.isOver());
    scan.takeBytes("\n");
    EXPECT_EQ(scan.verdict().m_eFault, EFileFault::EndMark);
}

} // namespace
