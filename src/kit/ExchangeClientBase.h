#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/platform/ExchangeClient.h"

namespace kit {

/// The instruments of a host that trades stocks only: every key that has a record is a stock. The other
/// markets are empty, as in CExchangeClient. A host that adds a market also overrides hasStock.
///
/// The host implements getCodeInfo and getMaxTradingDay. Any thread, like CExchangeClient.
class ORDERSERVICE_EXPORT CExchangeClientBase : public TC::CExchangeClient {
public:
    /// Whether getCodeInfo has a record for the key. So an order with an unknown instrument is refused.
    bool hasStock(const QString& stockKey) override { return getCodeInfo(stockKey) != nullptr; }
};

} // namespace kit
