#pragma once

#include "orderservice/platform/InstrumentTypes.h"
#include "orderservice/records/Enums.h"
#include "orderservice/records/Instrument.h"

#include <optional>

namespace TC {

/// Money for one unit of volume and of price: the contract multiplier. For an instrument with a fixed price
/// of 100 the price is not used.
struct CMoneyRule {
    double m_dMultiplier = 1;
    bool m_bParPriced = false;

    double money(double volume, double price) const {
        return m_bParPriced ? volume * knservice::kParPrice : volume * price * m_dMultiplier;
    }
};

/// The rule of an instrument. Not set for a contract without a multiplier: a value that is wrong by a factor
/// must not be shown. `detail` may be empty. Asks the host for the type of the instrument. Main thread.
std::optional<CMoneyRule> moneyRuleOf(const CInstrumentDetailPtr& detail, const CStockInfo& stock,
                                      EQdTraderType traderType);

} // namespace TC
