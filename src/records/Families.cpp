#include "records/Families.h"

#include "records/OrderNumbers.h"

#include <algorithm>
#include <iterator>

namespace TC {

using EFamily = EOrderStrategyTradeType;

const CFamily kFamilies[] = {
    {EFamily::Stock, "stock", EQdTraderType::Stock, EQDBrokerType::Stock, ESettingSlot::Stock},
    {EFamily::Future, "futures speculation", EQdTraderType::FutureSpeculation, EQDBrokerType::Future,
     ESettingSlot::Future},
    {EFamily::Basket, "basket", EQdTraderType::Basket, EQDBrokerType::Stock, ESettingSlot::StockBasket},
    {EFamily::Credit, "credit", EQdTraderType::Credit, EQDBrokerType::Credit, ESettingSlot::Credit},
    {EFamily::StockOption, "stock option", EQdTraderType::Option, EQDBrokerType::StockOption,
     ESettingSlot::StockOption},
    {EFamily::FutureOption, "futures option", EQdTraderType::FutureOption, EQDBrokerType::FutureOption,
     ESettingSlot::Future},
    {EFamily::FutureBasket, "basket", EQdTraderType::Basket, EQDBrokerType::Stock, ESettingSlot::StockBasket},
    {EFamily::SGT, "Shenzhen-Hong Kong connect", EQdTraderType::SGT, EQDBrokerType::SGT, ESettingSlot::SGT},
    {EFamily::HGT, "Shanghai-Hong Kong connect", EQdTraderType::HGT, EQDBrokerType::HGT, ESettingSlot::HGT},
    {EFamily::Neeq, "share-transfer market", EQdTraderType::Neeq, EQDBrokerType::Neeq, ESettingSlot::Neeq},
    {EFamily::Gold, "gold", EQdTraderType::Gold, EQDBrokerType::Gold, ESettingSlot::Gold},
};
const std::size_t kFamilyCount = std::size(kFamilies);

bool CFamily::accepts(int orderType) const {
    const COrderNumber* row = findOrderNumber(orderType);
    return row != nullptr && (row->m_nFamilies & familyBit(m_eTradeType)) != 0;
}

const CFamily* findFamily(EOrderStrategyTradeType tradeType) {
    const auto family = std::find_if(std::begin(kFamilies), std::end(kFamilies),
                                     [&](const CFamily& f) { return f.m_eTradeType == tradeType; });
    return family != std::end(kFamilies) ? family : nullptr;
}

EQdTraderType getStrategyTradeType(EOrderStrategyTradeType tradeType) {
    const CFamily* family = findFamily(tradeType);
    return family != nullptr ? family->m_eTraderType : EQdTraderType::Stock;
}

} // namespace TC
