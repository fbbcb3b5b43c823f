#pragma once

#include "orderservice/base/Log.h"
#include "orderservice/base/Text.h"

#include <string>

namespace TC {

/// Writes a line of function trading to the log, if logging is on. A text that is not UTF-8 is decoded as
/// GBK, because the caller's text is logged before it is checked. function: the full name, for the log. Any
/// thread.
inline void logFuncLine(utils::ELogLevel level, const char* function, const std::string& text) {
    if (!utils::CLogCenter::logEnabled()) return;
    const bool isUtf8 = utils::isValidUtf8(text.data(), text.size());
    utils::CLogCenter::log(level, utils::kStdFileLogger, nullptr, function,
                           isUtf8 ? text : UW::sToQs(text).toStdString());
}

} // namespace TC
