#pragma once

#include "orderservice/base/Log.h"
#include "orderservice/base/Text.h"

#include <initializer_list>
#include <string>
#include <string_view>

namespace TC {

/// Writes a line of function trading to the log, if logging is on. parts: the pieces of the line, joined only
/// then. A line that is not UTF-8 is decoded as GBK, because the caller's text is logged before it is
/// checked. function: the full name, for the log. Any thread.
inline void logFuncLine(utils::ELogLevel level, const char* function,
                        std::initializer_list<std::string_view> parts) {
    if (!utils::CLogCenter::logEnabled()) return;
    std::string line;
    for (const std::string_view part : parts)
        line += part;
    if (!utils::isValidUtf8(line.data(), line.size())) line = UW::sToQs(line).toStdString();
    utils::CLogCenter::log(level, utils::kStdFileLogger, nullptr, function, line);
}

} // namespace TC
