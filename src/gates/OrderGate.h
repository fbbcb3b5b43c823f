#pragma once

#include "records/OrderParam.h"
#include "records/StrategyParam.h"

#include <QVector>

#include <memory>
#include <string>
#include <vector>

namespace TC {

/// What a door may ask of the service. Doors know this and nothing else of it. Every operation may be called
/// from any thread and returns at once: orders are checked and issued on the service's own thread, in the
/// order of the calls.
class IOrderGate {
public:
    /// One order as a batch of its own.
    virtual void placeorder(COrderParam order) = 0;
    virtual void placeOrders(QVector<COrderParam> orders) = 0;
    virtual void cancelOrder(int taskId) = 0;
    /// Releases `ticket` once all orders and cancels that this thread handed over before are done. The ticket
    /// may be destroyed on any thread, so its destructor must not block. The default releases it at once.
    virtual void holdUntilWorkedOff(std::shared_ptr<const void> ticket) { ticket.reset(); }
    /// Hands the fields of a cancel by order to the host, on the calling thread. The host may change them.
    virtual void cancelOrders(std::vector<std::string>& fields) = 0;
    /// The label of a source kind at the head of messages.
    virtual QString getOrderStrategyText(EOrderStrategyType type) const = 0;
    /// The remark that a strategy's commands carry where the order brings none, UTF-8; empty where there is
    /// none.
    virtual std::string defaultRemark(const COrderStrategyParam& strategy) const = 0;

protected:
    ~IOrderGate() = default;
};

} // namespace TC
