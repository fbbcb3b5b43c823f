#include "orderservice/records/PriceCommands.h"

#include "orderservice/base/FindRow.h"

#include <iterator>

namespace TC {

const CPriceCommand kPriceCommands[] = {
    {"1", 5},   {"2", 14},   {"3", 11},   {"4", 16},  {"5", 13},   {"6", 49},                          //
    {"M1", 42}, {"M2", 43},  {"M3", 46},  {"M4", 48}, {"M5", 45},  {"M6", 44}, {"M7", 47}, {"M8", 26}, //
    {"M9", 27}, {"M10", 28}, {"M11", 29},                                                              //
    {"S1", 4},  {"S2", 3},   {"S3", 2},   {"S4", 1},  {"S5", 0},                                       //
    {"S6", 30}, {"S7", 31},  {"S8", 32},  {"S9", 33}, {"S10", 34},                                     //
    {"B1", 6},  {"B2", 7},   {"B3", 8},   {"B4", 9},  {"B5", 10},                                      //
    {"B6", 35}, {"B7", 36},  {"B8", 37},  {"B9", 38}, {"B10", 39},
};
const std::size_t kPriceCommandCount = std::size(kPriceCommands);

EPriceType getPriceTypeByCmd(const std::string& cmd) {
    const CPriceCommand* found =
        utils::findRow(kPriceCommands, [&](const CPriceCommand& row) { return cmd == row.m_pszCommand; });
    return found != nullptr ? static_cast<EPriceType>(found->m_nPriceType) : EPriceType::Latest;
}

} // namespace TC
