#pragma once

#include "platform/ExchangeClient.h"

namespace kit {

/// Instruments of a host that trades stocks only: a key that has a record is a stock. The other markets stay
/// empty, as CExchangeClient leaves them; a host that adds one also overrides hasStock.
///
/// The host answers getCodeInfo and getMaxTradingDay. Any thread, like CExchangeClient.
class CExchangeClientBase : public TC::CExchangeClient {
public:
    /// Whether getCodeInfo has a record for the key: so no order passes whose instrument is unknown.
    bool hasStock(const QString& stockKey) override { return getCodeInfo(stockKey) != nullptr; }
};

} // namespace kit
