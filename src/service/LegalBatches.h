#pragma once

#include "orderservice/check/OrderServiceBase.h"
#include "orderservice/records/CommandParam.h"
#include "orderservice/records/StrategyParam.h"

#include <QPointer>
#include <QVector>

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>

/// Brings checked orders from a two-pass variant to the main thread. sigPlaceLegalOrders passes a
/// bare pointer, and Qt discards a queued signal when its receiver is deleted. So the orders and their
/// strategies are kept here. Each batch is passed once to the variant that checked it, or it is reported as
/// dropped, to the user and to the audit. If the variant throws, the audit gets the batch as interrupted.
namespace TC {

class COrderService;

/// A batch of checked orders. Copies share their data.
struct CLegalBatch {
    QVector<orderParamForOrderService> m_orders;
    COrderStrategyMap m_strategies;
    QPointer<COrderServiceBase> m_variant;     ///< checked the orders; null if it was deleted
    const COrderService* m_pService = nullptr; ///< the service of the variant; only compared
};

/// The batches that are not finished. Any thread.
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
    /// Takes the batch that has this list of orders; the list must share its data with the list of the
    /// signal.
    std::optional<CLegalBatch> takeOrders(const QVector<orderParamForOrderService>& orders);
    /// Takes any batch of the service that nobody has taken. A null service means every service.
    std::optional<CLegalBatch> takeAny(const COrderService* service);
    /// Discards the batch. Its address may then be returned for another batch.
    void release(const COrderStrategyMap* strategies);
    /// Ends the batch: if nobody has taken it, it is reported; then it is released. Called on the main
    /// thread, after the receivers there have had the signal. If a receiver threw (`isComplete` is false), a
    /// connected adapter gets the batch first.
    void finish(const COrderStrategyMap* strategies, bool isComplete);
    /// Does the same on the emitting thread, if the end cannot be queued. The adapter is not called there.
    void finishAtOnce(const COrderStrategyMap* strategies);
    /// Destroys the records of all batches of the service, because their destructors may need the host.
    void clear(const COrderService& service);
    /// The number of batches that are not released.
    std::size_t size() const;

private:
    enum class EState { Free, Waiting, Taken, Ended };
    struct CEntry {
        CLegalBatch m_batch;
        EState m_eState = EState::Free;
    };
    CEntry& freeEntry();
    static CLegalBatch takeFrom(CEntry& entry);

    mutable std::mutex m_mutex;
    /// By the address of the batch's map. An entry is never deleted, so that a late signal finds an entry and
    /// not freed memory. There are as many entries as batches were unfinished at the same time. An ended
    /// entry is not used again, because signals of its batch may still be queued.
    std::map<const COrderStrategyMap*, std::unique_ptr<CEntry>> m_entries;
};

/// What is done with a batch when its first pass is finished.
enum class EBatchFate {
    Place,    ///< it goes to the main thread
    UserLeft, ///< it is reported as dropped, because its user has left
    Discard,  ///< the audit gets its orders as unplaced, because the backlog is discarded
};
/// Called on the thread that emits, when the batch is kept. Must not throw.
using CBatchFateFn = std::function<EBatchFate()>;

/// From now on `service` emits each sigPlaceLegalOrders of `variant` that has a map, on the same thread and
/// before the variant's emit returns. The map of the service's signal is a copy, so the variant's map may end
/// after its emit. If a receiver throws, the exception is reported, and COrderServiceAdapter::instance()
/// still gets the batch if it is connected. A batch without a map, or one that no adapter receives, is
/// reported as dropped. The connection ends when one of the two objects is destroyed. The one-pass variant
/// does not need it.
void forwardLegalOrders(
    COrderServiceBase& variant, COrderService& service,
    CBatchFateFn fateOf = [] { return EBatchFate::Place; });

/// Places a batch that a signal has brought to the main thread. If the map is the copy of a kept batch, the
/// variant that checked the batch places it, unless it was already placed or reported. If `orders` is another
/// list, because a receiver of the host has changed it, this list is placed. If the map is not the library's,
/// the caller owns it, and the current variant places `orders`. An exception of the variant is reported.
/// While the user is asked about another batch, this batch waits; it is placed when he has answered.
void placeReceivedOrders(const QVector<orderParamForOrderService>& orders,
                         const COrderStrategyMap* strategies) noexcept;
/// If the user is asked about another batch, keeps this batch until he has answered, and returns true.
/// Otherwise the caller places it. On another thread than the main one it never waits. Throws if there is not
/// enough memory; then nothing is kept.
bool delayIfConfirming(const CLegalBatch& batch);
/// The number of batches of this service that wait in that way. Any thread.
int delayedBatchesOf(const COrderService& service);

/// Reports every batch of this service that is not placed yet, because its accounts belong to a user who has
/// left. On the main thread it also withdraws the question that is open. Any thread.
void dropAtEndOfUser(const COrderService& service) noexcept;
/// Passes the orders of every batch of this service that is not placed yet to the audit, as unplaced. On the
/// service's thread, or when it has ended.
void discardWaiting(const COrderService& service) noexcept;
/// Reports every batch that waits for the adapter. Main thread, when the adapter is deleted.
void dropAtEndOfAdapter() noexcept;
/// Reports every batch of this service that nobody has placed. Main thread, when the service is deleted and
/// its threads have ended.
void dropAtEndOfService(const COrderService& service) noexcept;

} // namespace TC
