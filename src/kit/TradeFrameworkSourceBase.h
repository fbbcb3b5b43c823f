#pragma once

#include "orderservice/platform/TradeFrameworkSource.h"

namespace kit {

/// For a host without a trade framework: a new trading day is ignored, and there are no interfaces to save.
class CTradeFrameworkSourceBase : public knservice::CTradeFrameworkSource {
public:
    void switchTradingDate(const std::string&) override {}
    knservice::TradeInterfaceList getAllInterfaces() override { return {}; }
};

} // namespace kit
