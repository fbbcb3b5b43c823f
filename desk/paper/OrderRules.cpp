#include "desk/paper/OrderRules.h"

#include "desk/paper/CoverRules.h"
#include "desk/paper/PaperFamilies.h"
#include "desk/paper/Settlement.h"
#include "orderservice/platform/InstrumentTypes.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace desk {
namespace {

using TC::EOperationType;
using TC::EPriceType;

/// A range of price types for which the record contains the limit.
struct CPriceTypeRange {
    EPriceType m_eFirst;
    EPriceType m_eLast;
};

constexpr CPriceTypeRange kLimitPriceTypes[] = {
    {EPriceType::Sell5, EPriceType::Specified},
    {EPriceType::Sell6, EPriceType::Buy10},
    {EPriceType::SpecifiedByRow, EPriceType::SpecifiedByRow},
};

template<typename E>
std::string numberText(E value) {
    return std::to_string(static_cast<int>(value));
}

/// The family's row. Not null in the rules after checkFamily.
const CPaperFamily* familyOf(const CAcceptance& a) {
    return findPaperFamily(a.m_order.m_eFamily);
}

std::string checkFamily(const CAcceptance& a) {
    if (familyOf(a) != nullptr) return {};
    return "product family " + numberText(a.m_order.m_eFamily) + " is not modelled";
}

std::string checkOperation(const CAcceptance& a) {
    const EOperationType operation = a.m_order.m_eOperation;
    const COperationRule* rule = findOperationRule(operation, a.m_order.m_eFamily);
    if (rule != nullptr && rule->m_pszRefusal != nullptr) return rule->m_pszRefusal;
    if (rule != nullptr && canSettle(operationOf(a.m_order))) return {};
    const std::string name = "operation " + numberText(operation);
    if (rule != nullptr || !isOperationOfAnyFamily(operation)) return name + " is not modelled";
    return name + " does not belong to product family " + numberText(a.m_order.m_eFamily);
}

/// Commands for options have the hedge mark too, but it has no meaning there.
bool isHedged(const TC::COrderComandParam& command) {
    return command.m_eHedgeType == TC::EQdHedgeType::Hedge &&
           command.m_eTraderType != TC::EQdTraderType::Option;
}

/// The value of a tag in the message of an algorithm. Empty without the tag, and if the value is too long to
/// be shown.
std::string tagOf(const std::string& message, const std::string& tag) {
    constexpr char kSeparator = '\x01';
    constexpr std::size_t kMostShown = 40;
    const std::string before = kSeparator + tag + '=';
    const std::size_t found = message.find(before);
    if (found == std::string::npos) return {};
    const std::size_t begin = found + before.size();
    const std::size_t end = std::min(message.find(kSeparator, begin), message.size());
    return end - begin <= kMostShown ? message.substr(begin, end - begin) : std::string();
}

std::string checkAlgorithm(const CAcceptance& a) {
    constexpr const char* kNameTag = "6061";
    if (a.m_command.m_ePlatform != kAlgorithmPlatform) return {};
    const std::string& message = a.m_command.m_strAlgoParam;
    if (message.empty()) return "the settings of the algorithm could not be read";
    const std::string name = tagOf(message, kNameTag);
    return name.empty() ? "algorithm orders are not modelled" : "algorithm " + name + " is not modelled";
}

std::string checkPlainOrder(const CAcceptance& a) {
    const TC::EOrderType orderType = a.m_record.m_eOrderType;
    if (orderType == kUnreadTradeParams) return "the trade parameters are not understood";
    if (!TC::isUnset(orderType) && orderType != TC::EOrderType::Plain) {
        return "order type " + numberText(orderType) + " is not modelled";
    }
    if (a.m_command.m_eStopLossType != TC::EQdStopLossType::None)
        return "stop-loss commands are not modelled";
    if (isHedged(a.m_command)) return "hedge commands are not modelled";
    return {};
}

std::string checkAccount(const CAcceptance& a) {
    if (!a.m_record.m_account) return "the order has no account";
    if (a.m_account == nullptr) return "unknown account " + a.m_order.m_strAccount;
    if (!familyOf(a)->accepts(a.m_account->broker))
        return a.m_account->key + " is not a " + familyOf(a)->m_pszBrokers;
    if (a.m_account->loginStatus != 0) return a.m_account->key + " is not logged in";
    return {};
}

std::string checkInstrument(const CAcceptance& a) {
    if (isMoneyOnly(a.m_order)) return {};
    if (!a.m_instrument) return "unknown instrument " + a.m_order.m_strStock;
    if (a.m_instrument->kind == familyOf(a)->m_eInstrumentKind) return {};
    return a.m_order.m_strStock + " is not a " + familyOf(a)->m_pszInstrumentKind;
}

std::string checkVolume(const CAcceptance& a) {
    if (isMoneyOnly(a.m_order)) return {};
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

/// The order matters: a rule may rely on the rules above it.
constexpr std::string (*kOrderRules[])(const CAcceptance&) = {
    checkFamily,     checkOperation, checkAlgorithm, checkPlainOrder, checkAccount,
    checkInstrument, checkVolume,    checkPrice,     coverRejection,
};

} // namespace

std::string rejectionReason(const CAcceptance& acceptance) {
    for (const auto rule : kOrderRules) {
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
    order.m_bMarket = isDirect(order) || !isLimitPriceType(record.m_ePriceType);
    if (!order.m_bMarket) order.m_nPrice = toPrice(record.m_dPrice).value_or(0);
}

void takeTerms(const CInstrumentEntry& instrument, CPaperOrder& order) {
    const EPayment payment = paymentOf(order);
    const kit::EOperationEffect effect = operationOf(order).m_eEffect;
    const bool opens =
        effect == kit::EOperationEffect::Open || effect == kit::EOperationEffect::CloseThenOpen;
    order.m_nMultiplier = std::max(1, instrument.multiplier);
    if (opens && (payment == EPayment::Margin || (payment == EPayment::Premium && !order.isBuy())))
        order.m_nMarginRate = marginRateOf(instrument);
}

int marginRateOf(const CInstrumentEntry& instrument) {
    const double rate = std::isfinite(instrument.marginRate) ? instrument.marginRate : 1.0;
    return static_cast<int>(std::lround(std::clamp(rate, 0.0, 1.0) * kRateUnit));
}

int tradingUnit(const CInstrumentEntry& instrument) {
    const bool isStar = instrument.types.count(knservice::kTypeStarMarket) != 0;
    return std::max(1, isStar ? instrument.uiUnit : instrument.unit);
}

} // namespace desk
