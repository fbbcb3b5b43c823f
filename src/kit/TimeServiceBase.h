#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/platform/TimeService.h"

namespace kit {

/// Uses the machine's clock as the trading layer's clock. Any thread.
class ORDERSERVICE_EXPORT CTimeServiceBase : public TC::CTimeService {
public:
    std::int64_t currentTime() override;
};

} // namespace kit
