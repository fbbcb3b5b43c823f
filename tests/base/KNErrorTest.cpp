#include "orderservice/base/KNError.h"

#include <gtest/gtest.h>

namespace {

TEST(KNError, DefaultIsSuccess) {
    const utils::KNError error;
    EXPECT_TRUE(error.isSuccess());
    EXPECT_EQ(error.errorId(), 0);
    EXPECT_EQ(error.errorMsg(), "");
}

TEST(KNError, AnyOtherIdIsAFailure) {
    for (const int id : {1, -1, 2147483647}) {
        const utils::KNError error(id, "资金不足");
        EXPECT_FALSE(error.isSuccess()) << id;
        EXPECT_EQ(error.errorId(), id);
        EXPECT_EQ(error.errorMsg(), "资金不足");
    }
}

TEST(KNError, ATextAloneIsNoFailure) {
    EXPECT_TRUE(utils::KNError(0, "成功").isSuccess());
}

} // namespace
