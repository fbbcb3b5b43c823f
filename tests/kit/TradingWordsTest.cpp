#include "orderservice/kit/TradingWords.h"

#include "orderservice/records/OrderNumbers.h"

#include <gtest/gtest.h>

#include <set>

namespace kit {
namespace {

// A new row of the table needs its own word or the word of its group. The numbers below have neither: users
// see the number itself.
TEST(TradingWords, EveryOrderNumberHasAWordOrAGroup) {
    const std::set<int> withoutWord{36, 110, 111, 112, 113, 114, 115, 116, 117, 118, 119};
    for (std::size_t row = 0; row < TC::kOrderNumberCount; ++row) {
        const int number = TC::kOrderNumbers[row].m_nNumber;
        const bool isGeneral = orderWord(number) == QStringLiteral("指令") + QString::number(number);
        EXPECT_EQ(isGeneral, withoutWord.count(number) != 0) << number;
    }
}

TEST(TradingWords, NumberOfAGroupFollowsTheGroupsWord) {
    EXPECT_EQ(orderWord(23), QStringLiteral("买入"));
    EXPECT_EQ(orderWord(6), QStringLiteral("期货指令6"));
    EXPECT_EQ(orderWord(39), QStringLiteral("信用指令39"));
    EXPECT_EQ(orderWord(78), QStringLiteral("股转指令78"));
    EXPECT_EQ(orderWord(777), QStringLiteral("指令777"));
    EXPECT_EQ(orderWord(40), QStringLiteral("指令40"));
}

TEST(TradingWords, FundsHaveTheirGroupsWordAlthoughSeveralFamiliesAcceptThem) {
    for (const int number : {86, 91, 92})
        EXPECT_EQ(orderWord(number), QStringLiteral("基金指令%1").arg(number));
}

} // namespace
} // namespace kit
