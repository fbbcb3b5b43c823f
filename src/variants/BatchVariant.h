#pragma once

#include "orderservice/gates/StrategySource.h"
#include "orderservice/records/OrderParam.h"

#include <QVector>

namespace TC {

/// How the processing of a batch ended.
enum class EBatchEnd {
    Processed,      ///< every order was processed
    EndedByRule,    ///< an order ended the batch; the variant has reported the orders after it as dropped
    StoppedByOwner, ///< the owner ended the batch; nobody has reported the remaining orders yet
};

struct CBatchResult {
    EBatchEnd m_eEnd = EBatchEnd::Processed;
    int m_nBegun = 0; ///< the orders before this index were begun, the others were not
};

/// Decides whether a batch continues. Called on the thread that processes the batch.
class IBatchOwner {
public:
    /// Called before each order. If it returns false, the batch ends before this order.
    virtual bool mayBegin() = 0;

protected:
    ~IBatchOwner() = default;
};

/// A variant that asks for each strategy when it needs it. A variant with two passes also emits
/// sigPlaceLegalOrders, with a map of the strategies that it used. That map needs to live only until emit
/// returns: forwardLegalOrders (service/LegalBatches.h) copies it.
class IBatchVariant {
public:
    /// Processes the batch on the calling thread. For each order it calls mayBegin and then strategyOf, so an
    /// order never uses a strategy that was stopped before its turn. May be called again from inside the
    /// call. An exception of an order or of its strategy's source is reported and drops this order only.
    virtual CBatchResult processBatch(const QVector<COrderParam>& orders, IStrategySource& strategies,
                                      IBatchOwner& owner) = 0;

protected:
    ~IBatchVariant() = default;
};

} // namespace TC
