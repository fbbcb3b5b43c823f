#pragma once

#include "platform/TradeFrameworkSource.h"

namespace kit {

/// No trade framework: nobody needs to know the trading day, and there are no interfaces to save.
class CTradeFrameworkSourceBase : public knservice::CTradeFrameworkSource {
public:
    void switchTradingDate(const std::string&) override {}
    knservice::TradeInterfaceList getAllInterfaces() override { return {}; }
};

} // namespace kit
