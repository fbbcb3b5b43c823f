#include "desk/window/LiveControl.h"

#include "desk/config/ConfigLoader.h"
#include "desk/journal/JournalEvents.h"
#include "desk/journal/RecordCapture.h"
#include "desk/window/ConfirmDialog.h"
#include "orderservice/base/Clock.h"
#include "orderservice/base/Thread.h"
#include "orderservice/gates/OrderConfirmer.h"
#include "orderservice/service/OrderService.h"

#include <nlohmann/json.hpp>

#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>
#include <exception>
#include <map>
#include <utility>

namespace desk {
namespace {

constexpr const char* kCancelText = "cancelled in the window";
constexpr const char* kHaltText = "the desk was halted";

thread_local QString s_lastMessage;

/// For calls that are queued on the main thread; null when the control has ended. Main thread. The calls do
/// not contain the pointer, because the thread sanitizer does not see how Qt passes it to the main thread.
CLiveControl* s_pCurrent = nullptr;

/// The result of an operation that shows its reason as a message.
QString resultText(int result) {
    if (result >= 0) return {};
    return CWindowMsgService::last().isEmpty() ? QStringLiteral("-1") : CWindowMsgService::last();
}

} // namespace

void CWindowMsgService::showMsg(const QString& text, TC::EMsgTypeDef type, TC::MsgLevel level, bool flag1,
                                bool flag2, const QString& extra) {
    s_lastMessage = text;
    if (!utils::isMainThread()) m_meter->message();
    m_feed.addMessage(CFeedMessage::EKind::Service, level == TC::MsgLevel::Warning, text);
    m_desk.showMsg(text, type, level, flag1, flag2, extra);
}

const QString& CWindowMsgService::last() {
    return s_lastMessage;
}

void CWindowMsgService::clearLast() {
    s_lastMessage.clear();
}

void CWindowOrderClient::orderCommands(const TC::COrderComandParamPtr& command) {
    // The two-pass variant sends on the main thread, when a person may have been asked. The one-pass variant
    // sends while it checks the batch.
    // A call of a function is in no batch.
    m_meter->command(!utils::isMainThread() && !CRecordCapture::isActive(), utils::getTime());
    m_desk.orderCommands(command);
}

void CWindowOrderClient::showTradeError(const QString& text, const QString& title) {
    if (!utils::isMainThread() && !CRecordCapture::isActive()) m_meter->refusal();
    m_desk.showTradeError(text, title);
}

CLiveControl::CLiveControl(CDesk& desk, CWindowFeed& feed) : m_desk(desk), m_feed(feed) {
    s_pCurrent = this;
    m_desk.setStrategyTest([this](const TC::COrderStrategyParam& strategy) { return prepareFile(strategy); });
}

CLiveControl::~CLiveControl() {
    m_desk.setStrategyTest({});
    s_pCurrent = nullptr;
}

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

void CLiveControl::measure() {
    TC::COrderService* const service = TC::COrderService::instance();
    QObject::connect(
        service, &TC::COrderService::sigPlaceOrders, service,
        [service, meter = m_meter](const QVector<TC::COrderParam>& orders) {
            std::shared_ptr<const void> batch = CIntakeMeter::takeOfThread();
            if (batch == nullptr) batch = meter->begin(orders.size(), utils::getTime()); // not from a door
            service->holdUntilProcessed(std::move(batch));
        },
        Qt::DirectConnection);
}

CDeskStatus CLiveControl::status() const {
    CDeskStatus status;
    status.m_bHalting = m_eHalt == EHalt::Halting;
    status.m_bHalted = m_eHalt == EHalt::Halted || m_eHalt == EHalt::Resuming;
    status.m_bResuming = m_eHalt == EHalt::Resuming;
    status.m_bEnding = m_bEnding;
    status.m_bConfirms = !m_desk.config().user.orderService;
    status.m_bConfirmationPause = TC::isConfirmationPauseSet();
    status.m_bConfirmationOpen = CConfirmDialog::isOpen();
    if (TC::isConfirmationOpen()) status.m_nDelayed = TC::COrderService::instance()->delayedBatches();
    {
        const std::lock_guard lock(m_mutex);
        status.m_strHaltProblem = m_strHaltProblem;
    }
    const CIntakeMeter::CState intake = m_meter->state();
    status.m_nQueue = intake.m_nQueue;
    status.m_strLastCommand =
        QString::fromStdString(intake.m_strLastTime.substr(intake.m_strLastTime.find('T') + 1));
    status.m_lastMs = intake.m_lastMs;
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

/// A start that succeeds can have a note.
QString CLiveControl::startStrategy(int id) {
    QString text;
    m_nStarting = id;
    const bool isStarted = TC::COrderService::instance()->startOrderStrategy(id, text, true) == 0;
    m_nStarting = TC::kUnsetInt;
    if (!isStarted || text.isEmpty()) return text;
    const QString note = QCoreApplication::translate("desk::CMainWindow", "Strategy %1: %2");
    m_feed.addMessage(CFeedMessage::EKind::Desk, false, note.arg(QString::number(id), text));
    return {};
}

/// As at the start of the desk: a strategy starts only if its file exists. The registry and the desk have
/// accepted the start.
QString CLiveControl::prepareFile(const TC::COrderStrategyParam& strategy) const {
    if (strategy.m_nChannel != m_nStarting) return {};
    CDeskConfig only;
    only.strategies.insert(m_nStarting, strategy);
    only.strategies[m_nStarting].m_nStatus = TC::COrderStrategyParam::kRunning;
    for (const std::string& problem : prepareOrderFiles(only))
        return QString::fromStdString(problem);
    return {};
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

void CLiveControl::cancel(CCancelChoice choice) {
    m_worker->post([this, choice = std::move(choice)] {
        int cancelled = 0;
        (void)m_desk.tradeClient().cancelChosen(choice, kCancelText, cancelled);
    });
}

void CLiveControl::cancelOrders(std::vector<std::pair<std::string, int>> orders) {
    CCancelChoice choice;
    for (const auto& [account, order] : orders)
        choice.m_orders.insert(order);
    cancel(std::move(choice));
}

void CLiveControl::cancelTasks(std::vector<int> tasks) {
    CCancelChoice choice;
    choice.m_tasks.insert(tasks.begin(), tasks.end());
    cancel(std::move(choice));
}

void CLiveControl::cancelAccounts(std::vector<std::string> accounts) {
    CCancelChoice choice;
    choice.m_accounts.insert(accounts.begin(), accounts.end());
    cancel(std::move(choice));
}

// A halt: no command and no confirmation passes from now on. The worker cancels the orders that wait, and
// tries again while the store refuses that. Then everything that was accepted before is declined. The desk is
// halted only after that, because a resume would send the rest of it.
void CLiveControl::halt() {
    if (m_eHalt != EHalt::None) return;
    m_eHalt = EHalt::Halting;
    m_pause = std::make_unique<TC::CIntakePause>();
    m_desk.setHalted(true);
    CConfirmDialog::close();
    m_worker->post([this] {
        m_nCancelled = 0;
        cancelOrRetry([this] {
            record("halt");
            m_desk.orderClient().finishPassing();
            CCancelChoice all;
            all.m_bAll = true;
            return m_desk.tradeClient().cancelChosen(all, kHaltText, m_nCancelled);
        });
    });
}

/// On the worker.
void CLiveControl::cancelAllWaiting() {
    cancelOrRetry([this] {
        return m_desk.broker().cancelWaiting([](const CPaperOrder&) { return true; }, kHaltText,
                                             m_nCancelled);
    });
}

/// On the worker. Without a next step the halt would never end, so an exception is a failure like others.
void CLiveControl::cancelOrRetry(const CCancel& cancel) {
    try {
        tryAgain(cancel());
    } catch (const std::exception& error) {
        setHaltProblem(QString::fromUtf8(error.what()));
        m_worker->postLater([this] { cancelAllWaiting(); });
    }
}

/// On the worker. The next step, or the same one again if the orders could not be cancelled.
void CLiveControl::tryAgain(const utils::KNError& error) {
    if (error.isSuccess()) {
        setHaltProblem({});
        return waitForAccepted();
    }
    const std::vector<CPaperOrder> orders = m_desk.broker().orders();
    const auto waiting = static_cast<int>(
        std::count_if(orders.begin(), orders.end(), [](const CPaperOrder& order) { return order.isOpen(); }));
    setHaltProblem(QCoreApplication::translate("desk::CStateBar",
                                               "%n order(s) could not be cancelled and still wait: ", nullptr,
                                               waiting) +
                   QString::fromStdString(error.errorMsg()));
    m_worker->postLater([this] { cancelAllWaiting(); });
}

void CLiveControl::setHaltProblem(const QString& problem) {
    const std::lock_guard lock(m_mutex);
    m_strHaltProblem = problem;
}

/// On the worker. Waits for the pass over the order files, then for the orders that were accepted before,
/// then for their confirmations. All of them are declined, because the desk is halted. The last step is
/// called on the main thread.
void CLiveControl::waitForAccepted() {
    TC::COrderService& service = *TC::COrderService::instance();
    service.visitStrategies([](int, const TC::COrderStrategyParam&) {});
    const auto processed = [](const bool* ticket) {
        delete ticket;
        continueLater();
    };
    service.holdUntilProcessed(std::shared_ptr<const bool>(new bool(true), processed));
}

/// Checked batches were queued on the main thread before this call is queued there.
void CLiveControl::continueLater() {
    QMetaObject::invokeMethod(
        qApp, [] { TC::whenNoConfirmationIsOpen(&CLiveControl::continueHere); }, Qt::QueuedConnection);
}

void CLiveControl::continueHere() {
    if (s_pCurrent == nullptr) return;
    if (s_pCurrent->m_eHalt == EHalt::Halting) return s_pCurrent->finishHalt();
    if (s_pCurrent->m_eHalt == EHalt::Resuming) s_pCurrent->endHaltOfCommands();
}

void CLiveControl::finishHalt() {
    m_eHalt = EHalt::Halted;
    m_worker->post([this] { record("halted", m_nCancelled); });
}

void CLiveControl::resume() {
    if (m_eHalt != EHalt::Halted) return;
    m_eHalt = EHalt::Resuming;
    m_gate = std::make_shared<CGate>(EGate::Undecided);
    m_worker->post([this] {
        record("resume");
        waitForAccepted();
    });
}

void CLiveControl::setEnding() {
    m_bEnding = true;
    EGate undecided = EGate::Undecided;
    m_gate->compare_exchange_strong(undecided, EGate::Closed);
}

/// False if the desk ends and stays halted.
bool CLiveControl::openGate(CGate& gate) {
    EGate undecided = EGate::Undecided;
    return gate.compare_exchange_strong(undecided, EGate::Open);
}

/// Between two batches, so that no batch is declined in its first part and sent in its second. The two-pass
/// variant sends a batch on the main thread, in one call. The one-pass variant sends it on the service's
/// thread. A ticket is released there between two batches.
void CLiveControl::endHaltOfCommands() {
    if (!m_desk.config().user.orderService) {
        if (openGate(*m_gate)) finishResume();
        return;
    }
    const auto end = [gate = m_gate](CPaperOrderClient* orders) {
        // On the main thread the queue is closed: the desk ends, and stays halted.
        if (utils::isMainThread() || !openGate(*gate)) return;
        orders->setHalted(false);
        finishLater();
    };
    TC::COrderService::instance()->holdUntilProcessed(
        std::shared_ptr<CPaperOrderClient>(&m_desk.orderClient(), end));
}

void CLiveControl::finishLater() {
    const auto finish = [] {
        if (s_pCurrent != nullptr) s_pCurrent->finishResume();
    };
    QMetaObject::invokeMethod(qApp, finish, Qt::QueuedConnection);
}

void CLiveControl::finishResume() {
    m_eHalt = EHalt::None;
    m_desk.setHalted(false);
    m_pause.reset();
    TC::setConfirmationPause(false); // the halt has closed the dialog, or the user has seen that files wait
    m_worker->post([this] { record("resumed"); });
}

/// Not on the main thread: the journal may wait for its disk.
void CLiveControl::record(const char* action, int cancelled) {
    CJson fields = controlFields(action);
    if (cancelled > 0) fields["cancelled"] = cancelled;
    (void)m_desk.journal().append("control", fields);
}

QStringList CLiveControl::waitingFiles() const {
    QStringList files;
    for (const TC::COrderStrategyParam& strategy : strategies()) {
        if (strategy.isRunning() && strategy.comesFromFile() &&
            QFileInfo(strategy.m_strSignalSource).size() > 0)
            files.append(QString::number(strategy.m_nChannel) + QLatin1Char(' ') + strategy.m_strName);
    }
    return files;
}

void CLiveControl::discardQueue() {
    TC::COrderService::instance()->dropBacklog();
}

void CLiveControl::endConfirmationPause() {
    if (CConfirmDialog::isOpen()) return;
    TC::setConfirmationPause(false);
    m_worker->post([this] { record("resume_intake"); });
}

} // namespace desk
