#include "desk/paper/TakeIn.h"

#include "desk/paper/OrderRules.h"
#include "desk/paper/PaperStore.h"

#include <algorithm>
#include <iterator>
#include <optional>

namespace desk {
namespace {

constexpr std::int64_t kMaxInitialVolume = 1'000'000'000'000;

/// How positions of a kind of instrument are paid, by side.
struct CKindRow {
    EInstrumentKind m_eKind;
    EPayment m_eLong;
    std::optional<EPayment> m_short; ///< empty: there are none
};

const CKindRow kKinds[] = {
    {EInstrumentKind::Stock, EPayment::Full, {}},
    {EInstrumentKind::Hgt, EPayment::Full, {}},
    {EInstrumentKind::Sgt, EPayment::Full, {}},
    {EInstrumentKind::Neeq, EPayment::Full, {}},
    {EInstrumentKind::Gold, EPayment::Full, EPayment::Margin},
    {EInstrumentKind::Future, EPayment::Margin, EPayment::Margin},
    {EInstrumentKind::FutureOption, EPayment::Full, EPayment::Premium},
    {EInstrumentKind::StockOption, EPayment::Full, EPayment::Premium},
};

std::optional<EPayment> paymentOf(EInstrumentKind kind, EPositionSide side) {
    const auto found = std::find_if(std::begin(kKinds), std::end(kKinds),
                                    [&](const CKindRow& row) { return row.m_eKind == kind; });
    if (found == std::end(kKinds)) return {};
    return side == EPositionSide::Long ? std::optional(found->m_eLong) : found->m_short;
}

bool isSound(const CPositionEntry& entry) {
    return entry.volume >= 0 && entry.volume <= kMaxInitialVolume && entry.available >= 0 &&
           entry.available <= entry.volume;
}

CMoney paidFor(EPayment payment, CMoney cost) {
    if (payment == EPayment::Margin) return 0;
    return payment == EPayment::Premium ? -cost : cost;
}

/// The position as the book keeps it, or nothing where it makes no sense.
std::optional<CPaperPosition> readPosition(const std::string& account, const CPositionEntry& entry,
                                           const CInstrumentEntry& instrument) {
    const std::optional<EPayment> payment = paymentOf(instrument.kind, entry.side);
    const std::optional<CMoney> price = toMoney(entry.cost);
    if (!payment || !price || !isSound(entry)) return {};
    if (*payment != EPayment::Full && *price < 0) return {};
    const std::optional<CMoney> one = amountOf(*price, std::max(1, instrument.multiplier));
    const std::optional<CMoney> cost = one ? amountOf(*one, entry.volume) : std::nullopt;
    if (!cost) return {};
    CPaperPosition position;
    position.m_strAccount = account;
    position.m_strStock = instrument.key();
    position.m_eSide = entry.side;
    position.m_nVolume = entry.volume;
    position.m_nSellable = entry.available;
    position.m_nToday = entry.volume - entry.available;
    position.m_nCost = *cost;
    position.m_nPaid = paidFor(*payment, *cost);
    position.m_nMargin = *payment == EPayment::Full ? 0 : rateOf(*cost, marginRateOf(instrument));
    return position;
}

CInstrumentEntry instrumentOf(const IQuoteSource& quotes, const std::string& stockKey) {
    CInstrumentEntry unknown;
    unknown.code = stockKey;
    return quotes.instrument(stockKey).value_or(unknown);
}

} // namespace

utils::KNError takeInAccount(CPaperBook& book, const IQuoteSource& quotes, const CAccountEntry& account) {
    const std::string name = "account " + account.key;
    const std::optional<CMoney> cash = toMoney(account.funds);
    if (!cash || *cash < 0) return {kPaperBadRequest, name + ": funds are negative or out of range"};
    CPaperFunds& funds = book.m_funds.edit(account.key) = {account.key, *cash, 0, 0};
    for (const CPositionEntry& entry : account.positions) {
        const std::optional<CPaperPosition> position =
            readPosition(account.key, entry, instrumentOf(quotes, entry.stockKey));
        if (!position) return {kPaperBadRequest, name + ": position " + entry.stockKey + " makes no sense"};
        funds.m_nMargin += position->m_nMargin;
        book.m_positions.edit({account.key, position->m_strStock, entry.side}) = *position;
    }
    return {};
}

} // namespace desk
