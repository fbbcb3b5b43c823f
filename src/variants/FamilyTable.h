#pragma once

#include "orderservice/check/FamilyRules.h"
#include "orderservice/records/Enums.h"

namespace TC {

/// What is the same in all variants for the orders of one product family. Log lines, flags and the form of
/// the command differ; each variant has its own table of them.
struct CVariantFamily {
    EOrderStrategyTradeType m_eTradeType;
    CCheckFn m_pfnCheck;
    EFtSpecBtnBarType (*m_pfnButtonOf)(int orderType); ///< null: no button

    /// The button of the trading panel that corresponds to the order number.
    EFtSpecBtnBarType buttonOf(int orderType) const;
};

/// The row of a trade type; null for a number without a family.
const CVariantFamily* findVariantFamily(EOrderStrategyTradeType tradeType);

} // namespace TC
