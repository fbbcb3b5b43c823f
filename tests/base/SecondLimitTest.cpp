#include "orderservice/base/SecondLimit.h"

#include <gtest/gtest.h>

namespace {

TEST(SecondLimit, OnlyTheFirstEventsOfASecondPass) {
    utils::CSecondLimit limit(2);
    limit.begin(100);
    EXPECT_TRUE(limit.pass());
    EXPECT_TRUE(limit.pass());
    EXPECT_FALSE(limit.pass());
    EXPECT_FALSE(limit.pass());
    limit.begin(101);
    EXPECT_TRUE(limit.pass());
}

TEST(SecondLimit, LeftOutEventsAreCountedUntilTheyAreTaken) {
    utils::CSecondLimit limit(1);
    limit.begin(100);
    EXPECT_TRUE(limit.pass());
    EXPECT_EQ(limit.takeLeftOut(), 0);
    EXPECT_FALSE(limit.pass());
    limit.begin(101);
    EXPECT_TRUE(limit.pass());
    EXPECT_FALSE(limit.pass());
    EXPECT_EQ(limit.takeLeftOut(), 2);
    EXPECT_EQ(limit.takeLeftOut(), 0);
}

TEST(SecondLimit, SecondIsOverAfterOneSecondAndBeforeTheFirstBegin) {
    utils::CSecondLimit limit(1);
    EXPECT_TRUE(limit.isOver(100));
    limit.begin(100);
    EXPECT_FALSE(limit.isOver(100.99));
    EXPECT_TRUE(limit.isOver(101));
}

} // namespace
