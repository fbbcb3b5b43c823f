#include "orderservice/service/OrderServiceAdapter.h"

#include "orderservice/service/LegalBatches.h"
#include "orderservice/service/OrderService.h"

namespace TC {

COrderServiceAdapter::COrderServiceAdapter(QObject* parent) : QObject(parent) {
    if (COrderService* service = COrderService::instance()) {
        m_connection = connect(service, &COrderService::sigPlaceLegalOrders, this,
                               &COrderServiceAdapter::slotPlaceLegalOrders);
    }
}

COrderServiceAdapter::~COrderServiceAdapter() {
    if (m_connection) dropAtEndOfAdapter();
}

void COrderServiceAdapter::slotPlaceLegalOrders(QVector<orderParamForOrderService> orders,
                                                const QMap<int, COrderStrategyParam>* strategies) {
    placeReceivedOrders(orders, strategies);
}

} // namespace TC
