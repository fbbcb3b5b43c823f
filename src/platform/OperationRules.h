#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/records/Enums.h"

namespace TC {

class CTradingRules;

/// What the trading layer knows about operations, price types and order kinds. A part of CTradingRules, whose
/// comment says when the operations are called.
class ORDERSERVICE_EXPORT COperationRules {
public:
    using CService = CTradingRules; ///< reports show these operations under its name

    /// Whether an operation buys.
    virtual bool isBuy(EOperationType operation) = 0;
    /// Whether an operation closes a position. A futures order that closes a position must name its volume.
    virtual bool isClose(EOperationType operation) = 0;
    /// Whether an operation trades a long position. With isBuy it says whether futures are opened or closed.
    /// Called by the confirmation only, on the main thread, for operations without a name of their own. By
    /// default true for all but the named operations on short positions.
    virtual bool isLong(EOperationType operation);
    /// Whether an operation repays an amount of money. It must be true for 25 and 1021, the operations of the
    /// order numbers 32 and 39. Otherwise the strategy's volume is repaid instead of the amount.
    virtual bool isDirectRepay(EOperationType operation) = 0;
    /// How the broker books an operation of margin trading. Not set if the host has no margin trading.
    virtual EEntrustTypes operationTypeToEntrustType(EOperationType operation) = 0;

    /// Whether the price type is a market price, which needs no number.
    virtual bool isMarketPrice(EPriceType priceType) = 0;
    /// Whether an algorithm executes orders of this kind. False for a plain or unset kind.
    virtual bool isAlgoOrderType(EOrderType orderType) = 0;
    /// The platform that executes an algorithm's orders. Called only if isAlgoOrderType is true.
    virtual ETradePlatform getPlatformTypeByOrderType(EOrderType orderType) = 0;

protected:
    virtual ~COperationRules() = default;
};

} // namespace TC
