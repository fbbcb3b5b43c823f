#include "desk/paper/BookReview.h"

#include "desk/paper/PaperFamilies.h"
#include "desk/paper/PaperStore.h"
#include "desk/paper/TakeIn.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <string>

namespace desk {
namespace {

constexpr int kNotTold = 0; // a multiplier that the books of an older desk lack

/// What the folder says of something in the book.
struct CFolderView {
    const CAccountEntry& m_account;
    CInstrumentEntry m_instrument;
};

/// Empty where the folder has no account that could trade it.
std::optional<CFolderView> viewOf(const IQuoteSource& quotes, const std::vector<CAccountEntry>& accounts,
                                  const std::string& account, const std::string& stock) {
    const auto entry = std::find_if(accounts.begin(), accounts.end(),
                                    [&](const CAccountEntry& each) { return each.key == account; });
    std::optional<CInstrumentEntry> instrument = quotes.instrument(stock);
    if (entry == accounts.end() || !instrument || !canTrade(entry->broker, instrument->kind)) return {};
    return CFolderView{*entry, std::move(*instrument)};
}

/// Whether the folder's positions still say the same of it: volume and cost tell the multiplier. Gold may
/// have been paid either way, and the row of an older folder does not tell which. The margin was held at the
/// rate of its day, which may have changed since.
bool isAsInFolder(const CPaperPosition& held, const CFolderView& view) {
    for (CPositionEntry entry : view.m_account.positions) {
        if (entry.stockKey != held.m_strStock || entry.side != held.m_eSide) continue;
        if (canBePaidEitherWay(view.m_instrument.kind, held.m_eSide))
            entry.paidInFull = held.m_nPaid == held.m_nCost;
        const std::optional<CPaperPosition> taken =
            takeInPosition(held.m_strAccount, entry, view.m_instrument);
        return taken && taken->m_nVolume == held.m_nVolume && taken->m_nCost == held.m_nCost &&
               taken->m_nPaid == held.m_nPaid;
    }
    return false;
}

/// How much of something an order has added to it; empty where the order says nothing of it.
using CAdded = std::function<std::optional<int>(const CPaperOrder&)>;

/// The multiplier of the latest orders that are enough for a volume: what came before them is gone. kNotTold
/// where they do not agree or are not enough.
int multiplierOfOrders(const CPaperBook& book, std::int64_t volume, const CAdded& addedBy) {
    int multiplier = kNotTold;
    const auto& orders = book.m_orders.values();
    for (auto it = orders.rbegin(); it != orders.rend() && volume > 0; ++it) {
        const CPaperOrder& order = it->second;
        const std::optional<int> added = order.m_nFilled != 0 ? addedBy(order) : std::nullopt;
        if (!added) continue;
        if (multiplier != kNotTold && multiplier != order.m_nMultiplier) return kNotTold;
        multiplier = order.m_nMultiplier;
        volume -= *added;
    }
    return volume > 0 ? kNotTold : multiplier;
}

int multiplierOfOrders(const CPaperBook& book, const CPaperPosition& held) {
    return multiplierOfOrders(book, held.m_nVolume, [&](const CPaperOrder& order) -> std::optional<int> {
        const bool isOfIt = order.m_strAccount == held.m_strAccount && order.m_strStock == held.m_strStock;
        if (!isOfIt || openedSide(order) != held.m_eSide || closesOnly(order) || movesOwedShares(order))
            return {};
        // How much of such an order opened is not known.
        return operationOf(order).m_eEffect == EOperationEffect::CloseThenOpen ? 0 : order.m_nFilled;
    });
}

int multiplierOfOrders(const CPaperBook& book, const CPaperDebt& debt) {
    return multiplierOfOrders(book, debt.m_nVolume, [&](const CPaperOrder& order) -> std::optional<int> {
        const bool isOfIt = order.m_strAccount == debt.m_strAccount && order.m_strStock == debt.m_strStock;
        if (!isOfIt || !movesOwedShares(order) || returnsShares(order)) return {};
        return order.m_nFilled;
    });
}

int multiplierOf(const CPaperBook& book, const CPaperPosition& held, const CFolderView& view) {
    if (held.m_nMultiplier != kNotTold) return held.m_nMultiplier;
    if (const int told = multiplierOfOrders(book, held); told != kNotTold) return told;
    const bool isPlainStock = paymentOf(view.m_instrument.kind, EPositionSide::Long) == EPayment::Full &&
                              !paymentOf(view.m_instrument.kind, EPositionSide::Short);
    if (isPlainStock && view.m_instrument.multiplier == 1) return 1;
    return isAsInFolder(held, view) ? view.m_instrument.multiplier : kNotTold;
}

bool isPaidAsItsKind(const CPaperPosition& held, EInstrumentKind kind) {
    if (canBePaidEitherWay(kind, held.m_eSide)) return true;
    const std::optional<EPayment> payment = paymentOf(kind, held.m_eSide);
    return payment && held.m_nPaid == paidFor(*payment, held.m_nCost);
}

std::string multiplierText(const char* verb, int before, int now, const char* until) {
    return std::string("was ") + verb + " with multiplier " + std::to_string(before) +
           ", but the instrument has " + std::to_string(now) +
           "; set it back in instruments.csv until nothing of it is " + until;
}

/// Ends a refusal that setting something back does not mend. The store is kept by all but the last way.
std::string otherWaysOut() {
    return std::string("take the account out of desk.toml, and its books stay as they are; removing ") +
           kPaperStoreName + " gives up the books of all accounts";
}

/// What is wrong with a position, or an empty text. One that gets its multiplier is marked for the store.
std::string reviewPosition(CPaperBook& book, const CPaperPosition& held, const CFolderView& view) {
    if (!isPaidAsItsKind(held, view.m_instrument.kind))
        return "was not paid for as instruments of its kind are; " + otherWaysOut();
    const int multiplier = multiplierOf(book, held, view);
    if (multiplier == kNotTold) {
        return "was stored by an older desk, and its multiplier is not known; set multiplier in "
               "instruments.csv and its row in positions.csv back to what they were when it was taken in, "
               "or " +
               otherWaysOut();
    }
    if (multiplier != view.m_instrument.multiplier)
        return multiplierText("opened", multiplier, view.m_instrument.multiplier, "held");
    if (multiplier != held.m_nMultiplier)
        book.m_positions.edit({held.m_strAccount, held.m_strStock, held.m_eSide}).m_nMultiplier = multiplier;
    return {};
}

/// The same of shares that are owed.
std::string reviewDebt(CPaperBook& book, const CPaperDebt& debt, const CFolderView& view) {
    const int multiplier =
        debt.m_nMultiplier != kNotTold ? debt.m_nMultiplier : multiplierOfOrders(book, debt);
    if (multiplier == kNotTold)
        return "was stored by an older desk, and its multiplier is not known; " + otherWaysOut();
    if (multiplier != view.m_instrument.multiplier)
        return multiplierText("sold", multiplier, view.m_instrument.multiplier, "owed");
    if (multiplier != debt.m_nMultiplier)
        book.m_debts.edit({debt.m_strAccount, debt.m_strStock}).m_nMultiplier = multiplier;
    return {};
}

utils::KNError refusal(const std::string& account, const std::string& what, const std::string& why) {
    return {kPaperBadRequest, "account " + account + ": " + what + ' ' + why};
}

utils::KNError reviewPositions(CPaperBook& book, const IQuoteSource& quotes,
                               const std::vector<CAccountEntry>& accounts) {
    for (const auto& [key, held] : book.m_positions.values()) {
        if (held.m_nVolume == 0) continue;
        const auto view = viewOf(quotes, accounts, held.m_strAccount, held.m_strStock);
        if (!view) continue;
        const std::string why = reviewPosition(book, held, *view);
        if (!why.empty()) return refusal(held.m_strAccount, "position " + held.m_strStock, why);
    }
    return {};
}

utils::KNError reviewDebts(CPaperBook& book, const IQuoteSource& quotes,
                           const std::vector<CAccountEntry>& accounts) {
    for (const auto& [key, debt] : book.m_debts.values()) {
        if (debt.m_nVolume == 0) continue;
        const auto view = viewOf(quotes, accounts, debt.m_strAccount, debt.m_strStock);
        if (!view) continue;
        const std::string why = reviewDebt(book, debt, *view);
        if (!why.empty()) return refusal(debt.m_strAccount, "debt of " + debt.m_strStock, why);
    }
    return {};
}

utils::KNError reviewOrders(CPaperBook& book, const IQuoteSource& quotes,
                            const std::vector<CAccountEntry>& accounts) {
    for (const auto& [id, order] : book.m_orders.values()) {
        if (!order.isOpen()) continue;
        const auto view = viewOf(quotes, accounts, order.m_strAccount, order.m_strStock);
        if (!view || order.m_nMultiplier == view->m_instrument.multiplier) continue;
        return refusal(order.m_strAccount, "waiting order " + std::to_string(id) + " of " + order.m_strStock,
                       multiplierText("placed", order.m_nMultiplier, view->m_instrument.multiplier, "held"));
    }
    return {};
}

} // namespace

utils::KNError reviewBook(CPaperBook& book, const IQuoteSource& quotes,
                          const std::vector<CAccountEntry>& accounts) {
    for (const auto review : {reviewPositions, reviewDebts, reviewOrders}) {
        utils::KNError error = review(book, quotes, accounts);
        if (!error.isSuccess()) return error;
    }
    return {};
}

} // namespace desk
