#include "desk/paper/TakeIn.h"

#include "desk/paper/OrderRules.h"
#include "desk/paper/PaperFamilies.h"
#include "desk/paper/PaperStore.h"

#include <algorithm>

namespace desk {
namespace {

constexpr std::int64_t kMaxInitialVolume = 1'000'000'000'000;

bool isSound(const CPositionEntry& entry) {
    return entry.volume >= 0 && entry.volume <= kMaxInitialVolume && entry.available >= 0 &&
           entry.available <= entry.volume;
}

/// Gold may have been paid in full or opened on margin. The folder tells which; the default is margin. All
/// other kinds have only one way of payment.
std::optional<EPayment> paymentOf(const CPositionEntry& entry, EInstrumentKind kind) {
    if (!entry.paidInFull) return paymentOf(kind, entry.side);
    return canBePaidEitherWay(kind, entry.side) ? std::optional(EPayment::Full) : std::nullopt;
}

CInstrumentEntry instrumentOf(const IQuoteSource& quotes, const std::string& stockKey) {
    CInstrumentEntry unknown;
    unknown.code = stockKey;
    return quotes.instrument(stockKey).value_or(unknown);
}

} // namespace

bool hasSoundFunds(const CAccountEntry& account) {
    const std::optional<CMoney> cash = toMoney(account.funds);
    return cash && *cash >= 0;
}

std::optional<CPaperPosition> takeInPosition(const std::string& account, const CPositionEntry& entry,
                                             const CInstrumentEntry& instrument) {
    const std::optional<EPayment> payment = paymentOf(entry, instrument.kind);
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
    position.m_nMultiplier = std::max(1, instrument.multiplier);
    return position;
}

utils::KNError takeInAccount(CPaperBook& book, const IQuoteSource& quotes, const CAccountEntry& account) {
    const auto refuse = [&](const std::string& why) {
        return utils::KNError{kPaperBadRequest, "account " + account.key + ": " + why};
    };
    if (!hasSoundFunds(account)) return refuse("funds are negative or out of range");
    const CMoney cash = toMoney(account.funds).value_or(0);
    CPaperFunds& funds = book.m_funds.edit(account.key) = {account.key, cash, 0, 0};
    for (const CPositionEntry& entry : account.positions) {
        const CInstrumentEntry instrument = instrumentOf(quotes, entry.stockKey);
        const std::optional<CPaperPosition> position = takeInPosition(account.key, entry, instrument);
        if (!position) return refuse("position " + entry.stockKey + " makes no sense");
        if (!canTrade(account.broker, instrument.kind))
            return refuse("position " + entry.stockKey + " could never be traded on such an account");
        funds.m_nMargin += position->m_nMargin;
        book.m_positions.edit({account.key, position->m_strStock, entry.side}) = *position;
    }
    if (funds.available() >= 0) return {};
    return refuse("its positions hold " + moneyText(funds.m_nMargin) + " as margin, more than its funds of " +
                  moneyText(cash));
}

} // namespace desk
