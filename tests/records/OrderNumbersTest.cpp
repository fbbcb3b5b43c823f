// The test repeats the tables on purpose.
#include "orderservice/records/OrderNumbers.h"

#include "orderservice/base/Unset.h"
#include "orderservice/records/OrderTypes.h"

#include <gtest/gtest.h>

#include <set>
#include <utility>

namespace {

using namespace TC;

constexpr int kFirstSwept = -5;
constexpr int kLastSwept = 200;

std::set<int> numbersFrom(int first, int last) {
    std::set<int> numbers;
    for (int number = first; number <= last; ++number)
        numbers.insert(number);
    return numbers;
}

TEST(OrderNumbers, RowsAscendAndEachIsFoundByItsNumber) {
    int last = -1;
    for (std::size_t i = 0; i < kOrderNumberCount; ++i) {
        EXPECT_LT(last, kOrderNumbers[i].m_nNumber) << i;
        last = kOrderNumbers[i].m_nNumber;
        EXPECT_EQ(findOrderNumber(last), &kOrderNumbers[i]) << last;
    }
    EXPECT_EQ(kOrderNumberCount, 81u);
}

TEST(OrderNumbers, NumbersOutsideTheTableHaveNoRow) {
    std::set<int> inTable;
    for (const auto& [first, ending] :
         {std::pair{0, 15}, {23, 39}, {48, 57}, {66, 92}, {100, 100}, {110, 119}})
        inTable.merge(numbersFrom(first, ending));
    for (int number = kFirstSwept; number <= kLastSwept; ++number)
        EXPECT_EQ(findOrderNumber(number) != nullptr, inTable.count(number) > 0) << number;
    EXPECT_EQ(findOrderNumber(0x7fffffff), nullptr);
    EXPECT_EQ(findOrderNumber(-0x7fffffff - 1), nullptr);
}

/// 33 to 35 take the operation from their rows. 80 to 85 and 110 to 119 have no operation.
TEST(OrderNumbers, OtherNumbersHaveAnOperation) {
    for (std::size_t i = 0; i < kOrderNumberCount; ++i) {
        const int number = kOrderNumbers[i].m_nNumber;
        const bool hasNone =
            (number >= 33 && number <= 35) || (number >= 80 && number <= 85) || number >= 110;
        EXPECT_EQ(isUnset(kOrderNumbers[i].m_eOperation), hasNone) << number;
    }
}

/// How the socket reads each number, and the least number of fields of an order line.
TEST(OrderNumbers, EveryNumberHasItsSocketForm) {
    const auto formOf = [](int number) {
        const auto in = [&](int first, int last) { return number >= first && number <= last; };
        if (in(0, 15)) return ESocketForm::Future;
        if (in(36, 36)) return ESocketForm::Position;
        if (in(23, 24) || in(27, 32) || in(37, 39) || in(66, 92)) return ESocketForm::Plain;
        if (in(48, 57)) return ESocketForm::Reversed;
        if (in(40, 47) || in(58, 65) || number > 92) return ESocketForm::Nothing;
        return ESocketForm::Basket;
    };
    for (int number = kFirstSwept; number <= kLastSwept; ++number)
        EXPECT_EQ(socketFormOf(number), formOf(number)) << number;
    EXPECT_EQ(socketFormOf(0x7fffffff), ESocketForm::Nothing);
    EXPECT_EQ(socketFormOf(-0x7fffffff - 1), ESocketForm::Basket);
}

TEST(OrderNumbers, PropertiesBelongToTheirNumbersOnly) {
    const struct {
        const char* name;
        bool (*has)(int);
        std::set<int> numbers;
    } kProperties[] = {
        {"basket header", isBasketHeaderOrder, {25, 26, 33}},
        {"target", isTargetOrder, {34, 35}},
        {"close first", isCloseFirstButton, numbersFrom(6, 9)},
        {"open or close", isOpenOrCloseButton, numbersFrom(10, 15)},
        {"repay", isRepayOrder, {29, 30, 31, 32, 39}},
        {"contract end", isContractEndOrder, {37, 38}},
        {"stock lock", isStockLockOrder, {56, 57}},
        {"exercise", isExerciseOrder, {54, 55, 100}},
        {"fund", isFundOrder, numbersFrom(86, 92)},
        {"fixed price", isFixedPriceFundOrder, {90, 91}},
        {"no fields",
         [](int n) { return findOrderNumber(n) && findOrderNumber(n)->has(kFlagMayLackFields); },
         {56, 57}},
    };
    for (const auto& row : kProperties) {
        for (int number = kFirstSwept; number <= kLastSwept; ++number)
            EXPECT_EQ(row.has(number), row.numbers.count(number) > 0) << row.name << ' ' << number;
    }
}

TEST(OrderNumbers, ANumberWithoutFamilyHasNoBit) {
    EXPECT_EQ(familyBit(EOrderStrategyTradeType::Stock), 1u);
    EXPECT_EQ(familyBit(EOrderStrategyTradeType::Gold), 4096u);
    for (const int number : {-1, 32, 99, 0x7fffffff})
        EXPECT_EQ(familyBit(static_cast<EOrderStrategyTradeType>(number)), 0u) << number;
}

} // namespace
