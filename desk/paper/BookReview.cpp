#include "desk/paper/BookReview.h"

#include "desk/paper/PaperFamilies.h"
#include "desk/paper/PaperStore.h"

#include <algorithm>
#include <optional>
#include <string>

namespace desk {
namespace {

/// The instrument of a record in the book. Empty if the folder has no account that could trade it.
std::optional<CInstrumentEntry> tradableBy(const IQuoteSource& quotes,
                                           const std::vector<CAccountEntry>& accounts,
                                           const std::string& account, const std::string& stock) {
    const auto entry = std::find_if(accounts.begin(), accounts.end(),
                                    [&](const CAccountEntry& each) { return each.key == account; });
    const std::optional<CInstrumentEntry> instrument = quotes.instrument(stock);
    if (entry == accounts.end() || !instrument || !canTrade(entry->broker, instrument->kind)) return {};
    return instrument;
}

bool isPaidAsItsKind(const CPaperPosition& held, EInstrumentKind kind) {
    if (canBePaidEitherWay(kind, held.m_eSide)) return true;
    const std::optional<EPayment> payment = paymentOf(kind, held.m_eSide);
    return payment && held.m_nPaid == paidFor(*payment, held.m_nCost);
}

std::string multiplierMistake(const char* verb, int before, int now, const char* until) {
    if (before == now) return {};
    return std::string("was ") + verb + " with multiplier " + std::to_string(before) +
           ", but the instrument has " + std::to_string(now) +
           "; set it back in instruments.csv until nothing of it is " + until;
}

/// The text of the mistake, or an empty text.
std::string mistakeOf(const CPaperPosition& held, const CInstrumentEntry& instrument) {
    if (!isPaidAsItsKind(held, instrument.kind)) {
        return std::string("was not paid for as instruments of its kind are; take the account out of the "
                           "folder, and its books stay as they are; removing ") +
               kPaperStoreName + " deletes the books of all accounts";
    }
    return multiplierMistake("opened", held.m_nMultiplier, instrument.multiplier, "held");
}

std::string mistakeOf(const CPaperDebt& debt, const CInstrumentEntry& instrument) {
    return multiplierMistake("sold", debt.m_nMultiplier, instrument.multiplier, "owed");
}

std::string mistakeOf(const CPaperOrder& order, const CInstrumentEntry& instrument) {
    return multiplierMistake("placed", order.m_nMultiplier, instrument.multiplier, "held");
}

bool isAlive(const CPaperPosition& held) {
    return held.m_nVolume != 0;
}

bool isAlive(const CPaperDebt& debt) {
    return debt.m_nVolume != 0;
}

bool isAlive(const CPaperOrder& order) {
    return order.isOpen();
}

std::string nameOf(const CPaperPosition& held) {
    return "position " + held.m_strStock;
}

std::string nameOf(const CPaperDebt& debt) {
    return "debt of " + debt.m_strStock;
}

std::string nameOf(const CPaperOrder& order) {
    return "waiting order " + std::to_string(order.m_nId) + " of " + order.m_strStock;
}

/// The first mistake among the records, or an empty text.
template<typename Records>
std::string review(const Records& records, const IQuoteSource& quotes,
                   const std::vector<CAccountEntry>& accounts) {
    for (const auto& [key, record] : records) {
        if (!isAlive(record)) continue;
        const auto instrument = tradableBy(quotes, accounts, record.m_strAccount, record.m_strStock);
        const std::string mistake = instrument ? mistakeOf(record, *instrument) : std::string();
        if (!mistake.empty()) return "account " + record.m_strAccount + ": " + nameOf(record) + ' ' + mistake;
    }
    return {};
}

} // namespace

utils::KNError reviewBook(const CPaperBook& book, const IQuoteSource& quotes,
                          const std::vector<CAccountEntry>& accounts) {
    for (const std::string& mistake : {review(book.m_positions.values(), quotes, accounts),
                                       review(book.m_debts.values(), quotes, accounts),
                                       review(book.m_orders.values(), quotes, accounts)}) {
        if (!mistake.empty()) return {kPaperBadRequest, mistake};
    }
    return {};
}

} // namespace desk
