// The test repeats the tables on purpose.
#include "orderservice/records/OrderTypes.h"

#include "orderservice/records/OrderNumbers.h"

#include <gtest/gtest.h>

#include <map>
#include <utility>

namespace {

using namespace TC;

constexpr int kSweepFirst = -5;
constexpr int kSweepLast = 200;

TEST(OrderTypes, EveryNumberHasItsLineForm) {
    using EForm = EOrderLineForm;
    std::map<int, std::pair<EForm, int>> forms;
    const auto add = [&](int first, int last, EForm form, int family) {
        for (int number = first; number <= last; ++number)
            forms[number] = {form, family};
    };
    add(0, 15, EForm::Future, -1);
    add(23, 24, EForm::General, 0);
    add(27, 31, EForm::General, 3);
    add(32, 32, EForm::Amount, -1);
    add(34, 34, EForm::Whole, -1);
    add(37, 38, EForm::General, 3);
    add(39, 39, EForm::Amount, -1);
    add(48, 57, EForm::Option, 4);
    add(66, 85, EForm::General, 11);
    add(86, 92, EForm::General, 0);
    for (int number = kSweepFirst; number <= kSweepLast; ++number) {
        const COrderNumber* row = findOrderNumber(number);
        const auto expected = forms.find(number);
        ASSERT_EQ(row != nullptr && row->m_eLineForm != EForm::None, expected != forms.end()) << number;
        const int family = row != nullptr ? static_cast<int>(row->m_eLineFamily) : -1;
        EXPECT_EQ(family, expected != forms.end() ? expected->second.second : -1) << number;
        if (expected == forms.end()) continue;
        EXPECT_EQ(row->m_eLineForm, expected->second.first) << number;
    }
}

TEST(OrderTypes, ThreeNumbersHeadABasket) {
    for (int number = kSweepFirst; number <= kSweepLast; ++number) {
        EXPECT_EQ(isBasketHeaderOrder(number), number == 25 || number == 26 || number == 33) << number;
    }
}

TEST(OrderTypes, EveryNumberHasItsOperationOrNone) {
    const std::map<int, int> operations = {
        {0, 0},     {1, 1},     {2, 2},     {3, 3},     {4, 4},     {5, 5},     {6, 6},     {7, 7},
        {8, 8},     {9, 9},     {10, 10},   {11, 11},   {12, 12},   {13, 13},   {14, 0},    {15, 3},
        {23, 18},   {24, 19},   {25, 18},   {26, 19},   {27, 20},   {28, 21},   {29, 22},   {30, 23},
        {31, 24},   {32, 25},   {36, 19},   {37, 55},   {38, 56},   {39, 1021}, {48, 32},   {49, 33},
        {50, 34},   {51, 35},   {52, 36},   {53, 37},   {54, 38},   {55, 39},   {56, 40},   {57, 41},
        {66, 42},   {67, 43},   {68, 44},   {69, 45},   {70, 46},   {71, 47},   {72, 1027}, {73, 1028},
        {74, 48},   {75, 49},   {76, 1013}, {77, 1014}, {78, 1029}, {79, 1030}, {86, 26},   {87, 27},
        {88, 1025}, {89, 1026}, {90, 30},   {91, 31},   {92, 18},   {100, 50},
    };
    for (int number = kSweepFirst; number <= kSweepLast; ++number) {
        const auto row = operations.find(number);
        const int expected = row != operations.end() ? row->second : -1;
        EXPECT_EQ(static_cast<int>(orderTypeToOperationType(number)), expected) << number;
    }
    EXPECT_EQ(static_cast<int>(orderTypeToOperationType(0x7fffffff)), -1);
    EXPECT_EQ(static_cast<int>(orderTypeToOperationType(-0x7fffffff - 1)), -1);
}

} // namespace
