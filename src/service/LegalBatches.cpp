#include "orderservice/service/LegalBatches.h"

#include "orderservice/base/Thread.h"
#include "orderservice/check/Reports.h"
#include "orderservice/gates/OrderConfirmer.h"
#include "orderservice/platform/Host.h"
#include "orderservice/platform/HostReports.h"
#include "orderservice/platform/IntakeAudit.h"
#include "orderservice/service/DelayedBatches.h"
#include "orderservice/service/OrderService.h"
#include "orderservice/service/OrderServiceAdapter.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdio>
#include <utility>
#include <vector>

namespace TC {
namespace {

using CLegalOrders = QVector<orderParamForOrderService>;

/// Why checked orders are dropped.
struct CDropCause {
    const char* m_pszMessage; ///< for the user
    const char* m_pszAudit;
};

constexpr CDropCause kNoAdapter{"主线程未接收待确认指令", "no adapter received the checked orders"};
constexpr CDropCause kAdapterEnded{"主线程已停止接收待确认指令",
                                   "the adapter was deleted before it received the checked orders"};
constexpr CDropCause kServiceEnded{"下单服务已关闭",
                                   "the order service was deleted before the checked orders were placed"};
constexpr CDropCause kNoService{"没有下单服务", "there is no order service that can place checked orders"};
constexpr CDropCause kNoStrategies{"待确认指令没有策略", "the checked orders came without their strategies"};
constexpr CDropCause kNotKept{"待确认指令无法保存", "the checked orders could not be kept"};
constexpr CDropCause kUserChanged{"用户已退出或切换",
                                  "their user left before the checked orders were placed"};

void reportToUserAndAudit(const CLegalOrders& orders, const CDropCause& cause, const QString& auditCause) {
    reportNotExecuted(orders.first(), orders.size(), QString::fromUtf8(cause.m_pszMessage), auditCause);
}

QString auditCauseOf(const CDropCause& cause, const QString& detail) {
    const QString text = QString::fromUtf8(cause.m_pszAudit);
    return detail.isEmpty() ? text : text + QStringLiteral(": ") + detail;
}

/// `detail` is appended to the cause for the audit.
void reportDropped(const CLegalOrders& orders, const CDropCause& cause,
                   const QString& detail = QString()) noexcept {
    if (orders.isEmpty()) return;
    if (!isHostInstalled()) { // somebody called the adapter without a host
        std::fprintf(stderr, "order service: %d checked orders were dropped: %s\n", orders.size(),
                     cause.m_pszAudit);
        return;
    }
    const utils::CLibraryCall call;
    runGuarded(QStringLiteral("待确认指令未执行"),
               [&] { reportToUserAndAudit(orders, cause, auditCauseOf(cause, detail)); });
}

/// Never destroyed, like CLegalBatches::instance.
CDelayedBatches& delayedBatches() {
    static auto* const batches = new CDelayedBatches;
    return *batches;
}

/// Any batch of the service that is not placed. The delayed batches came first.
std::optional<CLegalBatch> takeWaiting(const COrderService* service) {
    std::optional<CLegalBatch> batch = delayedBatches().takeFirst(service);
    return batch ? std::move(batch) : CLegalBatches::instance().takeAny(service);
}

void dropWaiting(const COrderService* service, const CDropCause& cause) noexcept {
    while (const std::optional<CLegalBatch> batch = takeWaiting(service))
        reportDropped(batch->m_orders, cause);
}

void discard(const CLegalOrders& orders) noexcept {
    runGuarded(QStringLiteral("待确认指令未执行"), [&] {
        QVector<COrderParam> discarded;
        for (const orderParamForOrderService& order : orders)
            discarded.push_back(order);
        reportUnplaced(discarded);
    });
}

/// Takes the batch, and reports it if nobody else has taken it.
void endKept(const COrderStrategyMap* kept, EBatchFate fate) noexcept {
    const std::optional<CLegalBatch> batch = CLegalBatches::instance().take(kept);
    if (!batch) return;
    if (fate == EBatchFate::Discard) return discard(batch->m_orders);
    reportDropped(batch->m_orders, kUserChanged);
}

/// Keeps the batch. If this fails, reports it and returns null.
const COrderStrategyMap* keepOrReport(COrderServiceBase& variant, const COrderService& service,
                                      const CLegalOrders& orders,
                                      const COrderStrategyMap& strategies) noexcept {
    try {
        return CLegalBatches::instance().keep({orders, strategies, &variant, &service});
    } catch (...) {
        reportDropped(orders, kNotKept, exceptionText());
        return nullptr;
    }
}

/// Queues the end of the batch on the main thread, behind all calls that the emission has queued there. If it
/// cannot be queued, the batch ends at once on the emitting thread. The adapter must not be called there.
void finishLater(const COrderStrategyMap* kept, bool isComplete) noexcept {
    QCoreApplication* const app = QCoreApplication::instance();
    const auto finish = [kept, isComplete] { CLegalBatches::instance().finish(kept, isComplete); };
    const bool isQueued = app != nullptr && runGuarded(QStringLiteral("待确认指令无法排队"), [&] {
                              QMetaObject::invokeMethod(app, finish, Qt::QueuedConnection);
                          });
    if (!isQueued) CLegalBatches::instance().finishAtOnce(kept);
}

/// The fate is asked after the batch is kept. So a user who leaves, or a backlog that is discarded, always
/// has the batch: here, or in the batches that wait.
void forwardBatch(COrderServiceBase& variant, COrderService& service, const CLegalOrders& orders,
                  const COrderStrategyMap* strategies, const CBatchFateFn& fateOf) noexcept {
    if (strategies == nullptr) return reportDropped(orders, kNoStrategies);
    const COrderStrategyMap* const kept = keepOrReport(variant, service, orders, *strategies);
    if (kept == nullptr) return;
    if (const EBatchFate fate = fateOf(); fate != EBatchFate::Place) {
        endKept(kept, fate);
        return CLegalBatches::instance().release(kept);
    }
    const bool isComplete = runGuarded(QStringLiteral("sigPlaceLegalOrders的接收者异常"),
                                       [&] { emit service.sigPlaceLegalOrders(orders, kept); });
    finishLater(kept, isComplete);
}

/// Call it in a catch block.
void reportInterrupted(const CLegalOrders& orders) noexcept {
    if (orders.isEmpty()) return;
    runGuarded(QStringLiteral("批次中断未记录"), [&] {
        CIncidentReport report;
        report.m_eIncident = EIncident::OrdersInterrupted;
        report.m_nChannel = orders.first().m_nChannel;
        report.m_nOrders = orders.size();
        report.m_strCause = exceptionText();
        reportToAudit(report);
    });
}

int s_nPlacing = 0; ///< the number of batches that are being placed on the main thread
int s_nUnasked = 0; ///< how many of them were begun while a question was open

/// Counts a batch as being placed during its lifetime, if it is placed on the main thread.
class CPlacing {
public:
    CPlacing() {
        s_nPlacing += m_nPlacing;
        s_nUnasked += m_nUnasked;
    }
    ~CPlacing() {
        s_nPlacing -= m_nPlacing;
        s_nUnasked -= m_nUnasked;
    }
    CPlacing(const CPlacing&) = delete;
    CPlacing& operator=(const CPlacing&) = delete;

private:
    const int m_nPlacing = utils::isMainThread() ? 1 : 0;
    const int m_nUnasked = m_nPlacing > 0 && isConfirmationOpen() ? 1 : 0;
};

void placeDelayed() noexcept;

/// Lets the delayed batches be placed from the event loop. If that cannot be queued, they are reported.
void resumeDelayed() noexcept {
    if (!utils::isMainThread() || s_nPlacing > 0 || delayedBatches().isEmpty()) return;
    if (runGuarded(QStringLiteral("待确认指令无法排队"), [] { whenNoConfirmationIsOpen(placeDelayed); }))
        return;
    while (const std::optional<CLegalBatch> batch = delayedBatches().takeFirst())
        reportDropped(batch->m_orders, kNotKept);
}

/// The variant reports the failure of a single order itself. This report is for a failure of the variant.
void placeByVariant(COrderServiceBase& variant, const CLegalOrders& orders,
                    const COrderStrategyMap& strategies) noexcept {
    const CPlacing placing;
    try {
        variant.placeLegalOrders(orders, &strategies);
    } catch (...) {
        reportFailure(QStringLiteral("批次中断"));
        reportInterrupted(orders);
    }
}

void placeBatch(COrderServiceBase& variant, const CLegalOrders& orders,
                const COrderStrategyMap& strategies) noexcept {
    placeByVariant(variant, orders, strategies);
    resumeDelayed();
}

void placeOrReport(const CLegalBatch& batch) noexcept {
    if (batch.m_variant == nullptr) return reportDropped(batch.m_orders, kServiceEnded);
    placeBatch(*batch.m_variant, batch.m_orders, batch.m_strategies);
}

/// Whether the main thread places a batch, or waits in the event loop of a question. A service of the host
/// may run an event loop too while a command is sent.
bool isBusy() {
    return s_nPlacing > 0 || isConfirmationOpen();
}

/// Places the batches that were delayed. Does nothing while another batch is placed: its end calls
/// resumeDelayed.
void placeDelayed() noexcept {
    const utils::CLibraryCall call;
    while (!isBusy()) {
        const std::optional<CLegalBatch> batch = delayedBatches().takeFirst();
        if (!batch) return;
        placeOrReport(*batch);
    }
}

/// On the main thread a batch waits while another one is placed, while a question is open, or while other
/// batches wait. A batch without a question does not wait for an open one: its orders would be sent at any
/// later time, and nobody would look at them again. On another thread the variant itself waits for the main
/// thread.
bool mustWait(const COrderServiceBase& variant, const CLegalOrders& orders,
              const COrderStrategyMap& strategies) {
    if (!utils::isMainThread()) return false;
    if (isConfirmationOpen() && s_nUnasked == 0) return variant.mayAsk(orders, strategies);
    return isBusy() || !delayedBatches().isEmpty();
}

bool mustWait(const CLegalBatch& batch) {
    return batch.m_variant != nullptr && mustWait(*batch.m_variant, batch.m_orders, batch.m_strategies);
}

/// Throws if there is not enough memory or no event loop; then the batch is not kept.
void delay(CLegalBatch batch) {
    whenNoConfirmationIsOpen(placeDelayed);
    delayedBatches().add(std::move(batch));
}

void delayOrReport(const CLegalBatch& batch) noexcept {
    try {
        delay(batch);
    } catch (...) {
        reportDropped(batch.m_orders, kNotKept, exceptionText());
    }
}

/// Orders of a host that calls the adapter with a map of its own.
void placeByCurrentVariant(const CLegalOrders& orders, const COrderStrategyMap* strategies) noexcept {
    const COrderService* const service = COrderService::instance();
    COrderServiceBase* const variant = service != nullptr ? service->getOrderService() : nullptr;
    if (variant == nullptr) return reportDropped(orders, kNoService);
    if (strategies == nullptr) return reportDropped(orders, kNoStrategies);
    if (mustWait(*variant, orders, *strategies))
        return delayOrReport({orders, *strategies, variant, service});
    placeBatch(*variant, orders, *strategies);
}

/// Closes the question of the user who has left. From the event loop: the caller has the registry locked, and
/// a window that closes may call anything.
void withdrawLater() {
    const int question = openConfirmation();
    if (question == 0) return;
    const auto withdraw = [question] {
        runGuarded(QStringLiteral("确认窗口未能关闭"), [question] { withdrawConfirmation(question); });
    };
    QMetaObject::invokeMethod(QCoreApplication::instance(), withdraw, Qt::QueuedConnection);
}

} // namespace

CLegalBatches& CLegalBatches::instance() {
    static auto* const batches = new CLegalBatches;
    return *batches;
}

const COrderStrategyMap* CLegalBatches::keep(CLegalBatch batch) {
    batch.m_strategies.detach(); // the next change of a shared map would move the records of the other one
    const std::lock_guard lock(m_mutex);
    CEntry& entry = freeEntry();
    entry.m_batch = std::move(batch);
    entry.m_eState = EState::Waiting;
    return &entry.m_batch.m_strategies;
}

CLegalBatches::CEntry& CLegalBatches::freeEntry() {
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [](const auto& row) { return row.second->m_eState == EState::Free; });
    if (found != m_entries.end()) return *found->second;
    auto entry = std::make_unique<CEntry>();
    const COrderStrategyMap* const address = &entry->m_batch.m_strategies;
    return *m_entries.emplace(address, std::move(entry)).first->second;
}

bool CLegalBatches::isOwn(const COrderStrategyMap* strategies) const {
    const std::lock_guard lock(m_mutex);
    return m_entries.count(strategies) > 0;
}

CLegalBatch CLegalBatches::takeFrom(CEntry& entry) {
    entry.m_eState = EState::Taken;
    return entry.m_batch;
}

std::optional<CLegalBatch> CLegalBatches::take(const COrderStrategyMap* strategies) {
    const std::lock_guard lock(m_mutex);
    const auto found = m_entries.find(strategies);
    if (found == m_entries.end() || found->second->m_eState != EState::Waiting) return std::nullopt;
    return takeFrom(*found->second);
}

std::optional<CLegalBatch> CLegalBatches::takeAny(const COrderService* service) {
    const std::lock_guard lock(m_mutex);
    for (const auto& [address, entry] : m_entries) {
        const bool isOfService = service == nullptr || entry->m_batch.m_pService == service;
        if (entry->m_eState == EState::Waiting && isOfService) return takeFrom(*entry);
    }
    return std::nullopt;
}

std::optional<CLegalBatch> CLegalBatches::takeOrders(const CLegalOrders& orders) {
    const std::lock_guard lock(m_mutex);
    for (const auto& [address, entry] : m_entries) {
        const bool isSameList = entry->m_batch.m_orders.constData() == orders.constData();
        if (entry->m_eState == EState::Waiting && isSameList) return takeFrom(*entry);
    }
    return std::nullopt;
}

void CLegalBatches::release(const COrderStrategyMap* strategies) {
    CLegalBatch released; // declared before the lock, so that it is destroyed after the unlock
    const std::lock_guard lock(m_mutex);
    const auto found = m_entries.find(strategies);
    if (found == m_entries.end()) return;
    std::swap(released, found->second->m_batch);
    found->second->m_eState = EState::Free;
}

void CLegalBatches::finish(const COrderStrategyMap* strategies, bool isComplete) {
    const utils::CLibraryCall call;
    const COrderServiceAdapter* const adapter = isComplete ? nullptr : COrderServiceAdapter::instance();
    if (adapter != nullptr && adapter->m_connection) placeReceivedOrders({}, strategies);
    if (const std::optional<CLegalBatch> batch = take(strategies)) reportDropped(batch->m_orders, kNoAdapter);
    release(strategies);
}

void CLegalBatches::finishAtOnce(const COrderStrategyMap* strategies) {
    finish(strategies, true);
    const std::lock_guard lock(m_mutex);
    m_entries.at(strategies)->m_eState = EState::Ended;
}

void CLegalBatches::clear(const COrderService& service) {
    std::vector<CLegalBatch> cleared; // destroyed after the unlock
    const std::lock_guard lock(m_mutex);
    for (const auto& [address, entry] : m_entries) {
        if (entry->m_batch.m_pService == &service) cleared.push_back(std::exchange(entry->m_batch, {}));
    }
}

std::size_t CLegalBatches::size() const {
    const std::lock_guard lock(m_mutex);
    return static_cast<std::size_t>(std::count_if(m_entries.begin(), m_entries.end(), [](const auto& row) {
        return row.second->m_eState == EState::Waiting || row.second->m_eState == EState::Taken;
    }));
}

// The connection must be direct. A queued one would use the pointer after the variant's map has ended.
void forwardLegalOrders(COrderServiceBase& variant, COrderService& service, CBatchFateFn fateOf) {
    const auto receive = [&variant, &service, fateOf = std::move(fateOf)](
                             const CLegalOrders& orders, const COrderStrategyMap* strategies) {
        forwardBatch(variant, service, orders, strategies, fateOf);
    };
    QObject::connect(&variant, &COrderServiceBase::sigPlaceLegalOrders, &service, receive,
                     Qt::DirectConnection);
}

void placeReceivedOrders(const CLegalOrders& orders, const COrderStrategyMap* strategies) noexcept {
    const utils::CLibraryCall call;
    if (!CLegalBatches::instance().isOwn(strategies)) return placeByCurrentVariant(orders, strategies);
    std::optional<CLegalBatch> batch = CLegalBatches::instance().take(strategies);
    if (!batch) return; // it was placed or reported earlier
    // An empty list comes from `finish`.
    if (!orders.isEmpty() && orders.constData() != batch->m_orders.constData()) batch->m_orders = orders;
    if (mustWait(*batch)) return delayOrReport(*batch);
    placeOrReport(*batch);
}

bool delayIfConfirming(const CLegalBatch& batch) {
    if (!mustWait(batch)) return false;
    delay(batch);
    return true;
}

int delayedBatchesOf(const COrderService& service) {
    return delayedBatches().countOf(service);
}

void dropAtEndOfUser(const COrderService& service) noexcept {
    dropWaiting(&service, kUserChanged);
    runGuarded(QStringLiteral("确认窗口未能关闭"), withdrawLater);
}

void discardWaiting(const COrderService& service) noexcept {
    while (const std::optional<CLegalBatch> batch = takeWaiting(&service))
        discard(batch->m_orders);
}

void dropAtEndOfAdapter() noexcept {
    dropWaiting(nullptr, kAdapterEnded);
}

void dropAtEndOfService(const COrderService& service) noexcept {
    dropWaiting(&service, kServiceEnded);
    CLegalBatches::instance().clear(service);
}

} // namespace TC
