#include "orderservice/service/DelayedBatches.h"

#include <algorithm>
#include <utility>

namespace TC {

void CDelayedBatches::add(CLegalBatch batch) {
    const std::lock_guard lock(m_mutex);
    m_batches.push_back(std::move(batch));
}

bool CDelayedBatches::isEmpty() const {
    const std::lock_guard lock(m_mutex);
    return m_batches.empty();
}

int CDelayedBatches::countOf(const COrderService& service) const {
    const std::lock_guard lock(m_mutex);
    return static_cast<int>(
        std::count_if(m_batches.begin(), m_batches.end(),
                      [&service](const CLegalBatch& batch) { return batch.m_pService == &service; }));
}

std::optional<CLegalBatch> CDelayedBatches::takeFirst(const COrderService* service) {
    const std::lock_guard lock(m_mutex);
    const auto found = std::find_if(m_batches.begin(), m_batches.end(), [service](const CLegalBatch& batch) {
        return service == nullptr || batch.m_pService == service;
    });
    if (found == m_batches.end()) return std::nullopt;
    CLegalBatch batch = std::move(*found);
    m_batches.erase(found);
    return batch;
}

} // namespace TC
