#pragma once

#include "orderservice/check/OrderServiceBase.h"
#include "orderservice/gates/StrategySource.h"
#include "orderservice/records/CommandParam.h"
#include "orderservice/variants/BatchVariant.h"

#include <QVector>

namespace TC {

/// The two-pass variant. The first pass checks all orders of a batch and emits those that passed. The second
/// pass asks the user to confirm the batch, if the user's settings want that, and sends one command for each
/// order. The object has no state, so nothing of a batch is left in it after a pass.
class COrderServiceSplit : public COrderServiceBase, public IBatchVariant {
    Q_OBJECT
public:
    explicit COrderServiceSplit(QObject* parent = nullptr);

    /// Erases the file strategies over the user's limit, and all of them without the right to file orders.
    /// The same for socket strategies with their own limit and right. Others are kept.
    void filterStrategies(COrderStrategyMap* strategies) override;
    /// The first pass. Emits sigPlaceLegalOrders with the caller's map. An order that fails a check is
    /// dropped, and the batch continues.
    void placeOrders(QVector<COrderParam> orders, const COrderStrategyMap* strategies) override;
    /// The first pass with the strategies of a source. Emits a map of the strategies that checked the orders;
    /// it lives until emit returns. If the owner ends the batch, the orders that passed before are emitted.
    CBatchResult processBatch(const QVector<COrderParam>& orders, IStrategySource& strategies,
                              IBatchOwner& owner) override;

    /// The second pass. The strategy of the first order decides whether the user is asked, and the family of
    /// all orders. The confirmation may run an event loop, and the map must live until this call returns. If
    /// the batch is not confirmed, it is dropped with a report to the audit. The user gets a message too,
    /// unless the user declined. If an order throws an exception, this order is dropped with a report. Main
    /// thread; on another thread the call waits until the main thread has the answer.
    void placeLegalOrders(QVector<orderParamForOrderService> orders,
                          const COrderStrategyMap* strategies) override;
    /// Also true if the user's settings cannot be read.
    bool mayAsk(const QVector<orderParamForOrderService>& orders,
                const COrderStrategyMap& strategies) const noexcept override;

private:
    struct CLegal;
    CBatchResult checkBatch(const QVector<COrderParam>& orders, IStrategySource& strategies,
                            IBatchOwner& owner, CLegal& legal);
    void emitGuarded(const CLegal& legal);
    bool checkNext(const COrderParam& order, IStrategySource& strategies, IBatchOwner& owner, CLegal& legal);
    bool checkOrder(orderParamForOrderService& order, const COrderStrategyParam* strategy) const;
    bool isConfirmed(const QVector<orderParamForOrderService>& orders,
                     const COrderStrategyParam& strategy) const;
    void issueGuarded(EOrderStrategyTradeType tradeType, const orderParamForOrderService& order,
                      const COrderStrategyMap* strategies) const;
    void issue(EOrderStrategyTradeType tradeType, const orderParamForOrderService& order,
               const COrderStrategyMap* strategies) const;
};

} // namespace TC
