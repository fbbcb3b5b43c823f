#include "base/Log.h"

#include <gtest/gtest.h>

#include <log4cxx/appenderskeleton.h>
#include <log4cxx/level.h>
#include <log4cxx/logger.h>
#include <log4cxx/spi/loggingevent.h>

#include <string>
#include <vector>

namespace {

struct CLine {
    int level;
    std::string logger, text;
};

class CLinesAppender : public log4cxx::AppenderSkeleton {
public:
    void close() override {}
    bool requiresLayout() const override { return false; }

    std::vector<CLine> lines;

protected:
    void append(const log4cxx::spi::LoggingEventPtr& event, log4cxx::helpers::Pool&) override {
        lines.push_back({event->getLevel()->toInt(), event->getLoggerName(), event->getRenderedMessage()});
    }
};

class Log : public testing::Test {
protected:
    Log()
        : logger(log4cxx::Logger::getLogger(utils::kStdFileLogger)),
          appender(std::make_shared<CLinesAppender>()) {
        logger->setLevel(log4cxx::Level::getAll());
        logger->setAdditivity(false);
        logger->addAppender(appender);
    }
    ~Log() override {
        logger->removeAppender(appender);
        utils::CLogCenter::setLogEnabled(false);
    }
    void write(utils::ELogLevel level, const std::string& text, const void* object = nullptr) {
        utils::CLogCenter::log(level, utils::kStdFileLogger, object, "TC::CFileService::run", text);
    }

    log4cxx::LoggerPtr logger;
    std::shared_ptr<CLinesAppender> appender;
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
    ASSERT_EQ(appender->lines.size(), 1u);
    EXPECT_EQ(appender->lines[0].text, "[4660] [TC::CFileService::run] 读取订单");
    EXPECT_EQ(appender->lines[0].logger, "KNStdFile");
}

TEST_F(Log, EveryLevelHasItsNumber) {
    for (int level = 0; level <= 5; ++level)
        write(static_cast<utils::ELogLevel>(level), "x");
    std::vector<int> numbers;
    for (const CLine& line : appender->lines)
        numbers.push_back(line.level);
    EXPECT_EQ(numbers, (std::vector<int>{5000, 10000, 20000, 30000, 40000, 50000}));
}

TEST_F(Log, LevelsBelowTheLoggersAreDropped) {
    logger->setLevel(log4cxx::Level::getWarn());
    write(utils::ELogLevel::Info, "dropped");
    write(utils::ELogLevel::Warn, "kept");
    ASSERT_EQ(appender->lines.size(), 1u);
    EXPECT_EQ(appender->lines[0].text, "[0] [TC::CFileService::run] kept");
}

} // namespace
