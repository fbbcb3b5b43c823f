#pragma once

#include "platform/TimeService.h"

namespace kit {

/// The machine's clock stands for the trading layer's. Any thread.
class CTimeServiceBase : public TC::CTimeService {
public:
    std::int64_t currentTime() override;
};

} // namespace kit
