#pragma once

#include "orderservice/platform/InstrumentTypes.h"

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

} // namespace TC
