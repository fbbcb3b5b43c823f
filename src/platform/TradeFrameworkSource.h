#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/platform/HostService.h"
#include "orderservice/records/TradeInterface.h"

#include <string>

namespace knservice {

/// The trade framework, which runs customers' strategy libraries.
class ORDERSERVICE_EXPORT CTradeFrameworkSource : public TC::CHostService<CTradeFrameworkSource> {
public:
    static constexpr const char* kServiceName = "CTradeFrameworkSource";

    /// Tells the framework the new trading day, "yyyyMMdd", as the exchange client reported it. May be called
    /// twice for the same day. Service thread; does not throw.
    virtual void switchTradingDate(const std::string& date) = 0;

    /// The current interfaces of the framework, in its order. Null entries are ignored. The caller owns the
    /// list. The records are shared and read-only. Called on the thread that calls
    /// COrderService::saveSettings.
    virtual knservice::TradeInterfaceList getAllInterfaces() = 0;
};

} // namespace knservice
