#pragma once

#include "kit/TradingRulesBase.h"

namespace kit {

/// The rules of a host that trades more families than stocks: the four questions about operations follow the
/// table of kit/Operations.h. An operation that is not in the table neither buys, closes nor repays, and is
/// booked as one with the account's own money and shares. Any thread; no state.
class CFamilyTradingRulesBase : public CTradingRulesBase {
public:
    /// Takes the buying side of the order book, also to close.
    bool isBuy(TC::EOperationType operation) override;
    /// Closes a position of a derivative and opens none.
    bool isClose(TC::EOperationType operation) override;
    /// Repays money with money of the account's own: 25 and 1021.
    bool isDirectRepay(TC::EOperationType operation) override;
    /// The number of the operation's EBooking. Override it if the trading layer has other numbers.
    TC::EEntrustTypes operationTypeToEntrustType(TC::EOperationType operation) override;
};

} // namespace kit
