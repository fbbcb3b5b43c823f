#pragma once

#include "orderservice/base/Log.h"

#include <string>

namespace TC {

/// Writes a line of function trading to the log, if logging is on. function: the full name, for the log. Any
/// thread.
inline void logFuncLine(utils::ELogLevel level, const char* function, const std::string& text) {
    if (utils::CLogCenter::logEnabled())
        utils::CLogCenter::log(level, utils::kStdFileLogger, nullptr, function, text);
}

} // namespace TC
