#include "desk/window/Books.h"

#include "orderservice/base/Unset.h"

namespace desk {
namespace {

std::optional<double> lastPriceOf(const IQuoteSource& quotes, const std::string& stock) {
    const std::optional<CQuoteEntry> quote = quotes.quote(stock);
    return quote ? lastPrice(*quote) : std::nullopt;
}

CValuedPosition value(const CPaperPosition& position, const IQuoteSource& quotes) {
    CValuedPosition result;
    result.m_position = position;
    if (const auto instrument = quotes.instrument(position.m_strStock)) result.m_strName = instrument->name;
    result.m_last = lastPriceOf(quotes, position.m_strStock);
    const double cost = fromMoney(position.m_nCost);
    const double units = static_cast<double>(position.m_nVolume) * position.m_nMultiplier;
    result.m_dCostPrice = units != 0 ? cost / units : 0;
    result.m_dValue = result.m_last ? *result.m_last * units : cost;
    result.m_dProfit =
        position.m_eSide == EPositionSide::Long ? result.m_dValue - cost : cost - result.m_dValue;
    return result;
}

} // namespace

std::optional<double> lastPrice(const CQuoteEntry& quote) {
    if (!TC::isInvalidPrice(quote.last)) return quote.last;
    if (!TC::isInvalidPrice(quote.previousClose)) return quote.previousClose;
    return std::nullopt;
}

CBooks valueBooks(const std::vector<CPaperFunds>& funds, const std::vector<CPaperPosition>& positions,
                  const std::vector<CPaperDebt>& debts, const IQuoteSource& quotes) {
    CBooks books;
    std::map<std::string, CValuedAccount*> accounts;
    books.m_accounts.reserve(funds.size());
    for (const CPaperFunds& entry : funds) {
        books.m_accounts.push_back({entry, fromMoney(entry.m_nCash), 0});
        accounts[entry.m_strAccount] = &books.m_accounts.back();
    }
    for (const CPaperPosition& position : positions) {
        if (position.m_nVolume == 0) continue;
        books.m_positions.push_back(value(position, quotes));
        const auto account = accounts.find(position.m_strAccount);
        if (account == accounts.end()) continue;
        // What was paid left the cash. A position on margin has only its profit besides the cash.
        account->second->m_dEquity += books.m_positions.back().m_dProfit + fromMoney(position.m_nPaid);
        account->second->m_dProfit += books.m_positions.back().m_dProfit;
    }
    for (const CPaperDebt& debt : debts) {
        const auto account = accounts.find(debt.m_strAccount);
        if (account == accounts.end()) continue;
        const double amount = fromMoney(debt.m_nAmount);
        if (debt.m_strStock.empty()) {
            account->second->m_dEquity -= amount;
            continue;
        }
        const std::optional<double> last = lastPriceOf(quotes, debt.m_strStock);
        const double worth = last ? *last * static_cast<double>(debt.m_nVolume) * debt.m_nMultiplier : amount;
        account->second->m_dEquity -= worth;
        account->second->m_dProfit += amount - worth;
    }
    return books;
}

CBooks valueBooks(const CPaperBooks& books, const IQuoteSource& quotes) {
    return valueBooks(books.m_funds, books.m_positions, books.m_debts, quotes);
}

} // namespace desk
