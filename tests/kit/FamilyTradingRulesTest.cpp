#include "orderservice/kit/FamilyTradingRulesBase.h"

#include <gtest/gtest.h>

#include <set>

namespace kit {
namespace {

std::set<int> operationsThat(bool (CFamilyTradingRulesBase::*answer)(TC::EOperationType)) {
    CFamilyTradingRulesBase rules;
    std::set<int> found;
    for (int number = -1; number < 1100; ++number) {
        if ((rules.*answer)(static_cast<TC::EOperationType>(number))) found.insert(number);
    }
    return found;
}

TEST(FamilyTradingRules, OperationsThatBuy) {
    EXPECT_EQ(operationsThat(&CFamilyTradingRulesBase::isBuy),
              (std::set<int>{0,  4,  5,  8,  9,  12, 13, 18,   20,   22,   26,   30,
                             32, 35, 37, 42, 44, 46, 48, 1013, 1025, 1027, 1029, 1043}));
}

TEST(FamilyTradingRules, OperationsThatClose) {
    EXPECT_EQ(operationsThat(&CFamilyTradingRulesBase::isClose),
              (std::set<int>{1, 2, 4, 5, 6, 7, 8, 9, 33, 35, 37}));
}

TEST(FamilyTradingRules, OperationsThatRepayAnAmountOfMoney) {
    EXPECT_EQ(operationsThat(&CFamilyTradingRulesBase::isDirectRepay), (std::set<int>{25, 1021}));
}

TEST(FamilyTradingRules, BookingsOfMarginTrading) {
    CFamilyTradingRulesBase rules;
    const std::pair<int, int> bookings[] = {{18, 0}, {20, 1}, {21, 2}, {24, 3}, {25, 3}, {1021, 3},
                                            {22, 4}, {23, 4}, {55, 5}, {56, 5}, {14, 0}, {-1, 0}};
    for (const auto& [operation, booking] : bookings) {
        const auto answer = rules.operationTypeToEntrustType(static_cast<TC::EOperationType>(operation));
        EXPECT_EQ(static_cast<int>(answer), booking) << operation;
    }
}

} // namespace
} // namespace kit
