#pragma once

#include "orderservice/platform/TimeService.h"

namespace kit {

/// Uses the machine's clock as the trading layer's clock. Any thread.
class CTimeServiceBase : public TC::CTimeService {
public:
    std::int64_t currentTime() override;
};

} // namespace kit
