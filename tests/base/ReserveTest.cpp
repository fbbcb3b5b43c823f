#include "orderservice/base/Reserve.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <vector>

namespace {

template<typename Error>
struct CFailingContainer {
    void reserve(int) {
        ++calls;
        throw Error();
    }
    int calls = 0;
};

struct CTooLong : std::length_error {
    CTooLong() : std::length_error("too long") {}
};

TEST(Reserve, RoomIsMade) {
    std::vector<int> numbers;
    utils::reserveIfPossible(numbers, 1000);
    EXPECT_GE(numbers.capacity(), 1000u);
}

TEST(Reserve, MissingMemoryIsNoError) {
    CFailingContainer<std::bad_alloc> noMemory;
    EXPECT_NO_THROW(utils::reserveIfPossible(noMemory, 1000));
    EXPECT_EQ(noMemory.calls, 1);
    CFailingContainer<CTooLong> tooLong;
    EXPECT_NO_THROW(utils::reserveIfPossible(tooLong, 1000));
}

} // namespace
