#pragma once

#include "platform/HostService.h"
#include "records/TradeInterface.h"

#include <string>

namespace knservice {

/// The trade framework, which runs customers' strategy libraries.
class CTradeFrameworkSource : public TC::CHostService<CTradeFrameworkSource> {
public:
    static constexpr const char* kServiceName = "CTradeFrameworkSource";

    /// Tells the framework the new trading day, "yyyyMMdd", as the exchange client gave it. May be told the
    /// same day twice. Service thread; does not throw.
    virtual void switchTradingDate(const std::string& date) = 0;

    /// The interfaces that the framework has now, in its order; null entries are ignored. The list belongs to
    /// the caller; the records are shared and only read. Called on the thread that calls
    /// COrderService::saveSettings.
    virtual knservice::TradeInterfaceList getAllInterfaces() = 0;
};

} // namespace knservice
