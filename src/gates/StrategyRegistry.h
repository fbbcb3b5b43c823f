#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/records/StrategyParam.h"

#include <functional>
#include <optional>

namespace TC {

/// The interface of the registry for doors and the framework. Any thread.
class ORDERSERVICE_EXPORT IStrategyRegistry {
public:
    /// Calls the visitor for every strategy in key order. The registry is locked during the whole call, so no
    /// strategy is added, changed, started or stopped meanwhile. If the visitor throws, the lock is released
    /// and the caller gets the exception.
    virtual void
    visitStrategies(const std::function<void(int channel, const COrderStrategyParam&)>& visit) = 0;

    /// A copy of the current strategy, or nothing if the channel has no strategy. It does not wait for the
    /// file loop.
    virtual std::optional<COrderStrategyParam> copyStrategy(int channel) = 0;

protected:
    ~IStrategyRegistry() = default;
};

} // namespace TC
