#pragma once

#include "records/Enums.h"
#include "records/OrderSetting.h"
#include "records/StrategyParam.h"

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
    /// Trader type of the command whose default remark the setting holds; not set: the family has none. The
    /// share-transfer market names the Shenzhen connect's type and not its own.
    EQdTraderType m_eRemarkTraderType;

    /// Whether the family's check accepts the order-type number; records/OrderNumbers.h has the numbers.
    bool accepts(int orderType) const;
    /// Whether the family trades on accounts of that kind.
    bool tradesOn(EQDBrokerType broker) const;
};

extern const CFamily kFamilies[];
extern const std::size_t kFamilyCount;

/// The family of a trade type, or null for a number without one.
const CFamily* findFamily(EOrderStrategyTradeType tradeType);

/// The setting that orders of a trade type take; the stock slot for a number without a family.
ESettingSlot settingSlotOf(EOrderStrategyTradeType tradeType);
/// The setting that the strategy's orders take. A part of the strategy.
const COrderSetting& settingOfFamily(const COrderStrategyParam& strategy);

/// The command's family bit; the stock bit for numbers without a family.
EQdTraderType getStrategyTradeType(EOrderStrategyTradeType tradeType);

} // namespace TC
