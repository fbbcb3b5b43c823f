#include "orderservice/base/Thread.h"

#include <gtest/gtest.h>

#include <pthread.h>

#include <string>
#include <thread>

namespace {

std::string nameAfterSetting(const char* name) {
    std::string result;
    std::thread([&] {
        utils::setThreadName(name);
        char buffer[32] = {};
        pthread_getname_np(pthread_self(), buffer, sizeof buffer);
        result = buffer;
    }).join();
    return result;
}

TEST(Thread, NameReachesTheSystem) {
    EXPECT_EQ(nameAfterSetting("orderservice"), "orderservice");
}

TEST(Thread, LongNameKeepsItsFirstFifteenBytes) {
    EXPECT_EQ(nameAfterSetting("orderSocketWrapper"), "orderSocketWrap");
}

} // namespace
