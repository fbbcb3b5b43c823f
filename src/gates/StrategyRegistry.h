#pragma once

#include "orderservice/gates/StrategySource.h"

#include <cstdint>
#include <functional>

namespace TC {

/// The interface of the registry for doors and the framework. Any thread. strategyOf does not wait for the
/// file loop, and copies a strategy only once after each of its changes.
class IStrategyRegistry : public IStrategySource {
public:
    /// Calls the visitor for every strategy in key order. The registry is locked during the whole call, so no
    /// strategy is added, changed, started or stopped meanwhile. If the visitor throws, the lock is released
    /// and the caller gets the exception.
    virtual void
    visitStrategies(const std::function<void(int channel, const COrderStrategyParam&)>& visit) = 0;

    /// A number that becomes greater with each change of the strategies. If it is still the same, no strategy
    /// was added, changed, removed, started or stopped, and the same user is bound. It does not include what
    /// the host writes through the pointer of COrderService::getStrategy. Does not wait for a lock. A caller
    /// that compares strategies reads it before it reads them.
    virtual std::uint64_t revision() const = 0;

protected:
    ~IStrategyRegistry() = default;
};

} // namespace TC
