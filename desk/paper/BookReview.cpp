#include "desk/paper/BookReview.h"

#include "desk/paper/PaperFamilies.h"
#include "desk/paper/PaperStore.h"
#include "desk/paper/TakeIn.h"

#include <algorithm>
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

/// Whether the folder's positions still say the same of it.
bool isAsInFolder(const CPaperPosition& held, const CFolderView& view) {
    for (const CPositionEntry& entry : view.m_account.positions) {
        if (entry.stockKey != held.m_strStock || entry.side != held.m_eSide) continue;
        const std::optional<CPaperPosition> taken =
            takeInPosition(held.m_strAccount, entry, view.m_instrument);
        return taken && taken->m_nVolume == held.m_nVolume && taken->m_nCost == held.m_nCost &&
               taken->m_nPaid == held.m_nPaid && taken->m_nMargin == held.m_nMargin;
    }
    return false;
}

int multiplierOf(const CPaperPosition& held, const CFolderView& view) {
    if (held.m_nMultiplier != kNotTold) return held.m_nMultiplier;
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

std::string multiplierText(const char* verb, int before, int now) {
    return std::string("was ") + verb + " with multiplier " + std::to_string(before) +
           ", but the instrument has " + std::to_string(now) +
           "; set it back in instruments.csv until nothing of it is held";
}

std::string beginAnew() {
    return std::string("; remove ") + kPaperStoreName +
           " to begin anew with the folder's funds and positions";
}

/// What is wrong with a position, or an empty text. One that gets its multiplier is marked for the store.
std::string reviewPosition(CPaperBook& book, const CPaperPosition& held, const CFolderView& view) {
    const int multiplier = multiplierOf(held, view);
    if (multiplier == kNotTold)
        return "was stored by an older desk, and its multiplier and margin are not known" + beginAnew();
    if (!isPaidAsItsKind(held, view.m_instrument.kind))
        return "was not paid for as instruments of its kind are" + beginAnew();
    if (multiplier != view.m_instrument.multiplier)
        return multiplierText("opened", multiplier, view.m_instrument.multiplier);
    if (multiplier != held.m_nMultiplier)
        book.m_positions.edit({held.m_strAccount, held.m_strStock, held.m_eSide}).m_nMultiplier = multiplier;
    return {};
}

utils::KNError refusal(const std::string& account, const std::string& what, const std::string& why) {
    return {kPaperBadRequest, "account " + account + ": " + what + ' ' + why};
}

} // namespace

utils::KNError reviewBook(CPaperBook& book, const IQuoteSource& quotes,
                          const std::vector<CAccountEntry>& accounts) {
    for (const auto& [key, held] : book.m_positions.values()) {
        if (held.m_nVolume == 0) continue;
        const auto view = viewOf(quotes, accounts, held.m_strAccount, held.m_strStock);
        if (!view) continue;
        const std::string why = reviewPosition(book, held, *view);
        if (!why.empty()) return refusal(held.m_strAccount, "position " + held.m_strStock, why);
    }
    for (const auto& [id, order] : book.m_orders.values()) {
        if (!order.isOpen()) continue;
        const auto view = viewOf(quotes, accounts, order.m_strAccount, order.m_strStock);
        if (!view || order.m_nMultiplier == view->m_instrument.multiplier) continue;
        return refusal(order.m_strAccount, "waiting order " + std::to_string(id) + " of " + order.m_strStock,
                       multiplierText("placed", order.m_nMultiplier, view->m_instrument.multiplier));
    }
    return {};
}

} // namespace desk
