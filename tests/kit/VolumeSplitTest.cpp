#include "orderservice/kit/VolumeSplit.h"

#include "orderservice/base/Unset.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>
#include <numeric>
#include <random>

using kit::splitOverAccounts;

namespace {

const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInfinity = std::numeric_limits<double>::infinity();

std::vector<int> split(int volume, const std::vector<double>& weights, int unit) {
    return splitOverAccounts(volume, weights, unit).m_volumes;
}

double randomWeight(std::mt19937& random) {
    switch (random() % 8) {
    case 0:
        return 0;
    case 1:
        return -1;
    case 2:
        return kNaN;
    case 3:
        return DBL_MAX;
    case 4:
        return DBL_MIN;
    default:
        return std::uniform_real_distribution<>(0.0, 10.0)(random);
    }
}

std::string failure(int volume, const std::vector<double>& weights) {
    return splitOverAccounts(volume, weights, 100).m_error.errorMsg();
}

} // namespace

TEST(VolumeSplit, DividesByWeightInWholeUnits) {
    EXPECT_EQ(split(1000, {1, 1}, 100), (std::vector<int>{500, 500}));
    EXPECT_EQ(split(1000, {0.7, 0.2, 0.1}, 100), (std::vector<int>{700, 200, 100}));
    EXPECT_EQ(split(7, {3, 4}, 1), (std::vector<int>{3, 4}));
}

TEST(VolumeSplit, UnitsLeftOverGoToTheLargestFractions) {
    EXPECT_EQ(split(1000, {1, 2, 4}, 100), (std::vector<int>{100, 300, 600})); // units: 1.43, 2.86, 5.71
}

TEST(VolumeSplit, EqualFractionsGoToTheEarlierAccount) {
    EXPECT_EQ(split(100, {1, 1, 1}, 100), (std::vector<int>{100, 0, 0}));
    EXPECT_EQ(split(500, {1, 1, 1}, 100), (std::vector<int>{200, 200, 100}));
    EXPECT_EQ(split(400, {0.1, 0.1, 0.1}, 100), (std::vector<int>{200, 100, 100}));
}

TEST(VolumeSplit, LessThanAUnitGoesToTheLargestWeight) {
    EXPECT_EQ(split(1050, {1, 4}, 100), (std::vector<int>{200, 850}));
    EXPECT_EQ(split(50, {1, 2, 2}, 100), (std::vector<int>{0, 50, 0}));
}

TEST(VolumeSplit, WeightThatIsNotAPositiveNumberGetsNothing) {
    EXPECT_EQ(split(300, {0, 1, -5, kNaN, kInfinity, 2}, 100), (std::vector<int>{0, 100, 0, 0, 0, 200}));
}

TEST(VolumeSplit, VolumeThatIsNotSetOrNegativeFails) {
    for (const int volume : {TC::kUnsetInt, -1, std::numeric_limits<int>::min()}) {
        const auto result = splitOverAccounts(volume, {1, 1}, 100);
        EXPECT_FALSE(result.m_error.isSuccess());
        EXPECT_FALSE(result.m_error.errorMsg().empty());
        EXPECT_TRUE(result.m_volumes.empty());
    }
}

TEST(VolumeSplit, VolumeWithoutAPositiveWeightFails) {
    EXPECT_FALSE(splitOverAccounts(100, {0, kNaN}, 100).m_error.isSuccess());
    EXPECT_FALSE(splitOverAccounts(100, {}, 100).m_error.isSuccess());
    EXPECT_EQ(split(0, {0, kNaN}, 100), (std::vector<int>{0, 0}));
}

/// These texts end the report of a failed split, which is in Chinese.
TEST(VolumeSplit, ReasonsAreInTheUsersLanguage) {
    EXPECT_EQ(failure(TC::kUnsetInt, {1}), "没有数量");
    EXPECT_EQ(failure(-1, {1}), "数量为负数");
    EXPECT_EQ(failure(100, {0}), "没有权重大于0的账号");
}

TEST(VolumeSplit, UnitBelowOneIsTreatedAsOne) {
    EXPECT_EQ(split(3, {1, 2}, 0), (std::vector<int>{1, 2}));
    EXPECT_EQ(split(3, {1, 2}, -100), (std::vector<int>{1, 2}));
}

TEST(VolumeSplit, SumIsAlwaysTheVolumeAndOnlyOneAccountHasAnOddLot) {
    std::mt19937 random(20260105);
    for (int round = 0; round < 20000; ++round) {
        std::vector<double> weights(1 + random() % 12);
        for (double& weight : weights)
            weight = randomWeight(random);
        weights[random() % weights.size()] = 1;
        const int units[] = {1, 10, 100, 200, 1000};
        const int unit = units[random() % 5];
        const int volume = static_cast<int>(random() % (round % 3 == 0 ? 0x7fffffffu : 5000u));

        const auto result = splitOverAccounts(volume, weights, unit);
        ASSERT_TRUE(result.m_error.isSuccess());
        ASSERT_EQ(result.m_volumes.size(), weights.size());
        ASSERT_EQ(std::accumulate(result.m_volumes.begin(), result.m_volumes.end(), 0LL), volume);
        int oddLots = 0;
        for (std::size_t i = 0; i < weights.size(); ++i) {
            ASSERT_GE(result.m_volumes[i], 0);
            if (!(weights[i] > 0)) {
                ASSERT_EQ(result.m_volumes[i], 0);
            }
            if (result.m_volumes[i] % unit != 0) ++oddLots;
        }
        ASSERT_LE(oddLots, 1);
    }
}

TEST(VolumeSplit, EachPartIsWithinAUnitOfTheExactShare) {
    std::mt19937 random(7);
    for (int round = 0; round < 5000; ++round) {
        std::vector<double> weights(2 + random() % 8);
        for (double& weight : weights)
            weight = std::uniform_real_distribution<>(0.01, 10.0)(random);
        const int volume = static_cast<int>(random() % 10000) * 100;
        const double sum = std::accumulate(weights.begin(), weights.end(), 0.0);
        const std::vector<int> volumes = split(volume, weights, 100);
        for (std::size_t i = 0; i < weights.size(); ++i) {
            ASSERT_LT(std::fabs(volumes[i] - volume * weights[i] / sum), 100.001);
        }
    }
}

namespace {

using CClosable = std::vector<std::int64_t>;

std::vector<int> closing(int volume, const std::vector<double>& weights, const CClosable& closable,
                         kit::EFirstAccount first = kit::EFirstAccount::MayBeLeftOut, int unit = 1) {
    return kit::splitClosing(volume, weights, unit, closable, first).m_volumes;
}

constexpr auto kMustClose = kit::EFirstAccount::MustClose;

} // namespace

TEST(ClosingSplit, WeightsDecideIfEachAccountCanCloseItsPart) {
    EXPECT_EQ(closing(3, {2, 1}, {2, 1}), (std::vector<int>{2, 1}));
    EXPECT_EQ(closing(30, {2, 1}, {50, 50}), (std::vector<int>{20, 10}));
    EXPECT_EQ(closing(1, {1, 2}, {5, 5}), (std::vector<int>{0, 1}));
}

TEST(ClosingSplit, VolumeThatAnAccountCannotCloseGoesToTheOthers) {
    EXPECT_EQ(closing(6, {1, 1, 1}, {0, 9, 9}), (std::vector<int>{0, 3, 3}));
    EXPECT_EQ(closing(6, {1, 1, 1}, {1, 9, 9}), (std::vector<int>{1, 3, 2}));
    EXPECT_EQ(closing(10, {9, 1}, {4, 9}), (std::vector<int>{4, 6}));
    EXPECT_EQ(closing(1, {2, 1}, {0, 1}), (std::vector<int>{0, 1}));
}

TEST(ClosingSplit, VolumeAboveAllPositionsIsDividedByWeight) {
    EXPECT_EQ(closing(6, {1, 1}, {0, 5}), (std::vector<int>{3, 3}));
    EXPECT_EQ(closing(2, {1, 1}, {0, 0}), (std::vector<int>{1, 1}));
}

TEST(ClosingSplit, OddLotIsClosedCompletelyOrNotAtAll) {
    EXPECT_EQ(closing(200, {1, 1}, {150, 50}, {}, 100), (std::vector<int>{150, 50}));
    EXPECT_EQ(closing(200, {1, 1}, {250, 50}, {}, 100), (std::vector<int>{200, 0}));
    EXPECT_EQ(closing(200, {1, 1}, {150, 60}, {}, 100), (std::vector<int>{100, 100})) << "by weight";
}

TEST(ClosingSplit, FirstAccountThatMustCloseGetsAUnitIfItHoldsOne) {
    EXPECT_EQ(closing(1, {1, 2}, {5, 5}, kMustClose), (std::vector<int>{1, 0}));
    EXPECT_EQ(closing(2, {1, 9}, {5, 5}, kMustClose), (std::vector<int>{1, 1}));
    EXPECT_EQ(closing(1, {1, 2}, {0, 5}, kMustClose), (std::vector<int>{0, 1}));
    EXPECT_EQ(closing(3, {2, 1}, {2, 1}, kMustClose), (std::vector<int>{2, 1}));
    EXPECT_EQ(closing(0, {1, 2}, {5, 5}, kMustClose), (std::vector<int>{0, 0}));
}

TEST(ClosingSplit, FailsWithTheReasonsOfTheSplitByWeight) {
    EXPECT_TRUE(closing(-1, {1, 2}, {5, 5}).empty());
    EXPECT_TRUE(closing(TC::kUnsetInt, {1, 2}, {5, 5}).empty());
    EXPECT_TRUE(closing(1, {0, 0}, {5, 5}).empty());
}

TEST(ClosingSplit, SumIsAlwaysTheVolumeAndASplitThatFitsIsNotChanged) {
    std::mt19937 random(20260106);
    for (int round = 0; round < 20000; ++round) {
        std::vector<double> weights(1 + random() % 6);
        CClosable closable;
        for (double& weight : weights) {
            weight = randomWeight(random);
            closable.push_back(static_cast<std::int64_t>(random() % 20));
        }
        weights[random() % weights.size()] = 1;
        const int unit = round % 4 == 0 ? 5 : 1;
        const int volume = static_cast<int>(random() % 40);
        const auto first = round % 2 == 0 ? kMustClose : kit::EFirstAccount::MayBeLeftOut;

        const std::vector<int> byWeight = split(volume, weights, unit);
        const std::vector<int> volumes = closing(volume, weights, closable, first, unit);
        ASSERT_EQ(volumes.size(), weights.size());
        ASSERT_EQ(std::accumulate(volumes.begin(), volumes.end(), 0LL), volume);
        bool fits = true;
        bool isCovered = true;
        for (std::size_t i = 0; i < weights.size(); ++i) {
            ASSERT_GE(volumes[i], 0);
            fits = fits && byWeight[i] <= closable[i];
            isCovered = isCovered && volumes[i] <= closable[i];
        }
        if (!fits) continue;
        ASSERT_TRUE(isCovered);
        if (first != kMustClose || byWeight[0] > 0) {
            ASSERT_EQ(volumes, byWeight);
        }
    }
}
