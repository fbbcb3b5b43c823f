#pragma once

#include <cstdint>
#include <string>

namespace TC {

/// What is to be done with a running task, and on whose word.
struct CTaskOpRecord {
    int m_nOperation = 0;      ///< kTaskOpTerminate
    std::int64_t m_nTime = 0;  ///< CTimeService::currentTime at the time of the request
    std::string m_strUserName; ///< UTF-8
    std::string m_strRemark;   ///< UTF-8
};

} // namespace TC
