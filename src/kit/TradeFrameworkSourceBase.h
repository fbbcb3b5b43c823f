#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/platform/TradeFrameworkSource.h"

namespace kit {

/// For a host without a trade framework: a new trading day is ignored, and there are no interfaces to save.
class ORDERSERVICE_EXPORT CTradeFrameworkSourceBase : public knservice::CTradeFrameworkSource {
public:
    void switchTradingDate(const std::string&) override {}
    knservice::TradeInterfaceList getAllInterfaces() override { return {}; }
};

} // namespace kit
