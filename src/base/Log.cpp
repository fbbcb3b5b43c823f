#include "orderservice/base/Log.h"

#include <log4cxx/level.h>
#include <log4cxx/logger.h>
#include <log4cxx/spi/location/locationinfo.h>

#include <atomic>

namespace utils {
namespace {

std::atomic<bool> s_logEnabled{false};

log4cxx::LevelPtr log4cxxLevel(ELogLevel level) {
    switch (level) {
    case ELogLevel::Trace:
        return log4cxx::Level::getTrace();
    case ELogLevel::Debug:
        return log4cxx::Level::getDebug();
    case ELogLevel::Info:
        return log4cxx::Level::getInfo();
    case ELogLevel::Warn:
        return log4cxx::Level::getWarn();
    case ELogLevel::Error:
        return log4cxx::Level::getError();
    case ELogLevel::Fatal:
        return log4cxx::Level::getFatal();
    }
    return log4cxx::Level::getInfo();
}

} // namespace

void CLogCenter::setLogEnabled(bool enabled) {
    s_logEnabled.store(enabled);
}

bool CLogCenter::logEnabled() {
    return s_logEnabled.load(std::memory_order_relaxed);
}

void CLogCenter::log(ELogLevel level, const char* logger, const void* object, const char* function,
                     const std::string& text) {
    const auto sink = log4cxx::Logger::getLogger(logger);
    const auto log4cxxLevelPtr = log4cxxLevel(level);
    if (!sink->isEnabledFor(log4cxxLevelPtr)) return;
    const auto address = static_cast<long long>(reinterpret_cast<std::intptr_t>(object));
    const std::string line = "[" + std::to_string(address) + "] [" + function + "] " + text;
    sink->forcedLog(log4cxxLevelPtr, line, log4cxx::spi::LocationInfo("", "", function, 0));
}

} // namespace utils
