#include "orderservice/socket/FailedLogins.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using TC::CFailedLogins;

TEST(FailedLogins, DelayGrowsToFourSeconds) {
    CFailedLogins logins;
    std::vector<double> delays;
    for (int i = 0; i < 9; ++i) {
        delays.push_back(logins.delay("10.0.0.1", 5));
        logins.countFailure("10.0.0.1", 5);
    }
    EXPECT_EQ(delays, (std::vector<double>{0, 0, 0, 0.5, 1, 2, 4, 4, 4}));
    for (int i = 0; i < 100'000; ++i)
        logins.countFailure("10.0.0.1", 5);
    EXPECT_EQ(logins.delay("10.0.0.1", 5), 4);
}

TEST(FailedLogins, AddressesAreTheirOwn) {
    CFailedLogins logins;
    for (int i = 0; i < 10; ++i)
        logins.countFailure("10.0.0.1", 0);
    EXPECT_EQ(logins.delay("10.0.0.2", 0), 0);
}

TEST(FailedLogins, LoopbackAddressesAreOne) {
    for (const char* address : {"127.0.0.1", "127.0.0.2", "127.255.255.254", "::1", "::ffff:127.0.0.9"})
        EXPECT_EQ(CFailedLogins::groupOf(address), "loopback") << address;
}

TEST(FailedLogins, OtherAddressesOfTheFourthVersionAreTheirOwn) {
    EXPECT_EQ(CFailedLogins::groupOf("10.0.0.1"), "10.0.0.1");
    EXPECT_EQ(CFailedLogins::groupOf("::ffff:10.0.0.1"), "10.0.0.1");
    EXPECT_EQ(CFailedLogins::groupOf("no address"), "no address");
}

TEST(FailedLogins, AddressesOfTheSixthVersionCountByTheirNetwork) {
    EXPECT_EQ(CFailedLogins::groupOf("2001:db8:1:2::5"), "2001:db8:1:2::/64");
    EXPECT_EQ(CFailedLogins::groupOf("2001:db8:1:2:ffff::6"), "2001:db8:1:2::/64");
    EXPECT_EQ(CFailedLogins::groupOf("2001:db8:1:3::5"), "2001:db8:1:3::/64");
    EXPECT_EQ(CFailedLogins::groupOf("fe80::1%lo"), "fe80::/64");
}

TEST(FailedLogins, MinuteWithoutAFailureForgets) {
    CFailedLogins logins;
    for (int i = 0; i < 10; ++i)
        logins.countFailure("10.0.0.1", i);
    EXPECT_EQ(logins.delay("10.0.0.1", 68.9), 4);
    EXPECT_EQ(logins.delay("10.0.0.1", 69), 0);
    logins.countFailure("10.0.0.1", 69);
    EXPECT_EQ(logins.delay("10.0.0.1", 69), 0);
}

TEST(FailedLogins, ConnectionsThatWaitAreBounded) {
    CFailedLogins logins;
    for (int i = 0; i < CFailedLogins::kMaxDelayed; ++i) {
        EXPECT_TRUE(logins.mayDelay("10.0.0.1"));
        logins.beginDelay("10.0.0.1");
    }
    EXPECT_FALSE(logins.mayDelay("10.0.0.1"));
    EXPECT_TRUE(logins.mayDelay("10.0.0.2"));
    logins.endDelay("10.0.0.1");
    EXPECT_TRUE(logins.mayDelay("10.0.0.1"));
}

TEST(FailedLogins, IfAddressesHaveRunOutNoOtherIsForgotten) {
    CFailedLogins logins;
    for (std::size_t i = 1; i < CFailedLogins::kMaxAddresses; ++i)
        logins.countFailure(std::to_string(i), 0);
    for (int i = 0; i < 10; ++i)
        logins.countFailure("10.0.0.1", 30);
    logins.countFailure("10.0.0.2", 61); // one too many, but all of time 0 have run out
    EXPECT_EQ(logins.delay("10.0.0.1", 61), 4);
}

TEST(FailedLogins, AddressesAreBoundedAndTheOldestIsForgotten) {
    CFailedLogins logins;
    const auto failFor = [&](const std::string& address, double now) {
        for (int i = 0; i <= CFailedLogins::kFree; ++i)
            logins.countFailure(address, now);
    };
    for (std::size_t i = 0; i < CFailedLogins::kMaxAddresses; ++i)
        failFor("address " + std::to_string(i), static_cast<double>(i) / 100);
    EXPECT_GT(logins.delay("address 0", 11), 0);
    failFor("one more", 11);
    EXPECT_EQ(logins.delay("address 0", 11), 0);
    EXPECT_GT(logins.delay("address 1", 11), 0);
    EXPECT_GT(logins.delay("one more", 11), 0);
}

} // namespace
