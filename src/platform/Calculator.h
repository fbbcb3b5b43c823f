#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/records/Account.h"
#include "orderservice/records/Enums.h"

#include <cstdint>
#include <string>

namespace knservice {

/// Calculations of the trading layer. Every operation may be called from any thread, returns at once and does
/// not throw.
class ORDERSERVICE_EXPORT ICalculator {
public:
    virtual ~ICalculator() = default;

    /// The largest volume, in shares or lots, that the account may order with this instrument, operation and
    /// price. COrderFuncService::getAccountPercentNum calls it for the operations 23 and 24, with firstKind
    /// and secondKind 48, count the largest 64-bit integer, isPart false and subKind -1; what they mean
    /// belongs to the host, which may change the two kinds.
    virtual std::int64_t getVolumeLimit(const TC::CAccountInfo& account, const std::string& market,
                                        const std::string& code, TC::EOperationType operation,
                                        TC::EHedge_Flag_Type hedge, double price, int& firstKind,
                                        int& secondKind, std::int64_t count, bool isPart, int subKind) = 0;
};

} // namespace knservice
