#pragma once

#include "records/StrategyParam.h"

#include <functional>
#include <optional>

namespace TC {

/// What a door or the framework may ask of the registry. Any thread.
class IStrategyRegistry {
public:
    /// Visits every strategy in key order with the registry locked for the whole walk: nothing is added,
    /// changed, started or stopped meanwhile. An exception of the visitor ends the walk, releases the lock
    /// and goes on to the caller.
    virtual void
    visitStrategies(const std::function<void(int channel, const COrderStrategyParam&)>& visit) = 0;

    /// A copy of the strategy as it is now, or none where the channel has none. Waits for no pass of the file
    /// loop.
    virtual std::optional<COrderStrategyParam> copyStrategy(int channel) = 0;

protected:
    ~IStrategyRegistry() = default;
};

} // namespace TC
