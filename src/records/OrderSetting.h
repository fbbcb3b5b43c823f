#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/base/Unset.h"
#include "orderservice/records/Enums.h"

#include <string>

namespace TC {

/// How one product family of a strategy places its orders. It contains only the fields that this library
/// reads.
struct COrderSetting {
    EPriceType m_ePriceType = EPriceType::Latest;
    EOrderType m_eOrderType = EOrderType::Plain;
    double m_dFirstLimit = kUnsetDouble;
    double m_dSecondLimit = kUnsetDouble;
    bool m_bFirstLimitOn = false;
    bool m_bSecondLimitOn = false;
    std::string m_strCmdLog; ///< default command remark, UTF-8
};

/// Slots of COrderSetting in a strategy. Both connects have two slots: strategies use HGT and SGT, function
/// trading uses FunctionHGT and FunctionSGT.
enum class ESettingSlot : int {
    Stock = 0,
    Future = 1,
    Unused2 = 2,
    Unused3 = 3,
    Unused4 = 4,
    Unused5 = 5,
    StockBasket = 6,
    FutureBasket = 7,
    Credit = 8,
    StockOption = 9,
    Neeq = 10,
    HGT = 11,
    Gold = 12,
    FunctionHGT = 13,
    FunctionSGT = 14,
    SGT = 15,
};

inline constexpr int kSettingSlots = 16;
/// The first slots, which have a default of their own in the user's configuration.
inline constexpr int kDefaultSlots = 13;

/// The user's default settings. New strategies are filled from them.
enum class EDefaultSetting : int { None, Stock, Future, Basket, Option, Neeq, HGT, Gold };

/// The default setting that a new strategy copies into the slot. None means that the slot is not changed.
ORDERSERVICE_EXPORT EDefaultSetting defaultForSlot(ESettingSlot slot);

} // namespace TC
