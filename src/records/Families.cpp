#include "records/Families.h"

#include <algorithm>
#include <iterator>

namespace TC {

using EFamily = EOrderStrategyTradeType;

const CFamily kFamilies[] = {
    {EFamily::Stock,
     "stock",
     EQdTraderType::Stock,
     EQDBrokerType::Stock,
     ESettingSlot::Stock,
     2,
     {{23, 24}, {86, 92}}},
    {EFamily::Future,
     "futures speculation",
     EQdTraderType::FutureSpeculation,
     EQDBrokerType::Future,
     ESettingSlot::Future,
     1,
     {{0, 15}}},
    {EFamily::Basket,
     "basket",
     EQdTraderType::Basket,
     EQDBrokerType::Stock,
     ESettingSlot::StockBasket,
     3,
     {{25, 26}, {33, 36}, {110, 119}}},
    {EFamily::Credit,
     "credit",
     EQdTraderType::Credit,
     EQDBrokerType::Credit,
     ESettingSlot::Credit,
     3,
     {{23, 24}, {27, 32}, {37, 39}}},
    {EFamily::StockOption,
     "stock option",
     EQdTraderType::Option,
     EQDBrokerType::StockOption,
     ESettingSlot::StockOption,
     1,
     {{48, 57}}},
    {EFamily::FutureOption,
     "futures option",
     EQdTraderType::FutureOption,
     EQDBrokerType::FutureOption,
     ESettingSlot::Future,
     2,
     {{0, 15}, {100, 100}}},
    {EFamily::FutureBasket,
     "basket",
     EQdTraderType::Basket,
     EQDBrokerType::Stock,
     ESettingSlot::StockBasket,
     3,
     {{25, 26}, {33, 36}, {110, 119}}},
    {EFamily::SGT,
     "Shenzhen-Hong Kong connect",
     EQdTraderType::SGT,
     EQDBrokerType::SGT,
     ESettingSlot::SGT,
     1,
     {{23, 24}}},
    {EFamily::HGT,
     "Shanghai-Hong Kong connect",
     EQdTraderType::HGT,
     EQDBrokerType::HGT,
     ESettingSlot::HGT,
     1,
     {{23, 24}}},
    {EFamily::Neeq,
     "share-transfer market",
     EQdTraderType::Neeq,
     EQDBrokerType::Neeq,
     ESettingSlot::Neeq,
     2,
     {{23, 24}, {66, 91}}},
    {EFamily::Gold,
     "gold",
     EQdTraderType::Gold,
     EQDBrokerType::Gold,
     ESettingSlot::Gold,
     3,
     {{0, 1}, {3, 4}, {23, 24}}},
};
const std::size_t kFamilyCount = std::size(kFamilies);

bool CFamily::accepts(int orderType) const {
    return std::any_of(m_ranges, m_ranges + m_nRanges, [&](const COrderNumberRange& range) {
        return orderType >= range.m_nFirst && orderType <= range.m_nLast;
    });
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
