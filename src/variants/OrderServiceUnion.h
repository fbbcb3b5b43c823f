#pragma once

#include "orderservice/check/OrderServiceBase.h"

#include <functional>

namespace TC {

/// The one-pass variant: processes a batch order by order through frame check, family check and command. It
/// asks the user nothing before a command is sent. The command tells the host whether the host must ask the
/// user.
class COrderServiceUnion : public COrderServiceBase {
    Q_OBJECT
public:
    /// Called before each order of a batch with the order's channel. The owner of the strategies can then
    /// update the map that the batch uses, so that a stopped strategy takes no further order. If it returns
    /// false, the batch ends before this order; the owner drops the remaining orders and reports them.
    using CBeforeOrder = std::function<bool(int channel)>;

    explicit COrderServiceUnion(CBeforeOrder beforeOrder = {}, QObject* parent = nullptr);

    void filterStrategies(COrderStrategyMap* strategies) override;
    /// A missing strategy or an order that fails the frame check ends the batch. An order that fails its
    /// family check is dropped, and the batch continues.
    void placeOrders(QVector<COrderParam> orders, const COrderStrategyMap* strategies) override;

private:
    /// How a batch continues after an order.
    enum class EBatch {
        GoesOn,
        Ended, ///< the order has no strategy or fails the frame check
        Cut,   ///< the owner ended the batch before the order
    };
    EBatch placeGuarded(const COrderParam& order, const COrderStrategyMap* strategies);
    EBatch placeOrder(const COrderParam& order, const COrderStrategyMap* strategies);
    void dispatch(const COrderParam& order, const COrderStrategyParam& strategy) const;

    const CBeforeOrder m_beforeOrder;
};

} // namespace TC
