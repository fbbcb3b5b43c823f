#pragma once

#include "orderservice/platform/TradeFrameworkSource.h"

namespace desk {

/// A trade framework for a desk that has none: it ignores the trading day and only stores the interfaces.
/// Main thread.
class CDeskTradeFrameworkSource : public knservice::CTradeFrameworkSource {
public:
    void switchTradingDate(const std::string&) override {}
    knservice::TradeInterfaceList getAllInterfaces() override { return m_interfaces; }

    void setInterfaces(knservice::TradeInterfaceList interfaces) { m_interfaces = std::move(interfaces); }

private:
    knservice::TradeInterfaceList m_interfaces;
};

} // namespace desk
