#include "orderservice/base/Address.h"

#include <gtest/gtest.h>

namespace {

TEST(Address, LoopbackOfBothVersions) {
    for (const char* ip :
         {"127.0.0.1", "127.0.0.0", "127.255.255.255", "::1", "::ffff:127.0.0.9", "::ffff:7f00:1"})
        EXPECT_TRUE(utils::isLoopbackAddress(ip)) << ip;
}

TEST(Address, OthersAreNoLoopback) {
    for (const char* ip : {"", "126.255.255.255", "128.0.0.0", "0.0.0.0", "10.0.0.127", "::", "::2",
                           "fe80::1%lo", "::ffff:10.0.0.1", "::ffff:128.0.0.1"})
        EXPECT_FALSE(utils::isLoopbackAddress(ip)) << ip;
}

TEST(Address, TextsThatAreNoAddressAreNoLoopback) {
    for (const char* text : {"localhost", "127", "127.1", "127.0.0.1:1", "127.0.0.256", " 127.0.0.1",
                             "127.0.0.1 ", "127.evil.example", "loopback"})
        EXPECT_FALSE(utils::isLoopbackAddress(text)) << text;
}

TEST(Address, ListenerOfThisMachineOnly) {
    for (const char* address : {"127.0.0.1:15150", "127.9.9.9:1", "127.0.0.1", "127.0.0.1:", "127.0.0.1:x"})
        EXPECT_TRUE(utils::isLoopbackListener(address)) << address;
}

TEST(Address, ListenersOfOtherMachinesToo) {
    for (const char* address : {"", ":1", "0.0.0.0:1", "10.0.0.7:127", "128.0.0.1:15150", "localhost:15150",
                                "127.1:15150", "127.evil.example:1", "127.0.0.1.example.org:15150",
                                "::1:15150", "[::1]:15150", "::ffff:127.0.0.1:1"})
        EXPECT_FALSE(utils::isLoopbackListener(address)) << address;
}

} // namespace
