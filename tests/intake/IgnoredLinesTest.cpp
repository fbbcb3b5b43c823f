// Lines without effect: how many they are, and the reason of the first.
#include "orderservice/intake/OrderFileParser.h"

#include "tests/intake/OrderFileParserFixture.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

namespace {

using namespace TC;

struct CIgnoredCase {
    const char* name;
    std::vector<std::string> lines;
    int count;
    int first;
    const char* reason;
};

void PrintTo(const CIgnoredCase& c, std::ostream* out) {
    *out << c.name;
}

class IgnoredLines : public OrderFileParserFixture, public testing::WithParamInterface<CIgnoredCase> {};

/// Also reads the lines that have no effect, like the read loop, which counts them.
TEST_P(IgnoredLines, AreCountedAndTheFirstIsExplained) {
    addBasket(QStringLiteral("b"));
    for (std::string line : GetParam().lines)
        parser().takeLine(line);
    parser().takeOrders();
    EXPECT_EQ(parser().ignoredLines().m_nCount, GetParam().count);
    EXPECT_EQ(parser().ignoredLines().m_nFirst, GetParam().first);
    EXPECT_EQ(parser().ignoredLines().m_strFirstReason.toStdString(), GetParam().reason);
}

const CIgnoredCase kIgnoredCases[] = {
    {"None", {"23,0", "cancel 1", "cancel_order A1 2", "orderParam=x", ""}, 0, 0, ""},
    {"BlankLines", {"", " ", "\t", "\r", "23,0", "\n"}, 0, 0, ""},
    {"Cancel", {"23,0", "cancel 1 2", "cancel"}, 2, 2, "cancel takes one word, the number of the task"},
    {"CancelOrder", {"cancel_order A1"}, 1, 1, "cancel_order takes two words or more"},
    {"FirstLineOfOneField", {"23"}, 1, 1, "it has fewer than two fields"},
    {"PlainLineOfOneField", {"23,0", "Cancel 43"}, 1, 2, "it has fewer than two fields"},
    {"ForeignChannel", {"23,0", "23,5", "23,6"}, 2, 2, "it is for channel 5"},
    {"ListRows", {"35,0", "600000|1|2", "600000|1", "", "600000"}, 2, 2, "a row of a list has two fields"},
    {"BasketRows", {"25,0", "600000", "600000\t1"}, 1, 2, "the row has too few fields"},
    {"ForeignList", {"35,5", "600000|1", "600000", "600001|1"}, 4, 1, "it is for channel 5"},
    {"NamedBasket",
     {"25,0,b", "600000\t1", "", "orderParam=x"},
     1,
     2,
     "after a named basket, only orderParam lines have an effect"},
    {"WholeBasket",
     {"23,0", "34,0,b", "23,0", "cancel 1", ""},
     2,
     3,
     "after a whole basket, no line has an effect"},
};

INSTANTIATE_TEST_SUITE_P(OrderFileParser, IgnoredLines, testing::ValuesIn(kIgnoredCases),
                         [](const auto& row) { return std::string(row.param.name); });

} // namespace
