#pragma once

#include "desk/market/QuoteSource.h"
#include "desk/paper/PaperBroker.h"
#include "desk/paper/PaperRecords.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace desk {

/// One position with its value at the last price. Money in currency units.
struct CValuedPosition {
    CPaperPosition m_position;
    std::string m_strName; ///< of the instrument
    std::optional<double> m_last;
    double m_dCostPrice = 0; ///< average
    double m_dValue = 0;     ///< at the last price; at the cost if there is no price
    double m_dProfit = 0;    ///< not realised; 0 if there is no price
};

/// One account. Money in currency units.
struct CValuedAccount {
    CPaperFunds m_funds;
    double m_dEquity = 0; ///< money and positions, less debts
    double m_dProfit = 0; ///< not realised: of all positions and of the shares that the account owes
    double m_dStart = 0;  ///< equity when the desk was started; 0 until CDeskWorker sets it
};

/// The accounts and positions at one moment, with the quotes of that moment.
struct CBooks {
    std::vector<CValuedAccount> m_accounts;
    std::vector<CValuedPosition> m_positions;
    std::map<std::string, CQuoteEntry> m_quotes; ///< by key: of the instruments of the folder
};

/// Values positions and debts at the last prices. An instrument without a price is valued at its cost, so
/// that its profit is 0. Pure function of its arguments; calls the quote source.
CBooks valueBooks(const std::vector<CPaperFunds>& funds, const std::vector<CPaperPosition>& positions,
                  const std::vector<CPaperDebt>& debts, const IQuoteSource& quotes);
CBooks valueBooks(const CPaperBooks& books, const IQuoteSource& quotes);

/// The last price, or the previous close before the first trade.
std::optional<double> lastPrice(const CQuoteEntry& quote);

} // namespace desk
