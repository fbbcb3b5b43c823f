#include "service/OrderService.h"

#include "base/Text.h"
#include "base/Thread.h"
#include "check/OrderServiceBase.h"
#include "check/PositionExchange.h"
#include "check/Reports.h"
#include "intake/FileService.h"
#include "platform/ExchangeClient.h"
#include "platform/MsgService.h"
#include "platform/TradeClient.h"
#include "platform/TradeFrameworkSource.h"
#include "platform/UserConfig.h"
#include "service/HandOver.h"
#include "service/Settings.h"
#include "service/StrategyRegistry.h"
#include "socket/SocketListeners.h"
#include "variants/OrderServiceUnion.h"

#include <QThread>

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

/// Whether the user's orders belong to the two-pass variant, which is not built yet.
bool isSplitUser(const CUserConfig* user) {
    return user != nullptr && !user->hasOrderService() &&
           (user->hasUserAuth(EUserAuth::SignalOrders) || user->hasUserAuth(EUserAuth::FileOrders));
}

void reportUnbuiltVariant() {
    showServiceMsg(QStringLiteral("[接口单]　此版本尚不支持分步下单服务, 指令未执行!"));
}

void reportClosed(int orders) {
    showServiceMsg(utils::fillText(QStringLiteral("[接口单]　下单服务已关闭, %1条指令未执行!"),
                                   {QString::number(orders)}));
}

} // namespace

struct COrderService::CThreads {
    QThread service;
    std::thread file;
    CHandOver handOver;
};

COrderService::COrderService(QObject*)
    : m_listeners(std::make_unique<CSocketListeners>(*this, *this)),
      m_registry(std::make_unique<CStrategyRegistry>([this](bool running) { emit sigSetStatus(running); },
                                                     *m_listeners)),
      m_threads(std::make_unique<CThreads>()) {
    registerMetaTypes();
    m_fileService = std::make_unique<CFileService>(*this, *this);
    connectHost();
    connect(this, &COrderService::sigPlaceOrders, this, &COrderService::slotPlaceOrders);
    connect(this, &COrderService::sigCancelOrder, this, &COrderService::slotCancelOrder);
    installEventFilter(&m_threads->handOver);
    m_threads->service.start(QThread::InheritPriority);
    moveToThread(&m_threads->service);
    m_threads->handOver.moveToThread(&m_threads->service);
}

/// The host's signals reach the slots as an automatic connection would bring them, through the hand-over like
/// all else.
void COrderService::connectHost() {
    m_hostConnections.push_back(connect(
        &CExchangeClient::instance(), &CExchangeClient::sigNewTradingDate, this,
        [this](const std::string& date) {
            m_threads->handOver.around([&] {
                QMetaObject::invokeMethod(
                    this, [this, date] { slotNewTradingDate(date); }, Qt::AutoConnection);
            });
        },
        Qt::DirectConnection));
    m_hostConnections.push_back(connect(
        &CTradeClient::instance(), &CTradeClient::sigCancelOrder, this,
        [this](const knservice::COrderInfoPtr& info, bool success, const std::string& message) {
            m_threads->handOver.around([&] {
                QMetaObject::invokeMethod(
                    this, [=] { slotDbfCancelOrder(info, success, message); }, Qt::AutoConnection);
            });
        },
        Qt::DirectConnection));
}

void COrderService::disconnectHost() {
    for (const QMetaObject::Connection& connection : m_hostConnections)
        disconnect(connection);
    m_hostConnections.clear();
}

COrderService::~COrderService() {
    shutdown();
    disconnect();
}

void COrderService::shutdown() {
    if (!m_threads->service.isRunning()) return;
    disconnectHost();
    m_registry->closeDoors();
    m_fileService->stop();
    if (m_threads->file.joinable()) m_threads->file.join();
    m_listeners->joinAll();
    // Events are served in order: when this one has had its turn, every batch posted before has too.
    std::promise<void> workedOff;
    m_threads->handOver.around([&] {
        m_bClosed = true;
        QMetaObject::invokeMethod(
            this, [&workedOff] { workedOff.set_value(); }, Qt::QueuedConnection);
    });
    workedOff.get_future().wait();
    m_threads->service.quit();
    m_threads->service.wait();
}

void COrderService::loadFromConfig(bool showMsg) {
    const std::lock_guard lock(m_registry->mutex());
    if (m_registry->isClosing()) return;
    CUserConfig* user = getUserConfig();
    m_registry->bind(user != nullptr ? user->getStrategyMap() : nullptr);
    if (user == nullptr) return;
    chooseVariant(*user);
    if (m_orderService) {
        m_registry->filter(
            [this](COrderStrategyMap* strategies) { m_orderService->filterStrategies(strategies); });
    }
    m_registry->restartRemembered(showMsg);
    startFileThread();
    if (user->hasShowTradeFrameworkPermission()) {
        showServiceMsg(QStringLiteral("[接口单]　此版本尚不支持交易框架接口!"));
    }
}

void COrderService::chooseVariant(const CUserConfig& user) {
    if (m_orderService) return;
    if (user.hasOrderService()) {
        m_orderService =
            std::make_unique<COrderServiceUnion>([this](int channel) { renewStrategy(channel); });
        m_pVariant = m_orderService.get();
    } else if (isSplitUser(&user)) {
        reportUnbuiltVariant();
    }
}

void COrderService::startFileThread() {
    if (m_threads->file.joinable()) return;
    m_threads->file = std::thread([this] {
        utils::setThreadName("orderservice");
        m_fileService->startFileServer();
    });
}

void COrderService::loadSettings(QDomElement& element) {
    loadInterfaces(element, m_interfaces);
}

void COrderService::saveSettings(QDomElement& element, QDomDocument& document) {
    saveInterfaces(knservice::CTradeFrameworkSource::instance().getAllInterfaces(), element, document);
}

/// What the service's own thread brings while the last batches are worked off is still worked off with them.
bool COrderService::isRefusing() const {
    return m_bClosed && QThread::currentThread() != thread();
}

void COrderService::placeorder(COrderParam order) {
    placeOrders({std::move(order)});
}

void COrderService::placeOrders(QVector<COrderParam> orders) {
    bool isClosed = false;
    m_threads->handOver.around([&] {
        isClosed = isRefusing();
        if (!isClosed) emit sigPlaceOrders(std::move(orders));
    });
    if (isClosed && !orders.isEmpty()) reportClosed(orders.size());
}

void COrderService::placeLegalOrders(QVector<orderParamForOrderService> orders) {
    COrderServiceBase* variant = getOrderService();
    if (variant == nullptr) return;
    const COrderStrategyMap strategies = m_registry->copy();
    variant->placeLegalOrders(std::move(orders), &strategies);
}

void COrderService::cancelOrder(int taskId) {
    bool isClosed = false;
    m_threads->handOver.around([&] {
        isClosed = isRefusing();
        if (!isClosed) emit sigCancelOrder(taskId);
    });
    if (isClosed) reportClosed(1);
}

void COrderService::holdUntilWorkedOff(std::shared_ptr<const void> ticket) {
    m_threads->handOver.around([&] {
        if (isRefusing()) return;
        QMetaObject::invokeMethod(
            this, [ticket = std::move(ticket)]() mutable { ticket.reset(); }, Qt::AutoConnection);
    });
}

void COrderService::cancelOrders(std::vector<std::string>& fields) {
    emit sigCancelOrders(fields);
}

void COrderService::exchangePosition(boost::shared_ptr<CAccountInfo> account,
                                     QVector<COrderSingleParam>& rows) const {
    TC::exchangePosition(account, rows, 1);
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

int COrderService::addOrderStrategy(EOrderStrategyType type) {
    return m_registry->add(type);
}

int COrderService::updateOrderStrategy(int, COrderStrategyParam param) {
    return m_registry->update(param);
}

int COrderService::removeOrderStrategy(int id) {
    return m_registry->remove(id);
}

QMap<int, COrderStrategyParam> COrderService::getStrategyMap() const {
    return m_registry->copy();
}

const COrderStrategyParam* COrderService::getStrategyConst(int id) const {
    return m_registry->find(id);
}

COrderStrategyParam* COrderService::getStrategy(int id) {
    return m_registry->find(id);
}

int COrderService::startOrderStrategy(int id, QString& error, bool showMsg) {
    return m_registry->start(id, error, showMsg);
}

int COrderService::stopOrderStrategy(int id, QString& error) {
    return m_registry->stop(id, error);
}

int COrderService::addDbfStrategy(COrderStrategyParam&) {
    showServiceMsg(QStringLiteral("[批量埋单]　此版本尚不支持DBF委托表!"));
    return -1;
}

QString COrderService::getOrderStrategyText(EOrderStrategyType type) const {
    return orderStrategyText(type);
}

std::string COrderService::defaultRemark(const COrderStrategyParam& strategy) const {
    EQdTraderType traderType{};
    const COrderServiceBase* variant = getOrderService();
    return variant != nullptr ? variant->getCmdLog(strategy, traderType) : std::string();
}

std::optional<COrderStrategyParam> COrderService::copyStrategy(int channel) {
    return m_registry->copyOne(channel);
}

void COrderService::visitStrategies(const std::function<void(int, const COrderStrategyParam&)>& visit) {
    m_registry->visit(visit);
}

void COrderService::slotNewTradingDate(std::string date) {
    knservice::CTradeFrameworkSource::instance().switchTradingDate(date);
}

void COrderService::slotPlaceOrders(QVector<COrderParam> orders) {
    COrderServiceBase* variant = getOrderService();
    const bool isBound = m_registry->isBound();
    if (variant == nullptr) {
        if (!orders.isEmpty() && isBound && isSplitUser(getUserConfig())) reportUnbuiltVariant();
        return;
    }
    // The variant works on copies, since checks can wait for quotes and the registry must stay open
    // meanwhile. Each order renews the copy of its strategy. A batch can come while another is in hand.
    COrderStrategyMap strategies;
    COrderStrategyMap* const outer = std::exchange(m_pInHand, &strategies);
    variant->placeOrders(std::move(orders), isBound ? &strategies : nullptr);
    m_pInHand = outer;
}

void COrderService::renewStrategy(int channel) {
    if (m_pInHand == nullptr) return;
    if (const auto strategy = m_registry->copyOne(channel)) {
        m_pInHand->insert(channel, *strategy);
    } else {
        m_pInHand->remove(channel);
    }
}

void COrderService::slotCancelOrder(int taskId) {
    const CUserConfig* user = getUserConfig();
    const bool isSignalUser = user != nullptr && user->hasUserAuth(EUserAuth::SignalOrders);
    const std::string name = user != nullptr ? user->getUserName() : std::string();
    const std::string remark =
        "用户" + name + (isSignalUser ? "信号单" : "接口单") + "撤销指令" + std::to_string(taskId);
    const std::string tradingDay = CExchangeClient::instance().getMaxTradingDay();
    CTradeClient::instance().cancelTask(taskId, kTaskOpCancel, {}, remark, tradingDay, {}, 0);
}

// Cancels that did not come from a row of a table pass through without effect, and tables are not read yet.
void COrderService::slotDbfCancelOrder(knservice::COrderInfoPtr, bool, std::string) {}

} // namespace TC
