#include "desk/paper/UsableVolume.h"

#include "desk/paper/CoverRules.h"
#include "desk/paper/CreditLedger.h"
#include "desk/paper/Holds.h"
#include "desk/paper/OrderRules.h"
#include "desk/paper/PaperFamilies.h"

#include <algorithm>
#include <cstdint>
#include <optional>

namespace desk {
namespace {

constexpr std::int64_t kMostOfOneOrder = TC::kUnsetInt - 1;

/// The order that the question is about, without a volume.
CPaperOrder orderOf(const CVolumeQuestion& question, const CPaperFamily& family) {
    CPaperOrder order;
    order.m_strAccount = question.m_account.key;
    order.m_strStock = question.m_instrument.key();
    order.m_eFamily = family.m_eType;
    order.m_eOperation = question.m_eOperation;
    order.m_nPrice = toMoney(question.m_dPrice).value_or(0);
    takeTerms(question.m_instrument, order);
    return order;
}

CMoney fundsOf(const CPaperBook& book, const std::string& account) {
    const CPaperFunds* funds = book.m_funds.find(account);
    return funds != nullptr ? funds->available() : 0;
}

/// The volume that positions and debts allow. Not set if they do not limit the order.
std::optional<std::int64_t> heldVolume(const CPaperBook& book, const CPaperOrder& order) {
    std::optional<std::int64_t> held;
    if (closesOnly(order)) held = closableVolume(book, order);
    if (returnsShares(order)) {
        const std::int64_t owed = returnableShares(book, order);
        held = held ? std::min(*held, owed) : owed;
    }
    return held ? std::optional(std::max<std::int64_t>(0, *held)) : std::nullopt;
}

/// Whether the account has the money or the credit for this volume.
bool isAffordable(const CPaperBook& book, const CBookSides* sides, CPaperOrder order, std::int64_t volume) {
    order.m_nVolume = static_cast<int>(volume);
    planClosing(book, order);
    const std::optional<CNeeds> needs = needsOf(book, order, sides);
    if (!needs) return false;
    if (needs->m_nCredit != 0) return needs->m_nCredit <= creditLeft(book, order.m_strAccount);
    return needs->m_nMoney == 0 || needs->m_nMoney <= fundsOf(book, order.m_strAccount);
}

/// The largest affordable volume up to `most`. What a volume needs does not fall when the volume grows.
std::int64_t affordableVolume(const CPaperBook& book, const CBookSides* sides, const CPaperOrder& order,
                              std::int64_t most) {
    if (isAffordable(book, sides, order, most)) return most;
    std::int64_t enough = 0;
    std::int64_t tooMuch = most;
    while (tooMuch - enough > 1) {
        const std::int64_t middle = enough + (tooMuch - enough) / 2;
        (isAffordable(book, sides, order, middle) ? enough : tooMuch) = middle;
    }
    return enough;
}

bool needsNoPrice(const CPaperOrder& order) {
    return isDirect(order) || (closesOnly(order) && !paysForClosing(order));
}

/// The largest volume up to `volume` that is a multiple of the unit, or that has the odd lot of what is held.
std::int64_t legalVolume(std::int64_t volume, int unit, const std::optional<std::int64_t>& held) {
    const std::int64_t whole = volume - volume % unit;
    const std::int64_t odd = held.value_or(0) % unit;
    return volume < odd ? whole : std::max(whole, volume - (volume - odd) % unit);
}

double repayableMoney(const CPaperBook& book, const std::string& account) {
    return fromMoney(std::max<CMoney>(0, std::min(owedMoney(book, account), fundsOf(book, account))));
}

} // namespace

double usableVolume(const CPaperBook& book, const CVolumeQuestion& question) {
    const CPaperFamily* family =
        findTradingFamily(question.m_account.broker, question.m_instrument.kind, question.m_eOperation);
    if (family == nullptr) return 0;
    const CPaperOrder order = orderOf(question, *family);
    if (isMoneyOnly(order)) return repayableMoney(book, order.m_strAccount);
    if (!multiplierRejection(book, order).empty()) return 0;
    const std::optional<std::int64_t> held = heldVolume(book, order);
    std::int64_t volume = std::min(held.value_or(kMostOfOneOrder), kMostOfOneOrder);
    if (!needsNoPrice(order)) {
        if (order.m_nPrice <= 0) return 0;
        volume = affordableVolume(book, question.m_pSides, order, volume);
    }
    if (isDirect(order)) return static_cast<double>(volume);
    return static_cast<double>(legalVolume(volume, tradingUnit(question.m_instrument), held));
}

} // namespace desk
