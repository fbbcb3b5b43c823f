#include "orderservice/kit/Operations.h"

#include "orderservice/base/Unset.h"
#include "orderservice/records/Families.h"
#include "orderservice/records/OrderTypes.h"

#include <gtest/gtest.h>

#include <set>

namespace kit {
namespace {

TEST(Operations, EveryOperationOfAnAcceptedOrderIsKnown) {
    for (std::size_t family = 0; family < TC::kFamilyCount; ++family) {
        for (int number = 0; number <= 119; ++number) {
            const TC::EOperationType operation = TC::orderTypeToOperationType(number);
            if (!TC::kFamilies[family].accepts(number) || TC::isUnset(operation)) continue;
            EXPECT_NE(findOperation(operation), nullptr) << "order number " << number;
        }
    }
}

TEST(Operations, UnknownNumberHasNoOperation) {
    for (const int number : {-1, 14, 28, 51, 1000, 1042, 1044})
        EXPECT_EQ(findOperation(static_cast<TC::EOperationType>(number)), nullptr) << number;
}

TEST(Operations, PurchaseAtAGivenPriceIsAPurchase) {
    const COperation* given = findOperation(static_cast<TC::EOperationType>(1043));
    const COperation* plain = findOperation(TC::EOperationType::Buy);
    ASSERT_NE(given, nullptr);
    EXPECT_EQ(given->m_eSide, plain->m_eSide);
    EXPECT_EQ(given->m_eEffect, plain->m_eEffect);
    EXPECT_EQ(given->m_eBooking, plain->m_eBooking);
}

/// An operation that closes a position has the opposite side of the operation that opens it.
TEST(Operations, ClosingHasTheOppositeSideOfOpening) {
    const auto sideOf = [](int number) {
        return findOperation(static_cast<TC::EOperationType>(number))->m_eSide;
    };
    for (const int number : {1, 2, 6, 7, 33})
        EXPECT_EQ(sideOf(number), ETradeSide::Sell) << number;
    for (const int number : {4, 5, 8, 9, 35, 37})
        EXPECT_EQ(sideOf(number), ETradeSide::Buy) << number;
    EXPECT_EQ(sideOf(0), ETradeSide::Buy);
    EXPECT_EQ(sideOf(3), ETradeSide::Sell);
}

} // namespace
} // namespace kit
