#include "desk/host/Desk.h"

#include "desk/config/FolderFiles.h"
#include "desk/host/BrokerJournal.h"
#include "desk/host/DeskPortfolios.h"
#include "desk/host/Leftovers.h"
#include "desk/journal/JournalEvents.h"
#include "orderservice/platform/Switches.h"
#include "orderservice/service/OrderService.h"

#include <nlohmann/json.hpp>

#include <filesystem>
#include <set>
#include <vector>

namespace desk {
namespace {

QString rejectedFolder(const std::string& folder) {
    const std::filesystem::path path = std::filesystem::absolute(folder) / kRejectedFolder;
    return QString::fromStdString(path.lexically_normal().string());
}

} // namespace

CDesk::CDesk(std::string folder, CDeskConfig config, CTextSink& sink)
    : m_strFolder(std::move(folder)), m_config(std::move(config)), m_sink(sink),
      m_market(m_config.instruments, m_config.quotes, m_config.quoteChanges), m_orderLines(sink),
      m_broker(m_market, [this](const std::vector<CBrokerEvent>& events) { return takeEvents(events); }),
      m_guard(m_journal, sink, [this] { m_broker.deliverEvents(); }), m_user(m_config), m_userManager(m_user),
      m_orders(m_journal, m_broker, sink, m_config.acceptForcedConfirm),
      m_trade(m_journal, m_broker, m_market, sink, m_config.accounts), m_exchange(m_config.instruments),
      m_accounts(m_broker, m_market, m_exchange, m_user),
      m_center(m_journal, m_broker, sink, m_accounts, portfolioData(m_config.portfolios)), m_quotes(m_market),
      m_types(m_market), m_messages(m_journal, sink), m_switches(m_config.switches),
      m_audit(m_journal, sink, rejectedFolder(m_strFolder)), m_confirmer(m_journal, sink, m_config.confirm),
      m_strategyFile(m_strFolder, m_config), m_keeper(m_journal, sink, m_config.strategies, m_strategyFile),
      m_interfaces(m_strFolder, m_config.settings, m_framework),
      m_calls(m_journal, [this](const std::vector<int>& tasks) { return orderTexts(tasks); }),
      m_door([this](const std::string& line) { return m_calls.answer(line); }) {
    m_orders.setCheckFailed([this](const std::string& tradeKey, const utils::KNError& error) {
        m_trade.reportCheckFailed(tradeKey, error);
    });
}

CDesk::~CDesk() {
    TC::setOrderConfirmer(nullptr);
    m_broker.stopWorker(); // it uses members that are destroyed before the broker
}

utils::KNError CDesk::open() {
    utils::KNError result = m_journal.open(m_strFolder);
    if (m_journal.isAfterCrash()) m_sink.writeLine(crashText(m_journal.lastSeq()), ESeverity::Warning);
    if (m_journal.lastBrokerEvent() > 0 && !hasPaperStore(m_strFolder))
        m_sink.writeLine("WARNING: there is no paper.db, but the journal has orders. The books begin anew "
                         "with the folder's funds and positions.",
                         ESeverity::Warning);
    if (result.isSuccess())
        result = m_broker.open(m_strFolder, m_config.accounts, m_journal.lastBrokerEvent(),
                               {m_journal.lastTask(), m_journal.lastOrder(), m_journal.lastFill()});
    if (const auto tasks = m_broker.unbookedTasks(); result.isSuccess() && tasks && m_journal.isAfterCrash())
        m_sink.writeLine(unbookedText(tasks->first, tasks->second), ESeverity::Warning);
    m_strTradingDay = m_exchange.getMaxTradingDay();
    if (result.isSuccess()) result = m_broker.startTradingDay(m_strTradingDay);
    // Without a `stopped` record in the journal, the next start would report that this run was interrupted.
    if (!result.isSuccess()) (void)m_journal.close("not started: " + result.errorMsg());
    if (result.isSuccess()) m_broker.startWorker();
    return result;
}

/// Writes broker events to the journal, and then to the screen. The broker delivers those again later that
/// the journal refuses.
std::size_t CDesk::takeEvents(const std::vector<CBrokerEvent>& events) {
    const std::size_t taken = journalBrokerEvents(m_journal, events);
    for (std::size_t i = 0; i < taken; ++i) {
        m_orderLines.take(events[i]);
        if (m_orderListener) m_orderListener(events[i]);
    }
    return taken;
}

/// Tells broker and order service that the date has changed. If the store fails, the next round tries again.
void CDesk::followTradingDay() {
    const std::string day = m_exchange.getMaxTradingDay();
    if (day == m_strTradingDay || !m_broker.startTradingDay(day).isSuccess()) return;
    m_strTradingDay = day;
    emit m_exchange.sigNewTradingDate(day);
}

TC::CHost CDesk::services() {
    TC::CHost host;
    host.userManager = &m_userManager;
    host.orderClient = &m_orders;
    host.tradeClient = &m_trade;
    host.quoteClient = &m_quotes;
    host.exchangeClient = &m_exchange;
    host.msgService = &m_messages;
    host.timeService = &m_time;
    host.tradingRules = &m_rules;
    host.algorithmTradeHelper = &m_algorithms;
    host.intakeAudit = &m_audit;
    host.instrumentTypes = &m_types;
    host.traderCenter = &m_center;
    host.tradeFrameworkSource = &m_framework;
    host.luaModuleCtrl = &m_switches;
    return host;
}

void CDesk::startTrading() {
    TC::COrderService& service = *TC::COrderService::instance();
    QObject::connect(
        &service, &TC::COrderService::sigCancelOrders, &service,
        [this](const std::vector<std::string>& fields) { m_trade.cancelOrders(fields); },
        Qt::DirectConnection);
    service.setStrategyGuard([this](const TC::COrderStrategyParam& strategy,
                                    const TC::COrderStrategyMap& all) { return whyRefused(strategy, all); });
    TC::setOrderConfirmer(&m_confirmer);
    m_interfaces.load();
    reportLeftovers(m_config.strategies, m_config.switches.count(TC::kFileGuardSwitch) > 0, m_journal,
                    m_sink);
    service.loadFromConfig(true);
    m_keeper.begin(service);
    m_calls.begin();
    openDoor();
}

/// The desk trades without its control door, too.
void CDesk::openDoor() {
    const utils::KNError opened = m_door.open(m_strFolder);
    if (opened.isSuccess()) return;
    const CJson fields{{"event", "failed"}, {"source", kControlSocketName}, {"cause", opened.errorMsg()}};
    (void)m_journal.append("door", fields);
    m_sink.writeLine("WARNING: the desk has no control door, so orderdesk call cannot reach it: " +
                         opened.errorMsg(),
                     ESeverity::Warning);
}

/// The orders of tasks that are just carried out, as the broker has them now.
std::vector<std::string> CDesk::orderTexts(const std::vector<int>& tasks) {
    std::vector<std::string> texts;
    for (const int task : tasks) {
        if (!m_broker.hasTask(task))
            texts.push_back("task " + std::to_string(task) +
                            " was not carried out; the journal has the reason");
    }
    const std::set<int> wanted(tasks.begin(), tasks.end());
    for (const CPaperOrder& order : m_broker.orders()) {
        if (wanted.count(order.m_nTask) != 0) texts.push_back(orderLine(order));
    }
    return texts;
}

/// Checks again at a start, because the file system or a strategy may have changed since the folder was read.
/// Stopped strategies are ignored: the desk does not use their files until they start.
QString CDesk::whyRefused(const TC::COrderStrategyParam& strategy, const TC::COrderStrategyMap& all) const {
    TC::COrderStrategyMap running;
    for (const TC::COrderStrategyParam& other : all) {
        if (other.isRunning()) running.insert(other.m_nChannel, other);
    }
    const QString reason = QString::fromStdString(m_strategyFile.whyRefused(strategy, running));
    return reason.isEmpty() && m_strategyTest ? m_strategyTest(strategy) : reason;
}

void CDesk::tick(double secondsSinceStart) {
    m_guard.poll();
    followTradingDay();
    m_bQuotesToCome = m_market.applyChanges(secondsSinceStart, [this](const std::string& stockKey) {
        const utils::KNError matched = m_broker.onQuote(stockKey);
        if (!matched.isSuccess())
            m_sink.writeLine("the paper broker cannot match the waiting orders of " + stockKey + ": " +
                                 matched.errorMsg(),
                             ESeverity::Warning);
        m_quotes.publish(stockKey);
    });
    m_keeper.update(*TC::COrderService::instance());
    m_orderLines.show();
    m_sink.poll();
}

void CDesk::showProgress() {
    m_orderLines.show();
    m_sink.poll();
}

std::int64_t CDesk::activity() const {
    return m_journal.lastSeq();
}

utils::KNError CDesk::close(const std::string& reason) {
    m_broker.stopWorker();
    m_guard.checkFile();
    if (m_journal.probe().isSuccess()) m_broker.deliverEvents(); // the disk may have room again
    // If the journal is moved away before the next start, it cannot tell the broker which events it has.
    const utils::KNError stored = m_broker.storeDelivered();
    if (!stored.isSuccess())
        m_sink.writeLine("Do not move the journal before the next start of the desk: " + stored.errorMsg(),
                         ESeverity::Warning);
    m_orderLines.finish();
    return m_journal.close(reason);
}

} // namespace desk
