#pragma once

#include <cstdint>
#include <string>

namespace TC {

/// A request to operate on a running task, and the user who made it.
struct CTaskOpRecord {
    int m_nOperation = 0;      ///< kTaskOpTerminate
    std::int64_t m_nTime = 0;  ///< CTimeService::currentTime at the time of the request
    std::string m_strUserName; ///< UTF-8
    std::string m_strRemark;   ///< UTF-8
};

} // namespace TC
