#pragma once

#include <cstdint>
#include <ctime>
#include <limits>
#include <string>

namespace utils {

/// The fields of local time for a second since 1970 in UTC. Reads the machine's time zone again for each
/// call, so that a change of the zone is seen. Any thread.
std::tm localFieldsOf(std::int64_t second);

/// Writes moments as local time, "yyyy-MM-dd hh:mm:ss:zzz", and reads the time zone once per second instead
/// of once per moment.
///
/// The text of a second is kept only for the moments of that second. A zone changes its offset only between
/// two whole seconds of UTC, because the rules of zones have no fractions of a second. So the text is also
/// right when daylight saving time begins or ends. If the machine gets another zone, the next second has it.
/// Moments may be in any order, because a clock can be set back.
///
/// Not thread-safe.
class CLocalTimestamp {
public:
    using CFieldsOf = std::tm (*)(std::int64_t second);

    explicit CLocalTimestamp(CFieldsOf fieldsOf = localFieldsOf) : m_pfnFieldsOf(fieldsOf) {}

    /// The text of a moment, in milliseconds since 1970 in UTC.
    std::string textOf(std::int64_t milliseconds);

private:
    CFieldsOf m_pfnFieldsOf;
    std::int64_t m_nSecond = std::numeric_limits<std::int64_t>::min(); ///< the second of the text
    std::string m_strText;                                             ///< up to the milliseconds
};

} // namespace utils
