#include "desk/paper/PaperFamilies.h"

#include "desk/config/Kinds.h"
#include "orderservice/base/FindRow.h"
#include "orderservice/base/Unset.h"
#include "orderservice/records/Families.h"

#include <algorithm>
#include <iterator>

namespace desk {
namespace {

using TC::EQDBrokerType;
using EFamily = TC::EQdTraderType;
using EKind = EInstrumentKind;
using EOperation = TC::EOperationType;

// The share-transfer market is missing because its commands name no instrument.
constexpr CPaperFamily kFamilies[] = {
    {EFamily::Stock, EKind::Stock, "stock", EPayment::Full, "stock account"},
    {EFamily::FutureSpeculation, EKind::Future, "future", EPayment::Margin, "futures account"},
    {EFamily::Basket, EKind::Stock, "stock", EPayment::Full, "stock or credit account"},
    {EFamily::Credit, EKind::Stock, "stock", EPayment::Full, "credit account"},
    {EFamily::Gold, EKind::Gold, "gold contract", EPayment::Margin, "gold account"},
    {EFamily::Option, EKind::StockOption, "stock option", EPayment::Premium, "stock option account"},
    {EFamily::HGT, EKind::Hgt, "stock of the Shanghai connect", EPayment::Full,
     "account of the Shanghai connect"},
    {EFamily::FutureOption, EKind::FutureOption, "futures option", EPayment::Premium,
     "futures option account"},
    {EFamily::SGT, EKind::Sgt, "stock of the Shenzhen connect", EPayment::Full,
     "account of the Shenzhen connect"},
};

constexpr int bit(EFamily family) {
    return static_cast<int>(family);
}

constexpr int kCredit = bit(EFamily::Credit);
constexpr int kGold = bit(EFamily::Gold);
constexpr int kOption = bit(EFamily::Option);
constexpr int kFutureOption = bit(EFamily::FutureOption);
constexpr int kFutures = bit(EFamily::FutureSpeculation) | kFutureOption;
constexpr int kShares = bit(EFamily::Stock) | bit(EFamily::HGT) | bit(EFamily::SGT);
constexpr int kPlain = kShares | bit(EFamily::Basket) | kCredit | kGold;

constexpr const char* kNoExercise = "exercise is not modelled";
constexpr const char* kNoCover = "covered options are not modelled";
constexpr const char* kNoLock = "locking of stocks is not modelled";
constexpr const char* kNoContract = "single credit contracts are not modelled";

// Side, effect and booking of each operation are in the table of kit/Operations.
constexpr COperationRule kOperationRules[] = {
    {EOperation::Buy, kPlain, EClosing::None, nullptr},
    {EOperation::Sell, kPlain, EClosing::EarlierFirst, nullptr},
    {EOperation::BuyAtGivenPrice, kShares, EClosing::None, nullptr},

    {EOperation::OpenLong, kFutures | kGold, EClosing::None, nullptr},
    {EOperation::CloseLongEarlier, kFutures, EClosing::Earlier, nullptr},
    {EOperation::CloseLongToday, kFutures, EClosing::Today, nullptr},
    {EOperation::OpenShort, kFutures | kGold, EClosing::None, nullptr},
    {EOperation::CloseShortEarlier, kFutures, EClosing::Earlier, nullptr},
    {EOperation::CloseShortToday, kFutures, EClosing::Today, nullptr},
    {EOperation::CloseLongTodayFirst, kFutures, EClosing::TodayFirst, nullptr},
    {EOperation::CloseLongEarlierFirst, kFutures, EClosing::EarlierFirst, nullptr},
    {EOperation::CloseShortTodayFirst, kFutures, EClosing::TodayFirst, nullptr},
    {EOperation::CloseShortEarlierFirst, kFutures, EClosing::EarlierFirst, nullptr},
    {EOperation::CloseLongTodayFirstThenOpenShort, kFutures, EClosing::TodayFirst, nullptr},
    {EOperation::CloseLongEarlierFirstThenOpenShort, kFutures, EClosing::EarlierFirst, nullptr},
    {EOperation::CloseShortTodayFirstThenOpenLong, kFutures, EClosing::TodayFirst, nullptr},
    {EOperation::CloseShortEarlierFirstThenOpenLong, kFutures, EClosing::EarlierFirst, nullptr},
    {EOperation::ExerciseFutureOption, kFutureOption, EClosing::None, kNoExercise},

    // Gold has no separate operation for volume opened today.
    {EOperation::CloseLongEarlier, kGold, EClosing::EarlierFirst, nullptr},
    {EOperation::CloseShortEarlier, kGold, EClosing::EarlierFirst, nullptr},

    {EOperation::OptionBuyOpen, kOption, EClosing::None, nullptr},
    {EOperation::OptionSellClose, kOption, EClosing::EarlierFirst, nullptr},
    {EOperation::OptionSellOpen, kOption, EClosing::None, nullptr},
    {EOperation::OptionBuyClose, kOption, EClosing::EarlierFirst, nullptr},
    {EOperation::OptionCoveredOpen, kOption, EClosing::None, kNoCover},
    {EOperation::OptionCoveredClose, kOption, EClosing::None, kNoCover},
    {EOperation::OptionExerciseCall, kOption, EClosing::None, kNoExercise},
    {EOperation::OptionExercisePut, kOption, EClosing::None, kNoExercise},
    {EOperation::OptionLock, kOption, EClosing::None, kNoLock},
    {EOperation::OptionUnlock, kOption, EClosing::None, kNoLock},

    {EOperation::MarginBuy, kCredit, EClosing::None, nullptr},
    {EOperation::ShortSell, kCredit, EClosing::None, nullptr},
    {EOperation::BuyToReturn, kCredit, EClosing::None, nullptr},
    {EOperation::ReturnShares, kCredit, EClosing::EarlierFirst, nullptr},
    {EOperation::SellToRepay, kCredit, EClosing::EarlierFirst, nullptr},
    {EOperation::RepayMoney, kCredit, EClosing::None, nullptr},
    {EOperation::EndMoneyContract, kCredit, EClosing::None, kNoContract},
    {EOperation::EndShareContract, kCredit, EClosing::None, kNoContract},
    {EOperation::RepayMoneyContract, kCredit, EClosing::None, kNoContract},
};

/// The first family of this kind. All families with the same instrument kind have the same payment.
const CPaperFamily* familyOfKind(EKind kind) {
    return utils::findRow(kFamilies, [&](const CPaperFamily& row) { return row.m_eInstrumentKind == kind; });
}

} // namespace

const CPaperFamily* findPaperFamily(TC::EQdTraderType type) {
    return utils::findRow(kFamilies, [&](const CPaperFamily& row) { return row.m_eType == type; });
}

bool CPaperFamily::accepts(EQDBrokerType broker) const {
    return std::any_of(TC::kFamilies, TC::kFamilies + TC::kFamilyCount, [&](const TC::CFamily& family) {
        return family.m_eTraderType == m_eType && family.tradesOn(broker);
    });
}

bool canTrade(EQDBrokerType broker, EKind kind) {
    return holdsKind(broker, kind) && familyOfKind(kind) != nullptr;
}

std::optional<EPayment> paymentOf(EKind kind, EPositionSide side) {
    const CPaperFamily* family = familyOfKind(kind);
    if (family == nullptr) return {};
    const bool isLong = side == EPositionSide::Long;
    if (family->m_ePayment == EPayment::Full && !isLong) return {};
    // The buyer of an option pays in full and owes nothing more.
    return family->m_ePayment == EPayment::Premium && isLong ? EPayment::Full : family->m_ePayment;
}

bool canBePaidEitherWay(EKind kind, EPositionSide side) {
    const CPaperFamily* family = familyOfKind(kind);
    return side == EPositionSide::Long && family != nullptr && family->m_ePayment == EPayment::Margin &&
           findOperationRule(TC::EOperationType::Buy, family->m_eType) != nullptr;
}

CMoney paidFor(EPayment payment, CMoney cost) {
    if (payment == EPayment::Margin) return 0;
    return payment == EPayment::Premium ? -cost : cost;
}

const COperationRule* findOperationRule(TC::EOperationType operation, TC::EQdTraderType family) {
    return utils::findRow(kOperationRules, [&](const COperationRule& rule) {
        return rule.m_eOperation == operation && (rule.m_nFamilies & bit(family)) != 0;
    });
}

const CPaperFamily* findClosingFamily(EKind kind, TC::EOperationType operation) {
    const kit::COperation* known = kit::findOperation(operation);
    if (known == nullptr || known->m_eEffect != kit::EOperationEffect::Close) return nullptr;
    return utils::findRow(kFamilies, [&](const CPaperFamily& row) {
        const COperationRule* rule = findOperationRule(operation, row.m_eType);
        return row.m_eInstrumentKind == kind && rule != nullptr && rule->m_eClosing != EClosing::None;
    });
}

const CPaperFamily* findTradingFamily(EQDBrokerType broker, EKind kind, TC::EOperationType operation) {
    return utils::findRow(kFamilies, [&](const CPaperFamily& row) {
        const COperationRule* rule = findOperationRule(operation, row.m_eType);
        return row.m_eInstrumentKind == kind && row.accepts(broker) && rule != nullptr &&
               rule->m_pszRefusal == nullptr;
    });
}

bool isOperationOfAnyFamily(TC::EOperationType operation) {
    return std::any_of(std::begin(kOperationRules), std::end(kOperationRules),
                       [&](const COperationRule& rule) { return rule.m_eOperation == operation; });
}

const kit::COperation& operationOf(const CPaperOrder& order) {
    static constexpr kit::COperation kNothing{TC::unsetEnum<TC::EOperationType>(), kit::ETradeSide::None,
                                              kit::EOperationEffect::None, kit::EBooking::Own};
    const kit::COperation* found = kit::findOperation(order.m_eOperation);
    return found != nullptr ? *found : kNothing;
}

EClosing closingOf(const CPaperOrder& order) {
    const COperationRule* rule = findOperationRule(order.m_eOperation, order.m_eFamily);
    return rule != nullptr ? rule->m_eClosing : EClosing::None;
}

EPayment paymentOf(const CPaperOrder& order) {
    const CPaperFamily* family = findPaperFamily(order.m_eFamily);
    const bool isPlain = operationOf(order).m_eEffect == kit::EOperationEffect::Trade;
    return family == nullptr || isPlain ? EPayment::Full : family->m_ePayment;
}

std::optional<CMoney> worthOf(const CPaperOrder& order, CMoney price, std::int64_t volume) {
    return amountOf(price, volume * order.m_nMultiplier);
}

bool isDirect(const CPaperOrder& order) {
    const kit::COperation* operation = kit::findOperation(order.m_eOperation);
    return operation != nullptr && operation->m_eSide == kit::ETradeSide::None;
}

bool isMoneyOnly(const CPaperOrder& order) {
    return operationOf(order).m_eEffect == kit::EOperationEffect::RepayMoney;
}

bool closesOnly(const CPaperOrder& order) {
    return closingOf(order) != EClosing::None &&
           operationOf(order).m_eEffect != kit::EOperationEffect::CloseThenOpen;
}

bool paysForClosing(const CPaperOrder& order) {
    return order.isBuy() && paymentOf(order) != EPayment::Margin;
}

bool returnsShares(const CPaperOrder& order) {
    return operationOf(order).m_eBooking == kit::EBooking::SharesReturned;
}

bool movesOwedShares(const CPaperOrder& order) {
    return returnsShares(order) || operationOf(order).m_eBooking == kit::EBooking::BorrowedShares;
}

bool takesCredit(const CPaperOrder& order) {
    const kit::EBooking booking = operationOf(order).m_eBooking;
    return booking == kit::EBooking::BorrowedMoney || booking == kit::EBooking::BorrowedShares;
}

} // namespace desk
