#pragma once

#include "base/KNError.h"
#include "records/StrategyParam.h"

#include <string>

namespace desk {

/// Where strategies are kept from one run to the next.
class IStrategyStore {
public:
    virtual ~IStrategyStore() = default;

    /// Why the strategy cannot be kept whole beside the others, for people; empty where it can.
    virtual std::string whyNotKept(const TC::COrderStrategyParam& strategy,
                                   const TC::COrderStrategyMap& others) const = 0;

    /// Keeps these strategies in place of all that were kept. A failure names place and cause.
    [[nodiscard]] virtual utils::KNError save(const TC::COrderStrategyMap& strategies) const = 0;
};

} // namespace desk
