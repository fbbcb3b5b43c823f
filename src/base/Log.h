#pragma once

#include "orderservice/base/Export.h"

#include <string>

namespace utils {

/// Log levels of the client, from the least to the most severe. In the log they have the numbers 5000, 10000,
/// 20000, 30000, 40000 and 50000.
enum class ELogLevel { Trace = 0, Debug = 1, Info = 2, Warn = 3, Error = 4, Fatal = 5 };

/// Name of the logger that the order service writes to.
inline constexpr const char* kStdFileLogger = "KNStdFile";

/// Access to the client's log. The host configures the format and the destination of the lines.
class ORDERSERVICE_EXPORT CLogCenter {
public:
    /// Switches all logging of the service on or off. It is off at the start. Any thread.
    static void setLogEnabled(bool enabled);

    /// Whether logging is on. Callers check this before they format a line. Any thread.
    static bool logEnabled();

    /// Writes one line. The line begins with the object's address and the function's full name. `text` is
    /// UTF-8. Any thread.
    static void log(ELogLevel level, const char* logger, const void* object, const char* function,
                    const std::string& text);
};

} // namespace utils
