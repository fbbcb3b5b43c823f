#pragma once

#include "orderservice/records/StrategyParam.h"

#include <cstddef>
#include <map>
#include <memory>
#include <mutex>

namespace TC {

class COrderService;
class COrderServiceBase;

/// The strategies of the checked orders that wait for the main thread. sigPlaceLegalOrders passes a bare
/// pointer, and a queued signal keeps no more than this pointer. So the map is kept here from the emission
/// until the adapter has placed the orders. Any thread.
class CLegalBatches {
public:
    /// The only instance that the library uses. It lives as long as the process, because a queued signal may
    /// be received after its service was released.
    static CLegalBatches& instance();

    /// Returns a copy of the map, or null for null. The copy shares no data with the map and lives until it
    /// is released.
    const COrderStrategyMap* hold(const COrderStrategyMap* strategies);
    /// Destroys a map that `hold` returned. Ignores null and every other map.
    void release(const COrderStrategyMap* strategies);
    /// The number of maps that are held.
    std::size_t size() const;

private:
    mutable std::mutex m_mutex;
    std::map<const COrderStrategyMap*, std::unique_ptr<const COrderStrategyMap>> m_held;
};

/// From now on `service` emits each sigPlaceLegalOrders that `variant` emits, on the same thread and before
/// the variant's emit returns. The map of the service's signal is held by CLegalBatches, so the variant's map
/// may end after its emit. A null map stays null. If a receiver throws, the exception is reported. The
/// connection ends when one of the two objects is destroyed. The one-pass variant does not need it.
void forwardLegalOrders(const COrderServiceBase& variant, COrderService& service);

} // namespace TC
