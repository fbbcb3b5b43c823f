#include "records/Families.h"

#include "records/OrderNumbers.h"

#include <algorithm>
#include <iterator>

namespace TC {

using EFamily = EOrderStrategyTradeType;
using EBroker = EQDBrokerType;

const CFamily kFamilies[] = {
    {EFamily::Stock, "stock", EQdTraderType::Stock, EBroker::Stock, EBroker::Stock, ESettingSlot::Stock},
    {EFamily::Future, "futures speculation", EQdTraderType::FutureSpeculation, EBroker::Future,
     EBroker::Future, ESettingSlot::Future},
    {EFamily::Basket, "basket", EQdTraderType::Basket, EBroker::Stock, EBroker::Credit,
     ESettingSlot::StockBasket},
    {EFamily::Credit, "credit", EQdTraderType::Credit, EBroker::Credit, EBroker::Credit,
     ESettingSlot::Credit},
    {EFamily::StockOption, "stock option", EQdTraderType::Option, EBroker::StockOption, EBroker::StockOption,
     ESettingSlot::StockOption},
    {EFamily::FutureOption, "futures option", EQdTraderType::FutureOption, EBroker::FutureOption,
     EBroker::FutureOption, ESettingSlot::Future},
    {EFamily::FutureBasket, "basket", EQdTraderType::Basket, EBroker::Stock, EBroker::Stock,
     ESettingSlot::StockBasket},
    {EFamily::SGT, "Shenzhen-Hong Kong connect", EQdTraderType::SGT, EBroker::SGT, EBroker::SGT,
     ESettingSlot::SGT},
    {EFamily::HGT, "Shanghai-Hong Kong connect", EQdTraderType::HGT, EBroker::HGT, EBroker::HGT,
     ESettingSlot::HGT},
    {EFamily::Neeq, "share-transfer market", EQdTraderType::Neeq, EBroker::Neeq, EBroker::Neeq,
     ESettingSlot::Neeq},
    {EFamily::Gold, "gold", EQdTraderType::Gold, EBroker::Gold, EBroker::Gold, ESettingSlot::Gold},
};
const std::size_t kFamilyCount = std::size(kFamilies);

bool CFamily::accepts(int orderType) const {
    const COrderNumber* row = findOrderNumber(orderType);
    return row != nullptr && (row->m_nFamilies & familyBit(m_eTradeType)) != 0;
}

bool CFamily::tradesOn(EQDBrokerType broker) const {
    return broker == m_eBrokerType || broker == m_eSecondBrokerType;
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
