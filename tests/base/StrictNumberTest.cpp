#include "orderservice/base/StrictNumber.h"

#include "tests/support/CommaLocale.h"

#include <gtest/gtest.h>

#include <boost/lexical_cast.hpp>

#include <cmath>
#include <cstring>
#include <limits>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace {

using boost::bad_lexical_cast;

template<typename Read>
auto readOrNone(const Read& read) -> std::optional<decltype(read())> {
    try {
        return read();
    } catch (const bad_lexical_cast&) {
        return std::nullopt;
    }
}

std::uint64_t bitsOf(double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

/// Reads the text in both ways and compares the results to the last bit.
void expectSameAsLexicalCast(const std::string& text) {
    const auto ownInt = readOrNone([&] { return utils::strictInt(text); });
    const auto castInt = readOrNone([&] { return boost::lexical_cast<int>(text); });
    EXPECT_EQ(ownInt, castInt) << "int of \"" << text << '"';
    const auto ownDouble = readOrNone([&] { return bitsOf(utils::strictDouble(text)); });
    const auto castDouble = readOrNone([&] { return bitsOf(boost::lexical_cast<double>(text)); });
    EXPECT_EQ(ownDouble, castDouble) << "double of \"" << text << '"';
}

struct CIntRow {
    const char* text;
    int value;
};

TEST(StrictInt, ReadsWholeNumbers) {
    const CIntRow rows[] = {
        {"0", 0},
        {"7", 7},
        {"-7", -7},
        {"+7", 7},
        {"-0", 0},
        {"+0", 0},
        {"007", 7},
        {"-007", -7},
        {"000000000012", 12},
        {"600000", 600000},
        {"999999999", 999999999},
        {"-999999999", -999999999},
        {"1000000000", 1000000000},
        {"2147483647", 2147483647},
        {"+2147483647", 2147483647},
        {"-2147483648", std::numeric_limits<int>::min()},
        {"0002147483647", 2147483647},
    };
    for (const CIntRow& row : rows)
        EXPECT_EQ(utils::strictInt(row.text), row.value) << row.text;
}

TEST(StrictInt, RefusesEverythingElse) {
    const std::string texts[] = {"",
                                 " ",
                                 "1 ",
                                 " 1",
                                 "1\r",
                                 "1\t",
                                 "\n1",
                                 "-",
                                 "+",
                                 "--1",
                                 "+-1",
                                 "-+1",
                                 "- 1",
                                 "1-",
                                 "1+",
                                 "1.0",
                                 "1.",
                                 ".1",
                                 "1e3",
                                 "1E3",
                                 "0x1",
                                 "0X1F",
                                 "1f",
                                 "1L",
                                 "1,000",
                                 "12a",
                                 "a12",
                                 "inf",
                                 "nan",
                                 "１",
                                 "9999999999",
                                 "2147483648",
                                 "-2147483649",
                                 "99999999999999999999",
                                 std::string("1\0", 2),
                                 std::string("\0", 1)};
    for (const std::string& text : texts)
        EXPECT_THROW(utils::strictInt(text), bad_lexical_cast) << text;
}

struct CDoubleRow {
    const char* text;
    double value;
};

TEST(StrictDouble, ReadsNumbers) {
    const CDoubleRow rows[] = {
        {"0", 0.0},
        {"-0", -0.0},
        {"10.5", 10.5},
        {"+10.5", 10.5},
        {"-10.5", -10.5},
        {"0010.50", 10.5},
        {".5", 0.5},
        {"-.5", -0.5},
        {"5.", 5.0},
        {"0.1", 0.1},
        {"3.3333", 3.3333},
        {"1e3", 1000.0},
        {"1E3", 1000.0},
        {"1e+3", 1000.0},
        {"1e-3", 0.001},
        {"1.5e2", 150.0},
        {"123456789012345", 123456789012345.0},
        {"1234567890123456", 1234567890123456.0},
        {"12345678901234567890", 12345678901234567890.0},
        {"0.000000000000001", 1e-15},
        {"0.123456789012345678", 0.123456789012345678},
        {"1.7976931348623157e308", std::numeric_limits<double>::max()},
        {"4.9406564584124654e-324", std::numeric_limits<double>::denorm_min()},
        {"inf", std::numeric_limits<double>::infinity()},
        {"INF", std::numeric_limits<double>::infinity()},
        {"+inf", std::numeric_limits<double>::infinity()},
        {"-inf", -std::numeric_limits<double>::infinity()},
        {"infinity", std::numeric_limits<double>::infinity()},
    };
    for (const CDoubleRow& row : rows) {
        EXPECT_EQ(bitsOf(utils::strictDouble(row.text)), bitsOf(row.value)) << row.text;
    }
}

TEST(StrictDouble, ReadsNotANumber) {
    for (const char* text : {"nan", "NAN", "+nan", "-nan", "nan(1)"}) {
        EXPECT_TRUE(std::isnan(utils::strictDouble(text))) << text;
    }
    EXPECT_TRUE(std::signbit(utils::strictDouble("-nan")));
}

TEST(StrictDouble, RefusesEverythingElse) {
    const std::string texts[] = {"",     " ",     "1 ",     " 1",     "1\r",    "-",
                                 "+",    ".",     "-.",     "1e",     "1E",     "1e+",
                                 "1e-",  "1.5e",  "1.5E-",  "1-",     "1+",     "--1",
                                 "+-1",  "1.2.3", "1..2",   "1,5",    "1e3.5",  "1ee3",
                                 "e3",   ".e3",   "0x1",    "0x1p3",  "1f",     "1d",
                                 "12a",  "infi",  "in",     "nann",   "na",     "1inf",
                                 "inf1", "1e309", "-1e309", "1e9999", "１．５", std::string("1\0", 2)};
    for (const std::string& text : texts)
        EXPECT_THROW(utils::strictDouble(text), bad_lexical_cast) << text;
}

TEST(StrictNumber, ReadsNoFurtherThanTheView) {
    const std::string line = "23,10.57";
    EXPECT_EQ(utils::strictInt(std::string_view(line).substr(0, 2)), 23);
    EXPECT_EQ(utils::strictDouble(std::string_view(line).substr(3, 4)), 10.5);
}

TEST(StrictNumber, AgreesWithLexicalCastOnRandomTexts) {
    const std::vector<std::string> pieces = {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9",   "0",  "9",
                                             "5", "-", "+", ".", ".", "e", "E", "x", " ", "inf", "nan"};
    std::mt19937 random(20260105);
    for (int i = 0; i < 100000; ++i) {
        std::string text;
        const unsigned length = random() % 12;
        for (unsigned n = 0; n < length; ++n)
            text += pieces[random() % pieces.size()];
        expectSameAsLexicalCast(text);
    }
}

TEST(StrictNumber, AgreesWithLexicalCastOnRandomPricesOfEveryLength) {
    std::mt19937_64 random(20260106);
    for (int i = 0; i < 100000; ++i) {
        std::string text = std::to_string(random()).substr(0, 1 + random() % 20);
        if (random() % 4 != 0) text.insert(random() % (text.size() + 1), 1, '.');
        if (random() % 8 == 0) text.insert(0, 1, '-');
        expectSameAsLexicalCast(text);
    }
}

TEST(StrictNumber, ReadsTheSameWhateverTheLocale) {
    const CCommaLocale comma;
    EXPECT_EQ(utils::strictInt("+1234"), 1234);
    EXPECT_EQ(utils::strictInt("-2147483648"), std::numeric_limits<int>::min());
    for (const char* text : {"1.234", "+1.234", "1.000.000.000", "1,0"})
        EXPECT_THROW(utils::strictInt(text), bad_lexical_cast) << text;
    const CDoubleRow rows[] = {{"10.5", 10.5},
                               {"-10.5", -10.5},
                               {"+.5", 0.5},
                               {"1.5e2", 150},
                               {"1234567890123456.5", 1234567890123456.5}};
    for (const CDoubleRow& row : rows)
        EXPECT_EQ(utils::strictDouble(row.text), row.value) << row.text;
    for (const char* text : {"10,5", "-10,5", "1.234,5", "-1.234.567", "1,5e2"})
        EXPECT_THROW(utils::strictDouble(text), bad_lexical_cast) << text;
    EXPECT_TRUE(std::isinf(utils::strictDouble("-inf")));
}

} // namespace
