// The test repeats the table on purpose.
#include "orderservice/records/PriceCommands.h"

#include <gtest/gtest.h>

#include <map>

namespace {

using namespace TC;

const std::map<std::string, int> kTable = {
    {"1", 5},    {"2", 14},  {"3", 11},   {"4", 16},  {"5", 13},   {"6", 49},  {"M1", 42}, {"M2", 43},
    {"M3", 46},  {"M4", 48}, {"M5", 45},  {"M6", 44}, {"M7", 47},  {"M8", 26}, {"M9", 27}, {"M10", 28},
    {"M11", 29}, {"S1", 4},  {"S2", 3},   {"S3", 2},  {"S4", 1},   {"S5", 0},  {"S6", 30}, {"S7", 31},
    {"S8", 32},  {"S9", 33}, {"S10", 34}, {"B1", 6},  {"B2", 7},   {"B3", 8},  {"B4", 9},  {"B5", 10},
    {"B6", 35},  {"B7", 36}, {"B8", 37},  {"B9", 38}, {"B10", 39},
};

TEST(PriceCommands, EveryCommandHasItsPriceType) {
    EXPECT_EQ(kPriceCommandCount, kTable.size());
    for (const auto& [command, priceType] : kTable) {
        EXPECT_EQ(static_cast<int>(getPriceTypeByCmd(command)), priceType) << command;
    }
}

TEST(PriceCommands, TableHoldsNoOtherCommand) {
    for (std::size_t i = 0; i < kPriceCommandCount; ++i)
        EXPECT_EQ(kTable.count(kPriceCommands[i].m_pszCommand), 1u);
}

TEST(PriceCommands, UnknownCommandsMeanTheLatestPrice) {
    for (const char* command : {"", "0", "7", "11", "M0", "M12", "S0", "S11", "B11", "m1", "s1", "b1", " 2",
                                "2 ", "02", "S1\r", "X"}) {
        EXPECT_EQ(getPriceTypeByCmd(command), EPriceType::Latest) << command;
    }
    EXPECT_EQ(getPriceTypeByCmd(std::string("2\0", 2)), EPriceType::Latest);
}

} // namespace
