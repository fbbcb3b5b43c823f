#pragma once

#include "base/Clock.h"
#include "platform/TimeService.h"

namespace desk {

/// The machine's clock stands for the trading layer's. Any thread.
class CDeskTimeService : public TC::CTimeService {
public:
    std::int64_t currentTime() override { return utils::currentDateTime().toSecsSinceEpoch(); }
};

} // namespace desk
