#pragma once

#include "orderservice/gates/StrategySource.h"
#include "orderservice/records/OrderParam.h"

#include <QVector>

namespace TC {

/// How the processing of a batch ended.
enum class EBatchEnd {
    Processed,   ///< every order was processed
    EndedByRule, ///< an order ended the batch; the variant has reported the orders after it as dropped
    /// The owner ended the batch; nobody has reported the orders from m_nBegun on. The variant is responsible
    /// for the orders before m_nBegun: a two-pass variant still emits the ones that passed their check.
    StoppedByOwner,
};

struct CBatchResult {
    EBatchEnd m_eEnd = EBatchEnd::Processed;
    /// The orders before this index were begun, the others were not. In a variant with two passes an order is
    /// begun when its check begins.
    int m_nBegun = 0;
};

/// Decides whether a batch continues. Called on the thread that processes the batch.
class IBatchOwner {
public:
    /// Called before each order. If it returns false, the batch ends before this order.
    virtual bool mayBegin() = 0;

protected:
    ~IBatchOwner() = default;
};

/// The owner of a batch that is always processed to its end.
class CWholeBatchOwner final : public IBatchOwner {
public:
    bool mayBegin() override { return true; }
};

/// A variant that asks for each strategy when it needs it. COrderService::chooseVariant makes the variant of
/// a user; a new variant is added there.
///
/// A variant with two passes checks the whole batch in processBatch. Then it emits sigPlaceLegalOrders once,
/// with the orders that passed and a map of their strategies. Its second pass is placeLegalOrders, on the
/// main thread.
/// - chooseVariant must also call forwardLegalOrders (service/LegalBatches.h) for it. Otherwise nobody
///   receives its signal, and its orders are lost without a report.
/// - The map must not be null. It needs to live only until emit returns: forwardLegalOrders copies it.
/// - Each emitted batch is passed once to placeLegalOrders of the same variant, or it is reported as dropped.
/// - placeLegalOrders can be called again from inside the call, if it runs an event loop for a dialog. It
///   reports an order that fails, and continues with the next one. An exception that leaves it is reported
///   for the whole batch, because nobody knows which orders were sent.
/// - A ticket of IOrderGate::holdUntilProcessed is released after the first pass. So it does not limit the
///   number of batches that wait for the user.
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
