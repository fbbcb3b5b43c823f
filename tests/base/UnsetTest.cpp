#include "orderservice/base/Unset.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

enum class EColor : int { Red = 0, Green = 1 };

TEST(Unset, IntIsTheLargest) {
    EXPECT_EQ(TC::kUnsetInt, 2147483647);
    EXPECT_TRUE(TC::isUnset(2147483647));
    for (const int value : {0, -1, 1, 2147483646, std::numeric_limits<int>::min()}) {
        EXPECT_FALSE(TC::isUnset(value)) << value;
    }
}

TEST(Unset, EnumerationIsMinusOne) {
    EXPECT_EQ(static_cast<int>(TC::unsetEnum<EColor>()), -1);
    EXPECT_TRUE(TC::isUnset(static_cast<EColor>(-1)));
    for (const int number : {0, 1, -2, 2147483647})
        EXPECT_FALSE(TC::isUnset(static_cast<EColor>(number))) << number;
}

TEST(Unset, PriceIsTheLargestDouble) {
    EXPECT_EQ(TC::kUnsetDouble, 1.7976931348623157e308);
    EXPECT_TRUE(TC::isInvalidPrice(1.7976931348623157e308));
    const double infinity = std::numeric_limits<double>::infinity();
    for (const double price :
         {0.0, 10.5, -1.7976931348623157e308, 1.7976931348623155e308, infinity, -infinity}) {
        EXPECT_FALSE(TC::isInvalidPrice(price)) << price;
    }
    EXPECT_FALSE(TC::isInvalidPrice(std::numeric_limits<double>::quiet_NaN()));
}

TEST(Unset, ZeroHasATolerance) {
    EXPECT_EQ(TC::kPriceTolerance, 1e-5);
    for (const double value : {0.0, -0.0, 1e-5, -1e-5, 9.99e-6, -9.99e-6, 1e-300}) {
        EXPECT_TRUE(TC::isZero(value)) << value;
    }
    const double justAbove = std::nextafter(1e-5, 1.0);
    for (const double value : {justAbove, -justAbove, 1.01e-5, 1e-4, -1.0, TC::kUnsetDouble}) {
        EXPECT_FALSE(TC::isZero(value)) << value;
    }
    EXPECT_FALSE(TC::isZero(std::numeric_limits<double>::quiet_NaN()));
}

} // namespace
