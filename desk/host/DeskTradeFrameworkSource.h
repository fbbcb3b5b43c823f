#pragma once

#include "platform/TradeFrameworkSource.h"

namespace desk {

/// The desk has no trade framework: nobody needs to know the trading day, and interfaces are only kept. Main
/// thread.
class CDeskTradeFrameworkSource : public knservice::CTradeFrameworkSource {
public:
    void switchTradingDate(const std::string&) override {}
    knservice::TradeInterfaceList getAllInterfaces() override { return m_interfaces; }

    void setInterfaces(knservice::TradeInterfaceList interfaces) { m_interfaces = std::move(interfaces); }

private:
    knservice::TradeInterfaceList m_interfaces;
};

} // namespace desk
