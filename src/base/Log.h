#pragma once

#include <string>

namespace utils {

/// Log levels of the client, least to gravest. The numbers that reach the log are 5000, 10000, 20000, 30000,
/// 40000 and 50000.
enum class ELogLevel { Trace = 0, Debug = 1, Info = 2, Warn = 3, Error = 4, Fatal = 5 };

/// Name of the logger that the order service writes to.
inline constexpr const char* kStdFileLogger = "KNStdFile";

/// Front of the client's log. How and where lines end up is configured by the host.
class CLogCenter {
public:
    /// Switches the service's logging on or off as a whole; off at first. Any thread.
    static void setLogEnabled(bool enabled);

    /// Whether anybody wants lines at all. Callers ask before they format. Any thread.
    static bool logEnabled();

    /// Writes one line, headed by the object's address and the function's full name. `text` is UTF-8. Any
    /// thread.
    static void log(ELogLevel level, const char* logger, const void* object, const char* function,
                    const std::string& text);
};

} // namespace utils
