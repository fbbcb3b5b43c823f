#include "desk/window/LiveControl.h"

#include "desk/config/ConfigLoader.h"
#include "orderservice/gates/OrderConfirmer.h"
#include "orderservice/service/OrderService.h"

#include <map>
#include <set>
#include <utility>

namespace desk {
namespace {

constexpr const char* kCancelText = "cancelled in the window";
constexpr const char* kHaltText = "the desk was halted";

thread_local QString s_lastMessage;

/// The result of an operation that shows its reason as a message.
QString resultText(int result) {
    if (result >= 0) return {};
    return CWindowMsgService::last().isEmpty() ? QStringLiteral("-1") : CWindowMsgService::last();
}

} // namespace

void CWindowMsgService::showMsg(const QString& text, TC::EMsgTypeDef type, TC::MsgLevel level, bool flag1,
                                bool flag2, const QString& extra) {
    s_lastMessage = text;
    m_feed.addMessage(CFeedMessage::EKind::Service, level == TC::MsgLevel::Warning, text);
    m_desk.showMsg(text, type, level, flag1, flag2, extra);
}

const QString& CWindowMsgService::last() {
    return s_lastMessage;
}

void CWindowMsgService::clearLast() {
    s_lastMessage.clear();
}

CLiveControl::CLiveControl(CDesk& desk, CWindowFeed& feed) : m_desk(desk), m_feed(feed) {}

CLiveControl::~CLiveControl() = default;

void CLiveControl::feedStart() {
    for (const CPaperTask& task : m_desk.broker().tasks())
        m_feed.addTask(task);
    for (const CPaperOrder& order : m_desk.broker().orders())
        m_feed.addOrder(order);
    std::map<int, CPaperOrder> orders;
    for (const CPaperOrder& order : m_desk.broker().orders())
        orders.emplace(order.m_nId, order);
    for (const CPaperFill& fill : m_desk.broker().fills()) {
        CBrokerEvent event;
        event.m_order = orders[fill.m_nOrder];
        event.m_fill = fill;
        m_feed.addEvent(event);
    }
    m_worker =
        std::make_unique<CDeskWorker>(m_desk.broker(), m_desk.quotes(), m_desk.config().instruments, m_feed);
}

CDeskStatus CLiveControl::status() const {
    CDeskStatus status;
    status.m_bHalting = m_bHalting;
    status.m_bHalted = m_pause != nullptr && !status.m_bHalting;
    status.m_bConfirmationPause = TC::isConfirmationPauseSet();
    status.m_bConfirmationOpen = TC::isConfirmationOpen();
    const utils::KNError failure = m_desk.journal().failure();
    if (!failure.isSuccess()) status.m_strJournalFailure = failure.errorMsg();
    return status;
}

std::uint64_t CLiveControl::strategyRevision() const {
    return TC::COrderService::instance()->revision();
}

TC::COrderStrategyMap CLiveControl::strategies() const {
    return TC::COrderService::instance()->getStrategyMap();
}

QString CLiveControl::startStrategy(int id) {
    // As at the start of the desk: a strategy starts only if its file exists.
    CDeskConfig only;
    only.strategies.insert(id, strategies().value(id));
    only.strategies[id].m_nStatus = TC::COrderStrategyParam::kRunning;
    for (const std::string& problem : prepareOrderFiles(only))
        return QString::fromStdString(problem);
    QString error;
    return TC::COrderService::instance()->startOrderStrategy(id, error, true) == 0 ? QString() : error;
}

QString CLiveControl::stopStrategy(int id) {
    QString error;
    return TC::COrderService::instance()->stopOrderStrategy(id, error) == 0 ? QString() : error;
}

QString CLiveControl::removeStrategy(int id) {
    CWindowMsgService::clearLast();
    return resultText(TC::COrderService::instance()->removeOrderStrategy(id));
}

QString CLiveControl::changeStrategy(const TC::COrderStrategyParam& strategy) {
    CWindowMsgService::clearLast();
    return resultText(TC::COrderService::instance()->updateOrderStrategy(strategy.m_nChannel, strategy));
}

QString CLiveControl::addStrategy(const TC::COrderStrategyParam& strategy) {
    CWindowMsgService::clearLast();
    const int id = TC::COrderService::instance()->addOrderStrategy(strategy.m_eStrategyType);
    if (id < 0) return resultText(id);
    TC::COrderStrategyParam added = strategy;
    added.m_nChannel = id;
    added.m_nStatus = TC::COrderStrategyParam::kStopped;
    QString failure = changeStrategy(added);
    if (!failure.isEmpty()) TC::COrderService::instance()->removeOrderStrategy(id);
    return failure;
}

void CLiveControl::cancelOrders(std::vector<std::pair<std::string, int>> orders) {
    m_worker->post([this, all = std::move(orders)] {
        for (const auto& [account, order] : all)
            m_desk.tradeClient().cancelOrders({"cancel_order", account, std::to_string(order)});
    });
}

void CLiveControl::cancelTasks(std::vector<int> tasks) {
    m_worker->post([this, all = std::move(tasks)] {
        for (const int task : all)
            m_desk.tradeClient().cancelTask(task, TC::kTaskOpCancel, kCancelText, kCancelText, {}, {}, 0);
    });
}

void CLiveControl::cancelAllWaiting() {
    std::set<int> tasks;
    for (const CPaperOrder& order : m_desk.broker().orders()) {
        if (order.isOpen()) tasks.insert(order.m_nTask);
    }
    for (const int task : tasks)
        m_desk.tradeClient().cancelTask(task, TC::kTaskOpCancel, kHaltText, kHaltText, {}, {}, 0);
}

void CLiveControl::halt() {
    if (m_pause) return;
    m_pause = std::make_unique<TC::CIntakePause>();
    m_bHalting = true;
    m_desk.orderClient().setHalted(true);
    m_worker->post([this] {
        m_desk.orderClient().finishPassing();
        cancelAllWaiting();
        m_bHalting = false;
    });
}

void CLiveControl::resume() {
    if (!m_pause || m_bHalting) return;
    m_desk.orderClient().setHalted(false);
    m_pause.reset();
}

void CLiveControl::endConfirmationPause() {
    if (!TC::isConfirmationOpen()) TC::setConfirmationPause(false);
}

} // namespace desk
