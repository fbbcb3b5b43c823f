#pragma once

#include "orderservice/service/OrderService.h"

namespace TC {

/// Calls private operations of the service that have no caller in the library.
struct COrderServicePeer {
    static void exchangePosition(const COrderService& service, const CAccountInfoPtr& account,
                                 QVector<COrderSingleParam>& rows) {
        service.exchangePosition(account, rows);
    }
};

} // namespace TC
