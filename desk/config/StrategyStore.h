#pragma once

#include "orderservice/base/KNError.h"
#include "orderservice/records/StrategyParam.h"

#include <string>

namespace desk {

/// Keeps strategies from one run to the next.
class IStrategyStore {
public:
    virtual ~IStrategyStore() = default;

    /// Returns the reason why the strategy cannot be kept completely together with the others, for people;
    /// empty if it can.
    virtual std::string whyNotKept(const TC::COrderStrategyParam& strategy,
                                   const TC::COrderStrategyMap& others) const = 0;

    /// Replaces all kept strategies with these. An error names the place and the cause.
    [[nodiscard]] virtual utils::KNError save(const TC::COrderStrategyMap& strategies) const = 0;
};

} // namespace desk
