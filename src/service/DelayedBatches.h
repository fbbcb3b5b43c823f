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
    void add(CLegalBatch batch);
    bool isEmpty() const;
    int countOf(const COrderService& service) const;
    /// Takes the first batch of this service. A null service means every service.
    std::optional<CLegalBatch> takeFirst(const COrderService* service = nullptr);

private:
    mutable std::mutex m_mutex;
    std::deque<CLegalBatch> m_batches;
};

} // namespace TC
