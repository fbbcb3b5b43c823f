#include "orderservice/variants/FamilyTable.h"

#include "orderservice/base/FindRow.h"
#include "orderservice/records/OrderTypes.h"

namespace TC {
namespace {

using EFamily = EOrderStrategyTradeType;

EFtSpecBtnBarType buttonOfFutureOrder(int orderType) {
    if (isCloseFirstButton(orderType)) return EFtSpecBtnBarType::CloseFirst;
    if (isOpenOrCloseButton(orderType)) return EFtSpecBtnBarType::OpenOrClose;
    return EFtSpecBtnBarType::OpenClose;
}

constexpr CVariantFamily kVariantFamilies[] = {
    {EFamily::Stock, checkStock, nullptr},
    {EFamily::Future, checkFuture, buttonOfFutureOrder},
    {EFamily::Basket, checkBasket, nullptr},
    {EFamily::Credit, checkCredit, nullptr},
    {EFamily::StockOption, checkOption, nullptr},
    {EFamily::FutureOption, checkFutureOption, nullptr},
    {EFamily::FutureBasket, checkBasket, nullptr},
    {EFamily::SGT, checkSgt, nullptr},
    {EFamily::HGT, checkHgt, nullptr},
    {EFamily::Neeq, checkNeeq, nullptr},
    {EFamily::Gold, checkGold, nullptr},
};

} // namespace

EFtSpecBtnBarType CVariantFamily::buttonOf(int orderType) const {
    return m_pfnButtonOf != nullptr ? m_pfnButtonOf(orderType) : EFtSpecBtnBarType::None;
}

const CVariantFamily* findVariantFamily(EOrderStrategyTradeType tradeType) {
    return utils::findRow(kVariantFamilies,
                          [&](const CVariantFamily& row) { return row.m_eTradeType == tradeType; });
}

} // namespace TC
