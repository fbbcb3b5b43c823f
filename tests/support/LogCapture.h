#pragma once

#include "orderservice/base/Log.h"

#include <log4cxx/appenderskeleton.h>
#include <log4cxx/level.h>
#include <log4cxx/logger.h>
#include <log4cxx/spi/loggingevent.h>

#include <memory>
#include <string>
#include <vector>

/// One line that reached the log.
struct CLogLine {
    int level;
    std::string logger, text;
};

/// Collects the lines of the service's logger while it lives. It does not change whether logging is on. Its
/// destructor turns logging off.
class CLogCapture {
public:
    CLogCapture()
        : m_logger(log4cxx::Logger::getLogger(utils::kStdFileLogger)),
          m_appender(std::make_shared<CAppender>()) {
        m_logger->setLevel(log4cxx::Level::getAll());
        m_logger->setAdditivity(false);
        m_logger->addAppender(m_appender);
    }
    ~CLogCapture() {
        m_logger->removeAppender(m_appender);
        utils::CLogCenter::setLogEnabled(false);
    }
    CLogCapture(const CLogCapture&) = delete;
    CLogCapture& operator=(const CLogCapture&) = delete;

    const std::vector<CLogLine>& lines() const { return m_appender->lines; }
    const log4cxx::LoggerPtr& logger() const { return m_logger; }

private:
    class CAppender : public log4cxx::AppenderSkeleton {
    public:
        void close() override {}
        bool requiresLayout() const override { return false; }

        std::vector<CLogLine> lines;

    protected:
        void append(const log4cxx::spi::LoggingEventPtr& event, log4cxx::helpers::Pool&) override {
            lines.push_back(
                {event->getLevel()->toInt(), event->getLoggerName(), event->getRenderedMessage()});
        }
    };

    log4cxx::LoggerPtr m_logger;
    std::shared_ptr<CAppender> m_appender;
};
