#include "orderservice/service/OrderServiceAdapter.h"

#include "orderservice/check/OrderServiceBase.h"
#include "orderservice/service/OrderService.h"

namespace TC {

COrderServiceAdapter::COrderServiceAdapter(QObject* parent) : QObject(parent) {
    if (COrderService* service = COrderService::instance()) {
        connect(service, &COrderService::sigPlaceLegalOrders, this,
                &COrderServiceAdapter::slotPlaceLegalOrders);
    }
}

void COrderServiceAdapter::slotPlaceLegalOrders(QVector<orderParamForOrderService> orders,
                                                const QMap<int, COrderStrategyParam>* strategies) {
    const COrderService* service = COrderService::instance();
    if (service == nullptr || service->getOrderService() == nullptr) return;
    service->getOrderService()->placeLegalOrders(std::move(orders), strategies);
}

} // namespace TC
