#include "orderservice/kit/MoneySplit.h"

#include "orderservice/base/Unset.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>

namespace kit {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
using Amounts = std::vector<double>;

std::int64_t cents(const Amounts& amounts) {
    std::int64_t sum = 0;
    for (const double amount : amounts)
        sum += std::llround(amount * 100);
    return sum;
}

TEST(MoneySplit, DividesByWeightInWholeCents) {
    EXPECT_EQ(splitMoneyOverAccounts(1000, {6, 4}).m_amounts, (Amounts{600, 400}));
    EXPECT_EQ(splitMoneyOverAccounts(0.05, {1, 1}).m_amounts, (Amounts{0.03, 0.02}))
        << "a tie goes to the first";
    EXPECT_EQ(splitMoneyOverAccounts(100, {1, 1, 1}).m_amounts, (Amounts{33.34, 33.33, 33.33}));
    EXPECT_EQ(splitMoneyOverAccounts(0.10, {1, 2, 4}).m_amounts, (Amounts{0.01, 0.03, 0.06}))
        << "largest fraction first";
}

TEST(MoneySplit, AddsUpToTheAmountExactly) {
    const std::vector<Amounts> weights = {
        {1, 1, 1}, {0.1, 0.2, 0.7}, {1e300, 1e300}, {1e-300, 3e-300, 1}, {7, 11, 13, 17, 19}};
    for (const double amount : {0.01, 0.07, 33.33, 12345678.91, 1e11 + 0.01, 1e13}) {
        for (const Amounts& row : weights) {
            const CMoneySplit split = splitMoneyOverAccounts(amount, row);
            ASSERT_TRUE(split.m_error.isSuccess()) << amount;
            ASSERT_EQ(split.m_amounts.size(), row.size());
            EXPECT_EQ(cents(split.m_amounts), std::llround(amount * 100)) << amount;
        }
    }
}

TEST(MoneySplit, WeightThatIsNotPositiveGetsNothing) {
    const Amounts expected = {0, 10, 0, 0, 0};
    EXPECT_EQ(splitMoneyOverAccounts(10, {0, 2, -1, std::nan(""), kInfinity}).m_amounts, expected);
}

TEST(MoneySplit, AmountIsRoundedToTheCent) {
    EXPECT_EQ(splitMoneyOverAccounts(10.006, {1}).m_amounts, Amounts{10.01});
    EXPECT_EQ(splitMoneyOverAccounts(0.004, {1, 1}).m_amounts, (Amounts{0, 0}));
}

TEST(MoneySplit, FailsWithAReason) {
    const auto message = [](double amount, const Amounts& weights) {
        const CMoneySplit split = splitMoneyOverAccounts(amount, weights);
        EXPECT_TRUE(split.m_amounts.empty());
        return split.m_error.errorMsg();
    };
    EXPECT_EQ(message(TC::kUnsetDouble, {1}), "没有金额");
    EXPECT_EQ(message(-1, {1}), "金额为负数");
    EXPECT_EQ(message(1.1e13, {1}), "金额过大");
    EXPECT_EQ(message(10, {0, -1}), "没有权重大于0的账号");
    EXPECT_EQ(message(10, {}), "没有权重大于0的账号");
}

} // namespace
} // namespace kit
