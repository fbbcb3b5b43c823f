#pragma once

#include "orderservice/check/OrderServiceBase.h"
#include "orderservice/variants/BatchVariant.h"

#include <optional>

namespace TC {

/// The one-pass variant: processes a batch order by order through frame check, family check and command. It
/// asks the user nothing before a command is sent. The command tells the host whether the host must ask the
/// user.
class COrderServiceUnion : public COrderServiceBase, public IBatchVariant {
    Q_OBJECT
public:
    explicit COrderServiceUnion(QObject* parent = nullptr);

    void filterStrategies(COrderStrategyMap* strategies) override;
    /// A missing strategy or an order that fails the frame check ends the batch. An order that fails its
    /// family check is dropped, and the batch continues.
    void placeOrders(QVector<COrderParam> orders, const COrderStrategyMap* strategies) override;
    /// Does the same as placeOrders with the strategies of a source. The owner can end the batch.
    CBatchResult processBatch(const QVector<COrderParam>& orders, IStrategySource& strategies,
                              IBatchOwner& owner) override;

private:
    /// How an order ended its batch. Not set if the batch continues.
    using CEnd = std::optional<EBatchEnd>;
    CEnd placeGuarded(const COrderParam& order, IStrategySource& strategies, IBatchOwner& owner);
    CEnd placeOrder(const COrderParam& order, IStrategySource& strategies, IBatchOwner& owner);
    void dispatch(const COrderParam& order, const COrderStrategyParam& strategy) const;
};

} // namespace TC
