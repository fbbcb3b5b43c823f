#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/records/OrderParam.h"
#include "orderservice/records/StrategyParam.h"

#include <QVector>

#include <memory>
#include <string>
#include <vector>

namespace TC {

/// The interface of the service for doors, such as order files and the order socket. Doors use no other part
/// of the service. Every operation may be called from any thread and returns at once. Orders are checked and
/// issued on the service thread, in the order of the calls.
class ORDERSERVICE_EXPORT IOrderGate {
public:
    /// Places one order as a separate batch, like placeOrders.
    virtual void placeorder(COrderParam order) = 0;
    /// Places the orders as one batch. An empty batch does nothing. There is no result: an order that fails
    /// its check is reported. After the service has shut down, the orders are refused with a message.
    virtual void placeOrders(QVector<COrderParam> orders) = 0;
    /// Cancels a task of the trading layer. It is queued behind the orders that were passed in earlier. There
    /// is no result; a failure is reported as a message. After the service has shut down, the cancel is
    /// refused with a message.
    virtual void cancelOrder(int taskId) = 0;
    /// Releases `ticket` when all orders and cancels that this thread passed in earlier are done. The ticket
    /// may be destroyed on any thread, so its destructor must not block. An order is done when the service
    /// thread has processed its batch; with a two-pass variant it may then still wait for the user. The
    /// default releases the ticket at once.
    virtual void holdUntilProcessed(std::shared_ptr<const void> ticket) { ticket.reset(); }
    /// Passes the fields of a cancel by order to the host, on the calling thread. The host may change the
    /// fields.
    virtual void cancelOrders(std::vector<std::string>& fields) = 0;
    /// The label of a source kind. Messages begin with it.
    virtual QString getOrderStrategyText(EOrderStrategyType type) const = 0;
    /// The default remark of a strategy's commands, in UTF-8. It is used if the order has no remark. Empty if
    /// there is no default remark.
    virtual std::string defaultRemark(const COrderStrategyParam& strategy) const = 0;

protected:
    ~IOrderGate() = default;
};

} // namespace TC
