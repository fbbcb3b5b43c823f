#pragma once

#include "platform/HostService.h"

#include <string>

namespace knservice {

/// The trade framework, which runs customers' strategy libraries.
class CTradeFrameworkSource : public TC::CHostService<CTradeFrameworkSource> {
public:
    static constexpr const char* kServiceName = "CTradeFrameworkSource";

    /// Tells the framework the new trading day, as the exchange client gave it. Service thread.
    virtual void switchTradingDate(const std::string& date) = 0;
};

} // namespace knservice
