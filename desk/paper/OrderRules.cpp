#include "desk/paper/OrderRules.h"

#include "platform/InstrumentTypes.h"

#include <algorithm>
#include <iterator>

#include <cstdio>

namespace desk {
namespace {

using TC::EOperationType;
using TC::EPriceType;

/// Runs of price types whose limit stands in the record.
struct CPriceTypeRange {
    EPriceType m_eFirst;
    EPriceType m_eLast;
};

constexpr CPriceTypeRange kLimitPriceTypes[] = {
    {EPriceType::Sell5, EPriceType::Specified},
    {EPriceType::Sell6, EPriceType::Buy10},
    {EPriceType::SpecifiedByRow, EPriceType::SpecifiedByRow},
};

bool isSpecified(EPriceType priceType) {
    return priceType == EPriceType::Specified || priceType == EPriceType::SpecifiedByRow;
}

std::string moneyText(CMoney money) {
    char text[40];
    std::snprintf(text, sizeof text, "%.4f", fromMoney(money));
    return text;
}

template<typename E>
std::string numberText(E value) {
    return std::to_string(static_cast<int>(value));
}

std::string checkFamily(const CAcceptance& a) {
    if (a.m_command.m_eTraderType == TC::EQdTraderType::Stock) return {};
    return "product family " + numberText(a.m_command.m_eTraderType) + " is not modelled";
}

std::string checkOperation(const CAcceptance& a) {
    const EOperationType operation = a.m_record.m_eOperationType;
    if (operation == EOperationType::Buy || operation == EOperationType::Sell) return {};
    return "operation " + numberText(operation) + " is not modelled";
}

std::string checkPlainOrder(const CAcceptance& a) {
    const TC::EOrderType orderType = a.m_record.m_eOrderType;
    if (!TC::isUnset(orderType) && orderType != TC::EOrderType::Plain) {
        return "order type " + numberText(orderType) + " is not modelled";
    }
    if (a.m_command.m_eStopLossType != TC::EQdStopLossType::None)
        return "stop-loss commands are not modelled";
    if (a.m_command.m_eHedgeType != TC::EQdHedgeType::None) return "hedge commands are not modelled";
    return {};
}

std::string checkAccount(const CAcceptance& a) {
    if (!a.m_record.m_account) return "the order has no account";
    if (a.m_account == nullptr) return "unknown account " + a.m_order.m_strAccount;
    if (a.m_account->broker != TC::EQDBrokerType::Stock) return a.m_account->key + " is no stock account";
    if (a.m_account->loginStatus != 0) return a.m_account->key + " is not logged in";
    return {};
}

std::string checkInstrument(const CAcceptance& a) {
    return a.m_instrument ? std::string() : "unknown instrument " + a.m_order.m_strStock;
}

std::string checkVolume(const CAcceptance& a) {
    if (TC::isUnset(a.m_record.m_nVolume)) return "the order has no volume";
    return a.m_record.m_nVolume > 0 ? std::string()
                                    : "volume " + std::to_string(a.m_record.m_nVolume) + " is not positive";
}

std::string checkPrice(const CAcceptance& a) {
    if (a.m_order.m_bMarket) return {};
    const double price = a.m_record.m_dPrice;
    if (TC::isInvalidPrice(price)) return "a limit order has no price";
    if (!(price > 0) || TC::isZero(price)) return "the price is not positive";
    if (!toPrice(price)) return "the price is finer than 0.0001 or too large";
    const std::optional<CMoney> upper = toMoney(a.m_instrument->upperLimit);
    const std::optional<CMoney> lower = toMoney(a.m_instrument->lowerLimit);
    const CMoney limit = a.m_order.m_nPrice;
    if (upper && limit > *upper)
        return "price " + moneyText(limit) + " is above the limit " + moneyText(*upper);
    if (lower && limit < *lower)
        return "price " + moneyText(limit) + " is below the limit " + moneyText(*lower);
    return {};
}

std::string checkUnit(const CAcceptance& a) {
    const int unit = tradingUnit(*a.m_instrument);
    const int odd = a.m_order.m_nVolume % unit;
    if (odd == 0 || (!a.m_order.isBuy() && odd == a.m_nAvailableVolume % unit)) return {};
    const std::string text =
        "volume " + std::to_string(a.m_order.m_nVolume) + " is no multiple of " + std::to_string(unit);
    return a.m_order.isBuy() ? text : text + " and does not close the odd lot";
}

std::string checkFunds(const CAcceptance& a) {
    if (!a.m_order.isBuy() || a.m_order.m_bMarket) return {};
    const std::optional<CMoney> needed = amountOf(a.m_order.m_nPrice, a.m_order.m_nVolume);
    if (!needed) return "the amount is too large";
    if (*needed <= a.m_nAvailableCash) return {};
    return "not enough funds: needs " + moneyText(*needed) + ", available " + moneyText(a.m_nAvailableCash);
}

std::string checkPosition(const CAcceptance& a) {
    if (a.m_order.isBuy() || a.m_order.m_nVolume <= a.m_nAvailableVolume) return {};
    return "not enough to sell: " + std::to_string(a.m_order.m_nVolume) + " ordered, " +
           std::to_string(a.m_nAvailableVolume) + " available today";
}

/// In this order: a rule may rely on those above it.
constexpr std::string (*kRules[])(const CAcceptance&) = {
    checkFamily, checkOperation, checkPlainOrder, checkAccount, checkInstrument,
    checkVolume, checkPrice,     checkPosition,   checkUnit,    checkFunds,
};

} // namespace

std::string rejectionReason(const CAcceptance& acceptance) {
    for (const auto rule : kRules) {
        std::string reason = rule(acceptance);
        if (!reason.empty()) return reason;
    }
    return {};
}

bool isLimitPriceType(EPriceType priceType) {
    return std::any_of(std::begin(kLimitPriceTypes), std::end(kLimitPriceTypes),
                       [&](const CPriceTypeRange& range) {
                           return priceType >= range.m_eFirst && priceType <= range.m_eLast;
                       });
}

void takePrice(const TC::CCodeOrderParam& record, CPaperOrder& order) {
    order.m_ePriceType = record.m_ePriceType;
    const bool hasPrice = !TC::isInvalidPrice(record.m_dPrice);
    order.m_bMarket =
        !isLimitPriceType(record.m_ePriceType) || (!hasPrice && !isSpecified(record.m_ePriceType));
    if (!order.m_bMarket) order.m_nPrice = toPrice(record.m_dPrice).value_or(0);
}

int tradingUnit(const CInstrumentEntry& instrument) {
    const bool isStar = instrument.types.count(knservice::kTypeStarMarket) != 0;
    return std::max(1, isStar ? instrument.uiUnit : instrument.unit);
}

} // namespace desk
