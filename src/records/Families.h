#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/records/Enums.h"
#include "orderservice/records/OrderSetting.h"
#include "orderservice/records/StrategyParam.h"

#include <cstddef>

namespace TC {

/// The properties of a product family, without its check.
struct ORDERSERVICE_EXPORT CFamily {
    EOrderStrategyTradeType m_eTradeType;
    const char* m_pszName; ///< English name, for messages that developers read
    EQdTraderType m_eTraderType;
    EQDBrokerType m_eBrokerType; ///< kind of account that the family trades on
    /// Second kind of account. It is tried if the group or account does not have the first kind. Equal to the
    /// first kind if the family has only one.
    EQDBrokerType m_eSecondBrokerType;
    ESettingSlot m_eSlot; ///< setting that the family's orders use
    /// Trader type of the command whose default remark is in the setting; not set if the family has no
    /// default remark. For the share-transfer market it is the type of the Shenzhen connect, not its own
    /// type.
    EQdTraderType m_eRemarkTraderType;

    /// Whether the family's check accepts the order-type number. The numbers are in records/OrderNumbers.h.
    bool accepts(int orderType) const;
    /// Whether the family trades on accounts of this kind.
    bool tradesOn(EQDBrokerType broker) const;
};

extern ORDERSERVICE_EXPORT const CFamily kFamilies[];
extern ORDERSERVICE_EXPORT const std::size_t kFamilyCount;

/// The family of a trade type, or null for a number without a family.
ORDERSERVICE_EXPORT const CFamily* findFamily(EOrderStrategyTradeType tradeType);

/// The setting slot that orders of a trade type use; the stock slot for a number without a family.
ORDERSERVICE_EXPORT ESettingSlot settingSlotOf(EOrderStrategyTradeType tradeType);
/// The setting that the strategy's orders use. The reference is to a member of the strategy.
ORDERSERVICE_EXPORT const COrderSetting& settingOfFamily(const COrderStrategyParam& strategy);

/// The command's family bit; the stock bit for numbers without a family.
ORDERSERVICE_EXPORT EQdTraderType getStrategyTradeType(EOrderStrategyTradeType tradeType);

} // namespace TC
