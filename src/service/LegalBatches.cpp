#include "orderservice/service/LegalBatches.h"

#include "orderservice/check/OrderServiceBase.h"
#include "orderservice/platform/HostReports.h"
#include "orderservice/service/OrderService.h"

#include <utility>

namespace TC {

CLegalBatches& CLegalBatches::instance() {
    static CLegalBatches batches;
    return batches;
}

const COrderStrategyMap* CLegalBatches::hold(const COrderStrategyMap* strategies) {
    if (strategies == nullptr) return nullptr;
    auto copy = std::make_unique<COrderStrategyMap>(*strategies);
    copy->detach(); // a shared copy would make the next change of the host's map move its records
    const COrderStrategyMap* held = copy.get();
    const std::lock_guard lock(m_mutex);
    m_held.emplace(held, std::move(copy));
    return held;
}

void CLegalBatches::release(const COrderStrategyMap* strategies) {
    decltype(m_held)::node_type
        released; // declared before the lock, so that it is destroyed after the unlock
    const std::lock_guard lock(m_mutex);
    released = m_held.extract(strategies);
}

std::size_t CLegalBatches::size() const {
    const std::lock_guard lock(m_mutex);
    return m_held.size();
}

// The connection must be direct. A queued one would use the pointer after the variant's map has ended.
void forwardLegalOrders(const COrderServiceBase& variant, COrderService& service) {
    const auto forward = [&service](const QVector<orderParamForOrderService>& orders,
                                    const COrderStrategyMap* strategies) {
        runGuarded(QStringLiteral("sigPlaceLegalOrders的接收者异常"), [&] {
            emit service.sigPlaceLegalOrders(orders, CLegalBatches::instance().hold(strategies));
        });
    };
    QObject::connect(&variant, &COrderServiceBase::sigPlaceLegalOrders, &service, forward,
                     Qt::DirectConnection);
}

} // namespace TC
