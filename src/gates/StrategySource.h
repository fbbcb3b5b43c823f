#pragma once

#include "orderservice/records/StrategyParam.h"

namespace TC {

/// Where the processing of a batch gets its strategies.
class IStrategySource {
public:
    /// Returns the strategy of the channel in its current state, or null if there is none. The record never
    /// changes afterwards: after a change of the strategy, the next call returns another record. So the
    /// caller may use the record without a lock, for as long as it keeps the pointer.
    virtual COrderStrategyPtr strategyOf(int channel) = 0;

protected:
    ~IStrategySource() = default;
};

} // namespace TC
