#include "desk/paper/AccountAssets.h"

#include "orderservice/base/Unset.h"

#include <cstdint>
#include <string>

namespace desk {
namespace {

/// The price at which the instrument is valued. Empty if its quote has none.
std::optional<CMoney> priceOf(const IQuoteSource& quotes, const std::string& stockKey) {
    const std::optional<CQuoteEntry> quote = quotes.quote(stockKey);
    if (!quote) return {};
    const std::optional<CMoney> price =
        toMoney(TC::isInvalidPrice(quote->last) ? quote->previousClose : quote->last);
    return price && *price > 0 ? price : std::nullopt;
}

/// The worth of a volume at its present price, or `cost` if there is no price.
std::optional<CMoney> worthNow(const IQuoteSource& quotes, const std::string& stockKey, std::int64_t units,
                               CMoney cost) {
    const std::optional<CMoney> price = priceOf(quotes, stockKey);
    return price ? amountOf(*price, units) : std::optional(cost);
}

} // namespace

std::optional<CMoney> assetsOf(const CPaperBooks& books, const IQuoteSource& quotes) {
    CMoney assets = 0;
    for (const CPaperFunds& funds : books.m_funds)
        assets += funds.m_nCash;
    for (const CPaperPosition& held : books.m_positions) {
        const std::optional<CMoney> worth =
            worthNow(quotes, held.m_strStock, held.m_nVolume * held.m_nMultiplier, held.m_nCost);
        if (!worth) return {};
        const CMoney rise = *worth - held.m_nCost;
        assets += held.m_nPaid + (held.m_eSide == EPositionSide::Long ? rise : -rise);
    }
    for (const CPaperDebt& debt : books.m_debts) {
        const bool isMoney = debt.m_strStock.empty();
        const std::optional<CMoney> owed =
            isMoney ? std::optional(debt.m_nAmount)
                    : worthNow(quotes, debt.m_strStock, debt.m_nVolume * debt.m_nMultiplier, debt.m_nAmount);
        if (!owed) return {};
        assets -= *owed;
    }
    return assets;
}

} // namespace desk
