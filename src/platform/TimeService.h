#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/platform/HostService.h"

#include <cstdint>

namespace TC {

/// The trading layer's time.
class ORDERSERVICE_EXPORT CTimeService : public CHostService<CTimeService> {
public:
    static constexpr const char* kServiceName = "CTimeService";

    /// Seconds since 1970-01-01 UTC on the trading layer's clock. Any thread, also with the registry locked.
    /// Returns at once and does not throw.
    virtual std::int64_t currentTime() = 0;
    /// The same moment in milliseconds. By default currentTime, so without a fraction of a second.
    virtual std::int64_t currentMilliseconds() { return currentTime() * 1000; }
};

} // namespace TC
