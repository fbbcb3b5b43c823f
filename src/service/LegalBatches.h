#pragma once

#include "orderservice/check/OrderServiceBase.h"
#include "orderservice/records/CommandParam.h"
#include "orderservice/records/StrategyParam.h"

#include <QPointer>
#include <QVector>

#include <cstddef>
#include <map>
#include <memory>
#include <mutex>
#include <optional>

/// The way of checked orders from a variant with two passes to the main thread. sigPlaceLegalOrders passes a
/// bare pointer, and Qt discards a queued signal when its receiver is deleted. So the orders and their
/// strategies are kept here. Each batch ends in exactly one of two ways: the variant that checked it places
/// it, or it is reported as dropped, to the user and to the audit.
namespace TC {

class COrderService;

/// A batch of checked orders. Copies share their data.
struct CLegalBatch {
    QVector<orderParamForOrderService> m_orders;
    COrderStrategyMap m_strategies;
    QPointer<COrderServiceBase> m_variant;     ///< checked the orders; null if it was deleted
    const COrderService* m_pService = nullptr; ///< the service of the variant; only compared
};

/// The batches on their way. Any thread.
class CLegalBatches {
public:
    /// The only instance that the library uses. It is never destroyed: a batch that is left at the end of the
    /// process may have records whose destructors need the host.
    static CLegalBatches& instance();

    /// Keeps the batch with a copy of its map that shares no data. Returns the address of this copy for the
    /// signal. The copy lives until `release`. Throws if there is not enough memory; then nothing is kept.
    const COrderStrategyMap* keep(CLegalBatch batch);
    /// Whether `keep` returned this address, now or earlier. The addresses are never used for other objects.
    bool isOwn(const COrderStrategyMap* strategies) const;
    /// Returns the batch to the first caller, and nothing to all others. The caller places or reports it.
    std::optional<CLegalBatch> take(const COrderStrategyMap* strategies);
    /// Takes any batch of the service that nobody has taken. A null service means every service.
    std::optional<CLegalBatch> takeAny(const COrderService* service);
    /// Discards the batch. Its address may then be returned for another batch.
    void release(const COrderStrategyMap* strategies);
    /// The end of a batch, on the main thread after all receivers there: a batch that nobody has taken is
    /// reported, and every batch is released. If a receiver threw (isComplete false), the signal may not have
    /// reached the adapter; then a connected adapter gets the batch now.
    void finish(const COrderStrategyMap* strategies, bool isComplete);
    /// The number of batches that are not released.
    std::size_t size() const;

private:
    enum class EState { Free, Waiting, Taken };
    struct CPlace {
        CLegalBatch m_batch;
        EState m_eState = EState::Free;
    };
    CPlace& freePlace();
    static CLegalBatch takeFrom(CPlace& place);

    mutable std::mutex m_mutex;
    /// By the address of the batch's map. A place is never deleted, so that a late signal finds a place and
    /// not freed memory. There are as many places as batches were on their way at the same time.
    std::map<const COrderStrategyMap*, std::unique_ptr<CPlace>> m_places;
};

/// From now on `service` emits each sigPlaceLegalOrders that `variant` emits, on the same thread and before
/// the variant's emit returns. The map of the service's signal is a copy, so the variant's map may end after
/// its emit. If a receiver throws, the exception is reported, and COrderServiceAdapter::instance() still gets
/// the batch if it is connected. A batch without a map, or one that no adapter receives, is reported as
/// dropped. The connection ends when one of the two objects is destroyed. The one-pass variant does not need
/// it.
void forwardLegalOrders(COrderServiceBase& variant, COrderService& service);

/// Places a batch that a signal has brought to the main thread. If the map is the copy of a kept batch, the
/// variant that checked the batch places it, unless it was already placed or reported. Otherwise the caller
/// owns the map, and the current variant places `orders`. An exception of the variant is reported.
void placeReceivedOrders(const QVector<orderParamForOrderService>& orders,
                         const COrderStrategyMap* strategies) noexcept;

/// Reports every batch that waits for the adapter. Main thread, when the adapter is deleted.
void dropAtEndOfAdapter() noexcept;
/// Reports every batch of this service that nobody has placed. Main thread, when the service is deleted and
/// its threads have ended.
void dropAtEndOfService(const COrderService& service) noexcept;

} // namespace TC
