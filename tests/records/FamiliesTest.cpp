// The test repeats the table of the families on purpose.
#include "orderservice/records/Families.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <map>
#include <set>
#include <string>
#include <utility>

namespace {

using namespace TC;

std::set<int> numbers(std::initializer_list<std::pair<int, int>> ranges) {
    std::set<int> result;
    for (const auto& [first, last] : ranges) {
        for (int number = first; number <= last; ++number)
            result.insert(number);
    }
    return result;
}

struct CRow {
    int tradeType;
    int traderType;
    int broker;
    int slot;
    std::set<int> accepted;
};

const CRow kRows[] = {
    {0, 1, 2, 0, numbers({{23, 24}, {86, 92}})},
    {1, 2, 1, 1, numbers({{0, 15}})},
    {2, 4, 2, 6, numbers({{25, 26}, {33, 36}, {110, 119}})},
    {3, 8, 3, 8, numbers({{23, 24}, {27, 32}, {37, 39}})},
    {4, 32, 6, 9, numbers({{48, 57}})},
    {5, 1024, 5, 1, numbers({{0, 15}, {100, 100}})},
    {6, 4, 2, 6, numbers({{25, 26}, {33, 36}, {110, 119}})},
    {9, 16384, 11, 15, numbers({{23, 24}})},
    {10, 128, 7, 11, numbers({{23, 24}})},
    {11, 256, 10, 10, numbers({{23, 24}, {66, 91}})},
    {12, 16, 4, 12, numbers({{0, 1}, {3, 4}, {23, 24}})},
};

TEST(Families, EveryFamilyHasItsRow) {
    EXPECT_EQ(kFamilyCount, std::size(kRows));
    for (const CRow& row : kRows) {
        const CFamily* family = findFamily(static_cast<EOrderStrategyTradeType>(row.tradeType));
        ASSERT_NE(family, nullptr) << row.tradeType;
        EXPECT_EQ(static_cast<int>(family->m_eTradeType), row.tradeType);
        EXPECT_EQ(static_cast<int>(family->m_eTraderType), row.traderType) << row.tradeType;
        EXPECT_EQ(static_cast<int>(family->m_eBrokerType), row.broker) << row.tradeType;
        EXPECT_EQ(static_cast<int>(family->m_eSlot), row.slot) << row.tradeType;
        EXPECT_STRNE(family->m_pszName, "") << row.tradeType;
    }
}

TEST(Families, EveryFamilyAcceptsItsNumbersOnly) {
    for (const CRow& row : kRows) {
        const CFamily* family = findFamily(static_cast<EOrderStrategyTradeType>(row.tradeType));
        ASSERT_NE(family, nullptr) << row.tradeType;
        for (int number = -5; number <= 200; ++number) {
            EXPECT_EQ(family->accepts(number), row.accepted.count(number) > 0)
                << row.tradeType << " " << number;
        }
    }
}

/// Baskets are also traded on credit accounts. Futures baskets are not.
TEST(Families, EveryFamilyTradesOnItsAccountsOnly) {
    constexpr int kBasket = 2, kCreditBroker = 3;
    for (const CRow& row : kRows) {
        const CFamily* family = findFamily(static_cast<EOrderStrategyTradeType>(row.tradeType));
        ASSERT_NE(family, nullptr) << row.tradeType;
        const int second = row.tradeType == kBasket ? kCreditBroker : row.broker;
        EXPECT_EQ(static_cast<int>(family->m_eSecondBrokerType), second) << row.tradeType;
        for (int broker = -1; broker <= 12; ++broker) {
            EXPECT_EQ(family->tradesOn(static_cast<EQDBrokerType>(broker)),
                      broker == row.broker || broker == second)
                << row.tradeType << ' ' << broker;
        }
    }
}

TEST(Families, OtherTradeTypesHaveNone) {
    for (const int tradeType : {-1, 7, 8, 13, 14, 100, 0x7fffffff}) {
        EXPECT_EQ(findFamily(static_cast<EOrderStrategyTradeType>(tradeType)), nullptr) << tradeType;
    }
}

TEST(Families, CommandBitIsTheFamilysOrStock) {
    const std::map<int, int> bits = {{0, 1},   {1, 2},  {2, 4},  {3, 8},     {4, 32},   {5, 1024},
                                     {6, 4},   {7, 1},  {8, 1},  {9, 16384}, {10, 128}, {11, 256},
                                     {12, 16}, {13, 1}, {99, 1}, {-1, 1}};
    for (const auto& [tradeType, bit] : bits) {
        EXPECT_EQ(static_cast<int>(getStrategyTradeType(static_cast<EOrderStrategyTradeType>(tradeType))),
                  bit)
            << tradeType;
    }
}

TEST(Families, SettingSlotIsTheFamilysOrStock) {
    for (const CRow& row : kRows)
        EXPECT_EQ(static_cast<int>(settingSlotOf(static_cast<EOrderStrategyTradeType>(row.tradeType))),
                  row.slot);
    for (const int tradeType : {-1, 7, 8, 13, 99})
        EXPECT_EQ(settingSlotOf(static_cast<EOrderStrategyTradeType>(tradeType)), ESettingSlot::Stock);
}

TEST(Families, SettingOfAStrategyIsThatOfItsSlot) {
    COrderStrategyParam strategy;
    for (int slot = 0; slot < kSettingSlots; ++slot)
        strategy.setting(static_cast<ESettingSlot>(slot)).m_strCmdLog = std::to_string(slot);
    for (const CRow& row : kRows) {
        strategy.m_eTradeType = static_cast<EOrderStrategyTradeType>(row.tradeType);
        EXPECT_EQ(settingOfFamily(strategy).m_strCmdLog, std::to_string(row.slot)) << row.tradeType;
    }
    strategy.m_eTradeType = static_cast<EOrderStrategyTradeType>(99);
    EXPECT_EQ(&settingOfFamily(strategy), &strategy.m_stockSetting);
}

/// The trader type of the commands that get a default remark. -1: the family has no default remark.
TEST(Families, DefaultRemarksAreForTheirCommands) {
    const std::map<int, int> types = {{0, 1},  {1, 2},     {2, 4},    {3, 8},      {4, 32}, {5, -1},
                                      {6, -1}, {9, 16384}, {10, 128}, {11, 16384}, {12, 16}};
    for (const auto& [tradeType, type] : types) {
        const CFamily* family = findFamily(static_cast<EOrderStrategyTradeType>(tradeType));
        ASSERT_NE(family, nullptr) << tradeType;
        EXPECT_EQ(static_cast<int>(family->m_eRemarkTraderType), type) << tradeType;
    }
}

} // namespace
