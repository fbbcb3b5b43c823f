#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/kit/TradingRulesBase.h"

namespace kit {

/// The rules of a host that trades more families than stocks. The four functions about operations use the
/// table of kit/Operations.h. An operation that is not in the table does not buy, close or repay, and is
/// booked with the account's own money and shares. Any thread; no state.
class ORDERSERVICE_EXPORT CFamilyTradingRulesBase : public CTradingRulesBase {
public:
    /// Whether the operation takes the buying side of the order book, also if it closes a position.
    bool isBuy(TC::EOperationType operation) override;
    /// Whether the operation closes a position of a derivative without opening one.
    bool isClose(TC::EOperationType operation) override;
    /// Whether the operation repays money with the account's own money: 25 and 1021.
    bool isDirectRepay(TC::EOperationType operation) override;
    /// The number of the operation's EBooking. Override it if the trading layer has other numbers.
    TC::EEntrustTypes operationTypeToEntrustType(TC::EOperationType operation) override;
};

} // namespace kit
