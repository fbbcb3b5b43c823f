#include "orderservice/service/OrderService.h"

#include "orderservice/base/Text.h"
#include "orderservice/base/Thread.h"
#include "orderservice/check/OrderServiceBase.h"
#include "orderservice/check/PositionExchange.h"
#include "orderservice/check/Reports.h"
#include "orderservice/gates/OrderConfirmer.h"
#include "orderservice/intake/FileService.h"
#include "orderservice/platform/ExchangeClient.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/HostReports.h"
#include "orderservice/platform/IntakeAudit.h"
#include "orderservice/platform/TradeClient.h"
#include "orderservice/platform/TradeFrameworkSource.h"
#include "orderservice/platform/UserConfig.h"
#include "orderservice/service/LegalBatches.h"
#include "orderservice/service/OrderQueue.h"
#include "orderservice/service/Settings.h"
#include "orderservice/service/StrategyRegistry.h"
#include "orderservice/socket/SocketListeners.h"
#include "orderservice/variants/BatchVariant.h"
#include "orderservice/variants/OrderServiceSplit.h"
#include "orderservice/variants/OrderServiceUnion.h"

#include <QThread>

#include <cstdio>
#include <cstdlib>
#include <future>
#include <mutex>
#include <thread>
#include <utility>

Q_DECLARE_METATYPE(TC::COrderParam)
Q_DECLARE_METATYPE(TC::orderParamForOrderService)
Q_DECLARE_METATYPE(knservice::COrderInfoPtr)
Q_DECLARE_METATYPE(std::string)

namespace TC {
namespace {

void registerMetaTypes() {
    qRegisterMetaType<QVector<TC::COrderParam>>("QVector<TC::COrderParam>");
    qRegisterMetaType<QVector<TC::orderParamForOrderService>>("QVector<TC::orderParamForOrderService>");
    qRegisterMetaType<knservice::COrderInfoPtr>("knservice::COrderInfoPtr");
    qRegisterMetaType<std::string>("std::string");
    qRegisterMetaType<const QMap<int, TC::COrderStrategyParam>*>("const QMap<int,TC::COrderStrategyParam>*");
}

/// Whether a user without the order service uses the two-pass variant.
bool isSplitUser(const CUserConfig& user) {
    return hostCall<&CUserConfig::hasUserAuth>.on(user, EUserAuth::SignalOrders) ||
           hostCall<&CUserConfig::hasUserAuth>.on(user, EUserAuth::FileOrders);
}

void reportClosed(int orders) {
    reportSafely(utils::fillText(QStringLiteral("[接口单]　下单服务已关闭, %1条指令未执行!"),
                                 {QString::number(orders)}));
}

void reportNoEndHere() {
    reportSafely(QStringLiteral("[接口单]　不能在下单服务的线程或回调中关闭下单服务, 请在主线程调用!"));
}

/// Asks the trading layer to cancel the task. The call returns no result.
void cancelTask(int taskId) {
    const CUserConfig* user = getUserConfig();
    const bool isSignalUser =
        user != nullptr && hostCall<&CUserConfig::hasUserAuth>.on(*user, EUserAuth::SignalOrders);
    const std::string name = user != nullptr ? hostCall<&CUserConfig::getUserName>.on(*user) : std::string();
    const std::string remark =
        "用户" + name + (isSignalUser ? "信号单" : "接口单") + "撤销指令" + std::to_string(taskId);
    const std::string tradingDay = hostCall<&CExchangeClient::getMaxTradingDay>();
    hostCall<&CTradeClient::cancelTask>(taskId, kTaskOpCancel, {}, remark, tradingDay, {}, 0);
}

/// Ends every batch when the backlog is dropped.
class CBacklogOwner final : public IBatchOwner {
public:
    explicit CBacklogOwner(const std::atomic<bool>& isDropping) : m_isDropping(isDropping) {}
    bool mayBegin() override { return !m_isDropping; }

private:
    const std::atomic<bool>& m_isDropping;
};

} // namespace

struct COrderService::CThreads {
    std::mutex end; ///< held by shutdown: only one runs at a time
    QThread service;
    std::thread file;
    std::unique_ptr<COrderQueue> queue; ///< posts calls to `service`
};

COrderService::COrderService(QObject*)
    : m_listeners(std::make_unique<CSocketListeners>(*this, *this)),
      m_registry(std::make_unique<CStrategyRegistry>([this](bool running) { announceStatus(running); },
                                                     *m_listeners)),
      m_threads(std::make_unique<CThreads>()) {
    registerMetaTypes();
    m_fileService = std::make_unique<CFileService>(*this, *this);
    connectOwnSignals();
    // Created before the thread starts: the start of the thread makes the queue visible to it.
    m_threads->queue = std::make_unique<COrderQueue>(*this, m_threads->service);
    m_threads->service.start(QThread::InheritPriority);
    connectHost(); // last: the host may emit at once, on any thread, and then needs the queue
}

/// Each signal reaches its slot through the queue, like a signal of an automatic connection. These
/// connections are made before the host can connect its receivers. So a batch is queued before the host's
/// receivers get it.
void COrderService::connectOwnSignals() {
    const auto queueBatch = [this](QVector<COrderParam> orders) {
        const int count = orders.size();
        const bool isQueued = m_threads->queue->post(
            [this, batch = std::move(orders)]() mutable { slotPlaceOrders(std::move(batch)); });
        if (!isQueued && count > 0) reportClosed(count);
    };
    const auto queueCancel = [this](int taskId) {
        if (!m_threads->queue->post([this, taskId] { slotCancelOrder(taskId); })) reportClosed(1);
    };
    connect(this, &COrderService::sigPlaceOrders, this, queueBatch, Qt::DirectConnection);
    connect(this, &COrderService::sigCancelOrder, this, queueCancel, Qt::DirectConnection);
}

/// A date that arrives after shutdown is ignored, since nobody needs it. An answer to a cancel is still
/// reported, because the host may answer while the backlog is processed.
void COrderService::connectHost() {
    const auto queueDate = [this](const std::string& date) {
        (void)m_threads->queue->post([this, date] { slotNewTradingDate(date); });
    };
    const auto queueAnswer = [this](const knservice::COrderInfoPtr& info, bool success,
                                    const std::string& message) {
        if (!m_threads->queue->post([=] { slotDbfCancelOrder(info, success, message); }))
            slotDbfCancelOrder(info, success, message);
    };
    m_hostConnections.push_back(connect(&CExchangeClient::instance(), &CExchangeClient::sigNewTradingDate,
                                        this, queueDate, Qt::DirectConnection));
    m_hostConnections.push_back(connect(&CTradeClient::instance(), &CTradeClient::sigCancelOrder, this,
                                        queueAnswer, Qt::DirectConnection));
}

void COrderService::disconnectHost() {
    for (const QMetaObject::Connection& connection : m_hostConnections)
        disconnect(connection);
    m_hostConnections.clear();
}

COrderService::~COrderService() {
    shutdown();
    if (m_threads->service.isRunning()) {
        // It was deleted without release, inside one of its own calls. The process cannot continue safely.
        std::fputs("order service: COrderService was deleted inside a call-back\n", stderr);
        std::abort();
    }
    dropAtEndOfService(*this);
    disconnect();
}

void COrderService::release() {
    if (instance() != nullptr && instance()->isInside()) return reportNoEndHere();
    utils::CManualSingletonT<COrderService>::release();
}

/// The service's thread also runs calls that the host posts to the service as receiver.
bool COrderService::isInside() const {
    return utils::CLibraryCall::isInProgress() || m_threads->queue->isOnOwnThread();
}

/// An exception that leaves the event loop would end the process.
bool COrderService::event(QEvent* event) {
    const utils::CLibraryCall call;
    bool isHandled = true;
    runGuarded(QStringLiteral("下单服务线程中的调用异常"), [&] { isHandled = QObject::event(event); });
    return isHandled;
}

void COrderService::shutdown() {
    if (isInside()) return reportNoEndHere();
    const utils::CLibraryCall call;
    const std::lock_guard lock(m_threads->end);
    if (!m_threads->service.isRunning()) return;
    // This thread waits for the others, so it must not let them wait for the user's answer.
    const CConfirmationStop stop(QStringLiteral("下单服务正在关闭"));
    m_fileService->stop();
    m_registry->closeDoors();
    if (m_threads->file.joinable()) m_threads->file.join();
    m_listeners->joinAll();
    std::promise<void> processed;
    m_threads->queue->close([&processed] { processed.set_value(); });
    processed.get_future().wait();
    disconnectHost(); // late: until here the audit gets the answers to cancels
    m_threads->service.quit();
    m_threads->service.wait();
    if (m_bDropping) discardWaiting(*this);
}

void COrderService::dropBacklog() {
    const utils::CLibraryCall call;
    m_bDropping = true;
    // On the service's thread, because the audit gets orders there. If the queue is closed, shutdown does it.
    (void)m_threads->queue->post([this] { discardWaiting(*this); });
}

int COrderService::delayedBatches() const {
    return delayedBatchesOf(*this);
}

void COrderService::loadFromConfig(bool showMsg) {
    const utils::CLibraryCall call;
    const std::lock_guard lock(m_registry->mutex());
    if (m_registry->isClosing()) return;
    try {
        bindUser(showMsg);
    } catch (...) {
        // Strategies that were neither filtered nor checked must not trade.
        unbind();
        reportFailure(QStringLiteral("用户配置加载失败, 没有策略运行"));
    }
}

/// Every step that can fail comes before the first strategy is started.
void COrderService::bindUser(bool showMsg) {
    CUserConfig* user = getUserConfig();
    if (user == nullptr) return unbind();
    COrderStrategyMap* strategies = hostCall<&CUserConfig::getStrategyMap>.on(*user);
    if (strategies == nullptr)
        throw CHostError(operationName<&CUserConfig::getStrategyMap>(), "there is no map of strategies");
    const std::string userName = hostCall<&CUserConfig::getUserName>.on(*user);
    const bool hasFramework = hostCall<&CUserConfig::hasShowTradeFrameworkPermission>.on(*user);
    changeUser(strategies, userName);
    m_registry->bind(strategies);
    chooseVariant(*user);
    if (m_orderService)
        m_registry->filter([this](COrderStrategyMap* kept) { m_orderService->filterStrategies(kept); });
    startFileThread(); // its first pass waits until the registry is unlocked
    m_registry->restartRemembered(showMsg);
    if (hasFramework) reportSafely(QStringLiteral("[接口单]　此版本尚不支持交易框架接口!"));
}

/// Strategies that were running are now stopped, so the new status is emitted.
void COrderService::unbind() {
    const bool wasRunning = hasRunning();
    changeUser(nullptr, {});
    m_registry->bind(nullptr);
    if (wasRunning) announceStatus(false);
}

/// Checked orders of the previous user must not be sent for the new one. A first pass that is still running
/// finds the new number when it emits its batch.
void COrderService::changeUser(const COrderStrategyMap* strategies, const std::string& userName) {
    const bool isSame = m_pUserStrategies == strategies && m_strUserName == userName;
    m_pUserStrategies = strategies;
    m_strUserName = userName;
    if (isSame) return;
    ++m_nUser;
    dropAtEndOfUser(*this);
}

/// Called for each batch of the two-pass variant when its first pass is finished.
EBatchFate COrderService::fateOfBatch() const {
    if (m_bDropping) return EBatchFate::Discard;
    return m_nUserOfBatch == m_nUser ? EBatchFate::Place : EBatchFate::UserLeft;
}

/// A variant with two passes also needs forwardLegalOrders (service/LegalBatches.h).
void COrderService::chooseVariant(const CUserConfig& user) {
    if (m_orderService) return;
    const auto use = [this](auto variant) {
        m_pBatchVariant = variant.get();
        m_orderService = std::move(variant);
        m_pVariant = m_orderService.get();
    };
    if (hostCall<&CUserConfig::hasOrderService>.on(user)) {
        use(std::make_unique<COrderServiceUnion>());
    } else if (isSplitUser(user)) {
        auto variant = std::make_unique<COrderServiceSplit>();
        forwardLegalOrders(*variant, *this, [this] { return fateOfBatch(); });
        use(std::move(variant));
    }
}

void COrderService::startFileThread() {
    if (m_threads->file.joinable()) return;
    m_threads->file = std::thread([this] {
        const utils::CLibraryCall call;
        utils::setThreadName("orderservice");
        runGuarded(QStringLiteral("文件单线程结束"), [this] { m_fileService->startFileServer(); });
    });
}

void COrderService::loadSettings(QDomElement& element) {
    loadInterfaces(element, m_interfaces);
}

void COrderService::saveSettings(QDomElement& element, QDomDocument& document) {
    const utils::CLibraryCall call;
    try {
        saveInterfaces(hostCall<&knservice::CTradeFrameworkSource::getAllInterfaces>(), element, document);
    } catch (...) {
        reportFailure(QStringLiteral("交易框架接口未保存"));
        throw;
    }
}

void COrderService::placeorder(COrderParam order) {
    QVector<COrderParam> batch(1); // an initializer list would copy the order
    batch.first() = std::move(order);
    placeOrders(std::move(batch));
}

void COrderService::placeOrders(QVector<COrderParam> orders) {
    const utils::CLibraryCall call;
    if (m_threads->queue->isRefusing()) {
        if (!orders.isEmpty()) reportClosed(orders.size());
        return;
    }
    runGuarded(QStringLiteral("sigPlaceOrders的接收者异常"), [&] { emit sigPlaceOrders(std::move(orders)); });
}

void COrderService::placeLegalOrders(QVector<orderParamForOrderService> orders) {
    const utils::CLibraryCall call;
    COrderServiceBase* variant = getOrderService();
    if (variant == nullptr) return;
    // If the host has received these orders by the signal, the adapter must not place them again.
    (void)CLegalBatches::instance().takeOrders(orders);
    const COrderStrategyMap strategies = m_registry->copy();
    if (delayIfConfirming({orders, strategies, variant, this})) return;
    variant->placeLegalOrders(std::move(orders), &strategies);
}

void COrderService::cancelOrder(int taskId) {
    const utils::CLibraryCall call;
    if (m_threads->queue->isRefusing()) return reportClosed(1);
    runGuarded(QStringLiteral("sigCancelOrder的接收者异常"), [&] { emit sigCancelOrder(taskId); });
}

void COrderService::holdUntilProcessed(std::shared_ptr<const void> ticket) {
    (void)m_threads->queue->post([ticket = std::move(ticket)]() mutable { ticket.reset(); });
}

void COrderService::cancelOrders(std::vector<std::string>& fields) {
    const utils::CLibraryCall call;
    try {
        emit sigCancelOrders(fields);
    } catch (...) {
        throwHostError("sigCancelOrders");
    }
}

/// Emitted with the registry locked, after the start or stop is complete. An exception of a receiver does not
/// undo it.
void COrderService::announceStatus(bool isAnyRunning) {
    runGuarded(QStringLiteral("sigSetStatus的接收者异常"), [&] { emit sigSetStatus(isAnyRunning); });
}

bool COrderService::isUniversal(int channel) const {
    return TC::isUniversal(channel);
}

void COrderService::exchangePosition(boost::shared_ptr<CAccountInfo> account,
                                     QVector<COrderSingleParam>& rows) const {
    const utils::CLibraryCall call;
    runGuarded(QStringLiteral("持仓未换算"), [&] { TC::exchangePosition(account, rows, 1); });
}

bool COrderService::hasRunning() const {
    return m_registry->hasRunning();
}

QString COrderService::getStatusBarTip() const {
    return m_registry->statusBarTip();
}

COrderServiceBase* COrderService::getOrderService() const {
    return m_pVariant;
}

void COrderService::setStrategyGuard(
    std::function<QString(const COrderStrategyParam&, const QMap<int, COrderStrategyParam>&)> guard) {
    m_registry->setGuard(std::move(guard));
}

int COrderService::addOrderStrategy(EOrderStrategyType type) {
    const utils::CLibraryCall call;
    return m_registry->add(type);
}

int COrderService::updateOrderStrategy(int, COrderStrategyParam param) {
    const utils::CLibraryCall call;
    return m_registry->update(param);
}

int COrderService::removeOrderStrategy(int id) {
    const utils::CLibraryCall call;
    return m_registry->remove(id);
}

QMap<int, COrderStrategyParam> COrderService::getStrategyMap() const {
    return m_registry->copy();
}

const COrderStrategyParam* COrderService::getStrategyConst(int id) const {
    return m_registry->find(id);
}

COrderStrategyParam* COrderService::getStrategy(int id) {
    return m_registry->findWritable(id);
}

int COrderService::startOrderStrategy(int id, QString& error, bool showMsg) {
    const utils::CLibraryCall call;
    return m_registry->start(id, error, showMsg);
}

int COrderService::stopOrderStrategy(int id, QString& error) {
    const utils::CLibraryCall call;
    return m_registry->stop(id, error);
}

int COrderService::addDbfStrategy(COrderStrategyParam&) {
    const utils::CLibraryCall call;
    reportSafely(QStringLiteral("[批量埋单]　此版本尚不支持DBF委托表!"));
    return -1;
}

QString COrderService::getOrderStrategyText(EOrderStrategyType type) const {
    const utils::CLibraryCall call;
    return safeOrderStrategyText(type);
}

std::string COrderService::defaultRemark(const COrderStrategyParam& strategy) const {
    const utils::CLibraryCall call;
    EQdTraderType traderType{};
    const COrderServiceBase* variant = getOrderService();
    return variant != nullptr ? variant->getCmdLog(strategy, traderType) : std::string();
}

COrderStrategyPtr COrderService::strategyOf(int channel) {
    return m_registry->strategyOf(channel);
}

std::uint64_t COrderService::revision() const {
    return m_registry->revision();
}

void COrderService::visitStrategies(const std::function<void(int, const COrderStrategyParam&)>& visit) {
    const utils::CLibraryCall call;
    m_registry->visit(visit);
}

void COrderService::slotNewTradingDate(std::string date) {
    const utils::CLibraryCall call;
    runGuarded(QStringLiteral("新交易日未转交"),
               [&] { hostCall<&knservice::CTradeFrameworkSource::switchTradingDate>(date); });
}

void COrderService::slotPlaceOrders(QVector<COrderParam> orders) {
    const utils::CLibraryCall call;
    if (orders.isEmpty()) return;
    if (m_bDropping) return reportUnplaced(orders);
    runGuarded(QStringLiteral("批次中断"), [&] { processBatch(orders); });
}

void COrderService::processBatch(const QVector<COrderParam>& orders) {
    IBatchVariant* variant = m_pBatchVariant;
    m_nUserOfBatch = m_nUser.load(); // before the first strategy is used
    const bool isBound = m_registry->isBound();
    if (variant == nullptr || !isBound) {
        const char* cause = isBound ? "the user has no right to an order service" : "no user is loaded";
        return reportOrdersDropped(orders.first().m_nChannel, orders.size(), QString::fromUtf8(cause));
    }
    // The variant gets shared copies of the strategies: checks can wait for quotes, and the registry must not
    // be locked meanwhile.
    CBacklogOwner owner(m_bDropping);
    const CBatchResult result = variant->processBatch(orders, *m_registry, owner);
    if (result.m_eEnd == EBatchEnd::StoppedByOwner) reportUnplaced(orders.mid(result.m_nBegun));
}

void COrderService::slotCancelOrder(int taskId) {
    const utils::CLibraryCall call;
    runGuarded(QStringLiteral("任务%1未撤销").arg(taskId), [taskId] { cancelTask(taskId); });
}

// Only cancels from a row of a table would need more work here, and tables are not supported yet. A cancel
// that failed is reported to the audit.
void COrderService::slotDbfCancelOrder(knservice::COrderInfoPtr, bool success, std::string message) {
    const utils::CLibraryCall call;
    if (success) return;
    CIncidentReport report;
    report.m_eIncident = EIncident::CancelNotDone;
    report.m_strCause = QString::fromStdString(message);
    reportToAudit(report);
}

} // namespace TC
