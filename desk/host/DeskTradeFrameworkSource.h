#pragma once

#include "platform/TradeFrameworkSource.h"

namespace desk {

/// The desk has no trade framework: nobody needs to know the trading day.
class CDeskTradeFrameworkSource : public knservice::CTradeFrameworkSource {
public:
    void switchTradingDate(const std::string&) override {}
};

} // namespace desk
