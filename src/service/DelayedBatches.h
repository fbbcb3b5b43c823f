#pragma once

#include "orderservice/service/LegalBatches.h"

#include <deque>
#include <mutex>
#include <optional>

namespace TC {

/// Checked batches that came while the user was asked about another one. They are placed in their order when
/// he has answered, so that one question never covers another. Any thread.
class CDelayedBatches {
public:
    /// Appends the batch. Returns whether it is the only one: the caller then arranges that it is placed.
    bool add(CLegalBatch batch);
    bool isEmpty() const;
    std::optional<CLegalBatch> takeFirst();
    /// Takes the first batch of this service. A null service means every service.
    std::optional<CLegalBatch> takeAny(const COrderService* service);

private:
    mutable std::mutex m_mutex;
    std::deque<CLegalBatch> m_batches;
};

} // namespace TC
