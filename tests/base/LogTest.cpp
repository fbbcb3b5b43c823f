#include "orderservice/base/Log.h"

#include "tests/support/LogCapture.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

class Log : public testing::Test {
protected:
    void write(utils::ELogLevel level, const std::string& text, const void* object = nullptr) {
        utils::CLogCenter::log(level, utils::kStdFileLogger, object, "TC::CFileService::run", text);
    }

    CLogCapture capture;
};

TEST_F(Log, IsOffAtFirstAndCanBeSwitched) {
    EXPECT_FALSE(utils::CLogCenter::logEnabled());
    utils::CLogCenter::setLogEnabled(true);
    EXPECT_TRUE(utils::CLogCenter::logEnabled());
    utils::CLogCenter::setLogEnabled(false);
    EXPECT_FALSE(utils::CLogCenter::logEnabled());
}

TEST_F(Log, LineNamesObjectAndFunction) {
    const auto* object = reinterpret_cast<const void*>(static_cast<std::uintptr_t>(4660));
    write(utils::ELogLevel::Info, "读取订单", object);
    ASSERT_EQ(capture.lines().size(), 1u);
    EXPECT_EQ(capture.lines()[0].text, "[4660] [TC::CFileService::run] 读取订单");
    EXPECT_EQ(capture.lines()[0].logger, "KNStdFile");
}

TEST_F(Log, EveryLevelHasItsNumber) {
    for (int level = 0; level <= 5; ++level)
        write(static_cast<utils::ELogLevel>(level), "x");
    std::vector<int> numbers;
    for (const CLogLine& line : capture.lines())
        numbers.push_back(line.level);
    EXPECT_EQ(numbers, (std::vector<int>{5000, 10000, 20000, 30000, 40000, 50000}));
}

TEST_F(Log, LevelsBelowTheLoggersAreDropped) {
    capture.logger()->setLevel(log4cxx::Level::getWarn());
    write(utils::ELogLevel::Info, "dropped");
    write(utils::ELogLevel::Warn, "kept");
    ASSERT_EQ(capture.lines().size(), 1u);
    EXPECT_EQ(capture.lines()[0].text, "[0] [TC::CFileService::run] kept");
}

} // namespace
