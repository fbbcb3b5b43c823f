#include "orderservice/service/OrderServiceAdapter.h"

#include "orderservice/check/OrderServiceBase.h"
#include "orderservice/service/LegalBatches.h"
#include "orderservice/service/OrderService.h"

#include <memory>
#include <utility>

namespace TC {

COrderServiceAdapter::COrderServiceAdapter(QObject* parent) : QObject(parent) {
    if (COrderService* service = COrderService::instance()) {
        connect(service, &COrderService::sigPlaceLegalOrders, this,
                &COrderServiceAdapter::slotPlaceLegalOrders);
    }
}

void COrderServiceAdapter::slotPlaceLegalOrders(QVector<orderParamForOrderService> orders,
                                                const QMap<int, COrderStrategyParam>* strategies) {
    // The map is released at the end of this function, even if no order is placed or an exception is thrown.
    const auto release = [](const COrderStrategyMap* map) { CLegalBatches::instance().release(map); };
    const std::unique_ptr<const COrderStrategyMap, decltype(release)> held(strategies, release);
    const COrderService* service = COrderService::instance();
    if (service == nullptr || service->getOrderService() == nullptr) return;
    service->getOrderService()->placeLegalOrders(std::move(orders), strategies);
}

} // namespace TC
