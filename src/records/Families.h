#pragma once

#include "records/Enums.h"
#include "records/OrderSetting.h"

#include <cstddef>

namespace TC {

/// What is known of a product family apart from its check.
struct CFamily {
    EOrderStrategyTradeType m_eTradeType;
    const char* m_pszName; ///< English name, for messages that developers read
    EQdTraderType m_eTraderType;
    EQDBrokerType m_eBrokerType; ///< kind of account that the family trades on
    /// A further kind, which is tried if the group or account is not of the first; the same if there is none.
    EQDBrokerType m_eSecondBrokerType;
    ESettingSlot m_eSlot; ///< setting that the family's orders take

    /// Whether the family's check accepts the order-type number; records/OrderNumbers.h has the numbers.
    bool accepts(int orderType) const;
    /// Whether the family trades on accounts of that kind.
    bool tradesOn(EQDBrokerType broker) const;
};

extern const CFamily kFamilies[];
extern const std::size_t kFamilyCount;

/// The family of a trade type, or null for a number without one.
const CFamily* findFamily(EOrderStrategyTradeType tradeType);

/// The command's family bit; the stock bit for numbers without a family.
EQdTraderType getStrategyTradeType(EOrderStrategyTradeType tradeType);

} // namespace TC
