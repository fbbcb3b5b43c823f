#include "desk/paper/CoverRules.h"

#include "desk/paper/CreditLedger.h"
#include "desk/paper/Holds.h"
#include "desk/paper/PaperFamilies.h"

#include <iterator>

/// The rules about what an account has and owes.
namespace desk {
namespace {

constexpr int kNoVolume = -1;

std::int64_t returnable(const CAcceptance& a) {
    return returnableShares(a.m_book, a.m_order);
}

/// The volume that is available to close or to return. kNoVolume for an order that does neither, or that may
/// also open.
std::int64_t closable(const CAcceptance& a) {
    if (closesOnly(a.m_order)) return closableVolume(a.m_book, a.m_order);
    return returnsShares(a.m_order) ? returnable(a) : kNoVolume;
}

struct CClosingWords {
    EClosing m_eClosing;
    const char* m_pszAvailable;
};

constexpr CClosingWords kClosingWords[] = {
    {EClosing::Earlier, " available of earlier days"},
    {EClosing::Today, " available of today"},
    {EClosing::EarlierFirst, " available"},
    {EClosing::TodayFirst, " available"},
};

const char* availableWord(const CAcceptance& a) {
    if (operationOf(a.m_order).m_eEffect != kit::EOperationEffect::Close) return " available today";
    for (const CClosingWords& words : kClosingWords) {
        if (words.m_eClosing == closingOf(a.m_order)) return words.m_pszAvailable;
    }
    return " available";
}

const char* closingVerb(const CAcceptance& a) {
    if (operationOf(a.m_order).m_eEffect == kit::EOperationEffect::Close) return "close";
    return operationOf(a.m_order).m_eSide == kit::ETradeSide::Sell ? "sell" : "return";
}

/// Checks both sides: the position that the order closes and the position that it would add to.
std::string heldMultiplierRejection(const CPaperBook& book, const CPaperOrder& order) {
    for (const EPositionSide side : {closedSide(order), openedSide(order)}) {
        const CPaperPosition* held = book.m_positions.find({order.m_strAccount, order.m_strStock, side});
        if (held == nullptr || held->m_nVolume == 0 || held->m_nMultiplier == order.m_nMultiplier) continue;
        return "the position was opened with multiplier " + std::to_string(held->m_nMultiplier) +
               ", the instrument has " + std::to_string(order.m_nMultiplier);
    }
    return {};
}

/// Shares that are borrowed and returned must have the same multiplier.
std::string owedMultiplierRejection(const CPaperBook& book, const CPaperOrder& order) {
    const CPaperDebt* debt = book.m_debts.find({order.m_strAccount, order.m_strStock});
    if (!movesOwedShares(order) || debt == nullptr || debt->m_nVolume == 0 ||
        debt->m_nMultiplier == order.m_nMultiplier)
        return {};
    return "the shares owed were sold with multiplier " + std::to_string(debt->m_nMultiplier) +
           ", the instrument has " + std::to_string(order.m_nMultiplier);
}

std::string checkMultiplier(const CAcceptance& a) {
    return multiplierRejection(a.m_book, a.m_order);
}

std::string checkPosition(const CAcceptance& a) {
    if (!closesOnly(a.m_order)) return {};
    const std::int64_t available = closable(a);
    if (a.m_order.m_nVolume <= available) return {};
    return std::string("not enough to ") + closingVerb(a) + ": " + std::to_string(a.m_order.m_nVolume) +
           " ordered, " + std::to_string(available) + availableWord(a);
}

std::string checkSharesOwed(const CAcceptance& a) {
    if (!returnsShares(a.m_order) || a.m_order.m_nVolume <= returnable(a)) return {};
    return "fewer shares are owed: " + std::to_string(a.m_order.m_nVolume) + " to return, " +
           std::to_string(returnable(a)) + " owed";
}

std::string checkMoneyOwed(const CAcceptance& a) {
    if (operationOf(a.m_order).m_eBooking != kit::EBooking::MoneyRepaid) return {};
    return owedMoney(a.m_book, a.m_order.m_strAccount) > 0 ? "" : a.m_order.m_strAccount + " owes no money";
}

std::string checkUnit(const CAcceptance& a) {
    if (isDirect(a.m_order)) return {};
    const int unit = tradingUnit(*a.m_instrument);
    const int odd = a.m_order.m_nVolume % unit;
    const std::int64_t available = closable(a);
    if (odd == 0 || (available != kNoVolume && odd == available % unit)) return {};
    const std::string text =
        "volume " + std::to_string(a.m_order.m_nVolume) + " is not a multiple of " + std::to_string(unit);
    return available == kNoVolume ? text : text + " and does not close the odd lot";
}

std::string shortage(const char* what, CMoney needed, CMoney available) {
    if (needed <= available) return {};
    return std::string("not enough ") + what + ": needs " + moneyText(needed) + ", available " +
           moneyText(available);
}

CMoney availableFunds(const CAcceptance& a) {
    const CPaperFunds* funds = a.m_book.m_funds.find(a.m_order.m_strAccount);
    return funds != nullptr ? funds->available() : 0;
}

std::string checkNeeds(const CAcceptance& a) {
    if (isDirect(a.m_order)) return {};
    const bool isMarket = a.m_order.m_bMarket;
    const std::optional<CNeeds> needs = needsOf(a.m_book, a.m_order);
    if (!needs) return isMarket ? "not enough funds for what the book has" : "the amount is too large";
    if (needs->m_nCredit != 0)
        return shortage("credit", needs->m_nCredit, creditLeft(a.m_book, a.m_order.m_strAccount));
    const std::string text = shortage("funds", needs->m_nMoney, availableFunds(a));
    // An order that needs no money is accepted even if the account's available money is negative.
    if (text.empty() || needs->m_nMoney == 0) return {};
    return isMarket ? "not enough funds for what the book has" : text;
}

std::string checkRepayment(const CAcceptance& a) {
    if (!isMoneyOnly(a.m_order)) return {};
    if (a.m_record.m_nQuantityKind != TC::kQuantityKindPlain)
        return "quantity kind " + std::to_string(a.m_record.m_nQuantityKind) + " is not modelled";
    const std::optional<CMoney> amount = toMoney(a.m_record.m_dQuantity);
    if (!amount || *amount <= 0) return "the amount to repay is not positive or too large";
    const CMoney owed = owedMoney(a.m_book, a.m_order.m_strAccount);
    if (*amount > owed) return "repays " + moneyText(*amount) + ", but only " + moneyText(owed) + " is owed";
    return shortage("funds", *amount, availableFunds(a));
}

/// The order matters: a rule may rely on the rules above it.
constexpr std::string (*kCoverRules[])(const CAcceptance&) = {
    checkMultiplier, checkPosition, checkSharesOwed, checkMoneyOwed, checkUnit, checkNeeds, checkRepayment,
};

} // namespace

std::string multiplierRejection(const CPaperBook& book, const CPaperOrder& order) {
    const std::string reason = heldMultiplierRejection(book, order);
    return reason.empty() ? owedMultiplierRejection(book, order) : reason;
}

std::string coverRejection(const CAcceptance& acceptance) {
    for (const auto rule : kCoverRules) {
        std::string reason = rule(acceptance);
        if (!reason.empty()) return reason;
    }
    return {};
}

} // namespace desk
