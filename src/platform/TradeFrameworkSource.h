#pragma once

#include "platform/HostService.h"
#include "records/TradeInterface.h"

#include <string>

namespace knservice {

/// The trade framework, which runs customers' strategy libraries.
class CTradeFrameworkSource : public TC::CHostService<CTradeFrameworkSource> {
public:
    static constexpr const char* kServiceName = "CTradeFrameworkSource";

    /// Tells the framework the new trading day, as the exchange client gave it. Service thread.
    virtual void switchTradingDate(const std::string& date) = 0;

    /// The interfaces that the framework has now, in its order; null entries are passed over. The list is the
    /// caller's, the records are shared and only read. The thread that calls COrderService::saveSettings.
    virtual knservice::TradeInterfaceList getAllInterfaces() = 0;
};

} // namespace knservice
