#include "orderservice/records/Families.h"

#include "orderservice/base/FindRow.h"
#include "orderservice/base/Unset.h"
#include "orderservice/records/OrderNumbers.h"

#include <iterator>

namespace TC {

using EFamily = EOrderStrategyTradeType;
using EBroker = EQDBrokerType;
using ETrader = EQdTraderType;

constexpr auto kNoRemark = unsetEnum<EQdTraderType>();

const CFamily kFamilies[] = {
    {EFamily::Stock, "stock", ETrader::Stock, EBroker::Stock, EBroker::Stock, ESettingSlot::Stock,
     ETrader::Stock},
    {EFamily::Future, "futures speculation", ETrader::FutureSpeculation, EBroker::Future, EBroker::Future,
     ESettingSlot::Future, ETrader::FutureSpeculation},
    {EFamily::Basket, "basket", ETrader::Basket, EBroker::Stock, EBroker::Credit, ESettingSlot::StockBasket,
     ETrader::Basket},
    {EFamily::Credit, "credit", ETrader::Credit, EBroker::Credit, EBroker::Credit, ESettingSlot::Credit,
     ETrader::Credit},
    {EFamily::StockOption, "stock option", ETrader::Option, EBroker::StockOption, EBroker::StockOption,
     ESettingSlot::StockOption, ETrader::Option},
    {EFamily::FutureOption, "futures option", ETrader::FutureOption, EBroker::FutureOption,
     EBroker::FutureOption, ESettingSlot::Future, kNoRemark},
    {EFamily::FutureBasket, "basket", ETrader::Basket, EBroker::Stock, EBroker::Stock,
     ESettingSlot::StockBasket, kNoRemark},
    {EFamily::SGT, "Shenzhen-Hong Kong connect", ETrader::SGT, EBroker::SGT, EBroker::SGT, ESettingSlot::SGT,
     ETrader::SGT},
    {EFamily::HGT, "Shanghai-Hong Kong connect", ETrader::HGT, EBroker::HGT, EBroker::HGT, ESettingSlot::HGT,
     ETrader::HGT},
    {EFamily::Neeq, "share-transfer market", ETrader::Neeq, EBroker::Neeq, EBroker::Neeq, ESettingSlot::Neeq,
     ETrader::SGT},
    {EFamily::Gold, "gold", ETrader::Gold, EBroker::Gold, EBroker::Gold, ESettingSlot::Gold, ETrader::Gold},
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
    return utils::findRow(kFamilies, [&](const CFamily& row) { return row.m_eTradeType == tradeType; });
}

ESettingSlot settingSlotOf(EOrderStrategyTradeType tradeType) {
    const CFamily* family = findFamily(tradeType);
    return family != nullptr ? family->m_eSlot : ESettingSlot::Stock;
}

const COrderSetting& settingOfFamily(const COrderStrategyParam& strategy) {
    return strategy.setting(settingSlotOf(strategy.m_eTradeType));
}

EQdTraderType getStrategyTradeType(EOrderStrategyTradeType tradeType) {
    const CFamily* family = findFamily(tradeType);
    return family != nullptr ? family->m_eTraderType : EQdTraderType::Stock;
}

} // namespace TC
