// The commands of the main window: menus, keys, and what they do.
#include "desk/config/StrategyKeys.h"
#include "desk/window/MainWindow.h"
#include "desk/window/StrategyDialog.h"
#include "desk/window/Theme.h"
#include "orderservice/gates/OrderConfirmer.h"

#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QFileInfo>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QSettings>

#include <algorithm>
#include <set>
#include <utility>

namespace desk {
namespace {

constexpr std::size_t kMostNamedOrders = 5; ///< a question names at most this many orders

/// The reason of a refusal. The registry gives none if somebody else has changed the strategy meanwhile.
QString reasonText(const QString& reason) {
    return reason == QLatin1String("-1")
               ? CMainWindow::tr("it cannot be done now; the strategy may have been changed meanwhile")
               : reason;
}

/// An order as a question names it: account, side, code, what is left, and the price.
QString orderText(const CRow& row) {
    const CTableSpec& spec = orderTable();
    const auto cell = [&](const char* column) { return row.m_cells.value(columnOf(spec, column)); };
    const QVariant price = cell("price");
    return CMainWindow::tr("%1: %2 %3, %4 left at %5")
        .arg(cell("account").toString(), cell("side").toString(), cell("code").toString(),
             cellText(ECell::Count, cell("volume").toLongLong() - cell("filled").toLongLong()),
             price.isValid() ? cellText(ECell::Price, price) : CMainWindow::tr("the market price"));
}

QString joined(const std::set<std::string>& accounts) {
    QStringList names;
    for (const std::string& account : accounts)
        names.append(QString::fromStdString(account));
    return names.join(QStringLiteral(", "));
}

} // namespace

QAction* CMainWindow::addCommand(const char* name, const QString& text, const QKeySequence& keys, QMenu& menu,
                                 std::function<void()> action) {
    QAction* command = menu.addAction(text, this, std::move(action), keys);
    command->setObjectName(QLatin1String(name));
    command->setAutoRepeat(false); // a key that is held down is one command
    m_actions[name] = command;
    return command;
}

void CMainWindow::makeMenus() {
    QMenu& desk = *m_menus->addMenu(tr("&Desk"));
    addCommand("halt", tr("&Halt or resume..."), QKeySequence(Qt::CTRL | Qt::Key_H), desk,
               [this] { halt(); });
    addCommand("resume_intake", tr("&Resume the intake..."), {}, desk, [this] {
        if (!m_state->pauseBar().isHidden()) endPause();
    });
    addCommand("close_notice", tr("Close the &notice"), {}, desk, [this] { m_state->setNotice({}); });
    desk.addSeparator();
    addCommand("close", tr("&Close"), QKeySequence::Quit, desk, [this] { close(); });
    makeStrategyMenu();
    makeTradeMenu();
    makeViewMenu();
}

void CMainWindow::makeStrategyMenu() {
    QMenu& menu = *m_menus->addMenu(tr("&Strategies"));
    CTableView& view = table("strategies");
    const auto add = [&](const char* name, const QString& text, const QKeySequence& keys,
                         std::function<void()> action) {
        QAction* command = addCommand(name, text, keys, menu, std::move(action));
        command->setShortcutContext(Qt::WidgetShortcut); // the keys work in the table only
        view.addAction(command);
    };
    add("start", tr("&Start (Enter)"), {}, [this] { startStrategies(); });
    add("stop", tr("St&op (Space)"), {}, [this] { stopStrategies(); });
    add("add", tr("&Add..."), QKeySequence(Qt::Key_Insert), [this] { addStrategy(); });
    add("change", tr("&Change..."), QKeySequence(Qt::CTRL | Qt::Key_E), [this] { changeStrategy(); });
    menu.addSeparator();
    add("remove", tr("&Remove..."), QKeySequence(Qt::Key_Delete), [this] { removeStrategies(); });
}

void CMainWindow::makeTradeMenu() {
    QMenu& menu = *m_menus->addMenu(tr("&Orders"));
    for (const char* name : {"orders", "tasks"}) {
        const bool isOrders = std::string(name) == "orders";
        QAction* command =
            addCommand(isOrders ? "cancel" : "cancel_task",
                       isOrders ? tr("&Cancel the selected orders...") : tr("Cancel the selected &tasks..."),
                       QKeySequence(Qt::Key_Delete), menu,
                       [this, isOrders] { isOrders ? cancelSelected() : cancelTasks(); });
        command->setShortcutContext(Qt::WidgetShortcut);
        table(name).addAction(command);
    }
    menu.addSeparator();
    QAction* all = addCommand("cancel_all", tr("Cancel all of the selected &accounts..."), {}, menu,
                              [this] { cancelOfAccounts(); });
    table("accounts").addAction(all);
}

void CMainWindow::makeViewMenu() {
    QMenu& menu = *m_menus->addMenu(tr("&View"));
    addCommand("view_strategies", tr("&Strategies"), Qt::Key_F2, menu, [this] { focusPanel("strategies"); });
    addCommand("view_orders", tr("&Orders"), Qt::Key_F3, menu, [this] { focusPanel("orders"); });
    addCommand("view_positions", tr("&Positions"), Qt::Key_F4, menu, [this] { focusPanel("positions"); });
    addCommand("view_messages", tr("&Messages"), Qt::Key_F5, menu, [this] { focusPanel("messages"); });
    addCommand("filter", tr("&Filter"), QKeySequence::Find, menu, [this] { showFilter(); });
    addCommand("table_menu", tr("Sor&t, copy, export..."), QKeySequence(Qt::SHIFT | Qt::Key_F10), menu,
               [this] {
                   if (CTableView* const view = focusedTable()) view->showMenu(QPoint());
               });
    menu.addSeparator();
    for (const auto& [name, panel] : m_panels)
        menu.addAction(panel->toggleViewAction());
    menu.addSeparator();
    QAction* dark = addCommand("dark", tr("&Dark colours"), {}, menu, [this] { applyTheme(); });
    QAction* redUp = addCommand("red_up", tr("&Red is up"), {}, menu, [this] { applyTheme(); });
    dark->setCheckable(true);
    redUp->setCheckable(true);
    dark->setChecked(m_settings.value(QStringLiteral("window/dark"), false).toBool());
    redUp->setChecked(m_settings.value(QStringLiteral("window/red_up"), true).toBool());
    addCommand("default_layout", tr("De&fault layout"), {}, menu, [this] { restoreDefaultLayout(); });
    applyTheme();
}

void CMainWindow::applyTheme() {
    const bool isDark = action("dark").isChecked();
    const bool isRedUp = action("red_up").isChecked();
    m_settings.setValue(QStringLiteral("window/dark"), isDark);
    m_settings.setValue(QStringLiteral("window/red_up"), isRedUp);
    CTheme::apply(*qApp, CTheme(isDark, isRedUp));
}

void CMainWindow::showFilter() {
    CTableView* view = focusedTable();
    if (view == nullptr) return;
    CFilterHeader& header = view->filterHeader();
    header.showFilters(true);
    const int column = view->currentIndex().isValid() ? view->currentIndex().column() : 0;
    if (header.field(column) != nullptr) header.field(column)->setFocus();
}

/// Whether the user agrees to what the start does with a file that is there already.
bool CMainWindow::agreesToStart(const TC::COrderStrategyParam& strategy) {
    if (!strategy.comesFromFile() || QFileInfo(strategy.m_strSignalSource).size() == 0) return true;
    const QString title = tr("Start strategy %1?").arg(strategy.m_nChannel);
    if (strategy.m_eStrategyType == TC::EOrderStrategyType::File)
        return m_ask(
            title,
            tr("An order file waits at %1. The start deletes it unread.").arg(strategy.m_strSignalSource),
            tr("Delete and start"));
    return m_ask(title,
                 tr("The table %1 is there already. The start reads it and sends its orders.")
                     .arg(strategy.m_strSignalSource),
                 tr("Read and start"));
}

void CMainWindow::startStrategies() {
    runOnStrategies([this](const TC::COrderStrategyParam& strategy) {
        if (strategy.isRunning() || !agreesToStart(strategy)) return QString();
        return m_control.startStrategy(strategy.m_nChannel);
    });
}

void CMainWindow::stopStrategies() {
    runOnStrategies([this](const TC::COrderStrategyParam& strategy) {
        return strategy.isRunning() ? m_control.stopStrategy(strategy.m_nChannel) : QString();
    });
}

/// Calls the operation with each selected strategy as it is now, and shows the reasons of failures.
void CMainWindow::runOnStrategies(const CStrategyOperation& operation) {
    QStringList failures;
    for (const QString& key : table("strategies").selectedKeys()) {
        const TC::COrderStrategyMap all = m_control.strategies();
        const auto strategy = all.find(key.toInt());
        const QString failure = strategy == all.end() ? tr("it is not there any more") : operation(*strategy);
        if (!failure.isEmpty()) failures.append(tr("Strategy %1: %2").arg(key, reasonText(failure)));
    }
    m_state->setNotice(failures.join(QLatin1Char('\n')));
    showStrategies();
}

void CMainWindow::addStrategy() {
    TC::COrderStrategyParam fresh = freshStrategy(m_control.config()); // with the user's default settings
    fresh.m_eStrategyType = TC::EOrderStrategyType::File;
    CStrategyDialog dialog(
        m_control.config(), m_strFolder, fresh, true,
        [this](const TC::COrderStrategyParam& strategy) {
            return reasonText(m_control.addStrategy(strategy));
        },
        this);
    const TC::CConfirmationHold hold; // no confirmation opens above the dialog
    dialog.exec();
    showStrategies();
}

void CMainWindow::changeStrategy() {
    const QStringList keys = table("strategies").selectedKeys();
    const TC::COrderStrategyMap all = m_control.strategies();
    const auto strategy = all.find(keys.value(0).toInt());
    if (keys.isEmpty() || strategy == all.end()) return;
    if (strategy->isRunning())
        return m_state->setNotice(tr("Stop strategy %1 before you change it.").arg(keys[0]));
    CStrategyDialog dialog(
        m_control.config(), m_strFolder, *strategy, false,
        [this](const TC::COrderStrategyParam& changed) {
            return reasonText(m_control.changeStrategy(changed));
        },
        this);
    const TC::CConfirmationHold hold; // no confirmation opens above the dialog
    dialog.exec();
    showStrategies();
}

void CMainWindow::removeStrategies() {
    const QStringList keys = table("strategies").selectedKeys();
    if (keys.isEmpty()) return;
    const TC::COrderStrategyMap all = m_control.strategies();
    const int running = static_cast<int>(std::count_if(
        keys.begin(), keys.end(), [&](const QString& key) { return all.value(key.toInt()).isRunning(); }));
    QString text =
        tr("Remove %n strategy(s)? Channels: %1", nullptr, keys.size()).arg(keys.join(QStringLiteral(", ")));
    if (running > 0)
        text += QLatin1Char('\n') + tr("%n of them run(s) and is/are stopped first.", nullptr, running);
    if (!m_ask(tr("Remove strategies"), text, tr("Remove"))) return;
    runOnStrategies([this](const TC::COrderStrategyParam& strategy) {
        // The registry would leave the port of a running socket strategy open.
        const QString failure =
            strategy.isRunning() ? m_control.stopStrategy(strategy.m_nChannel) : QString();
        return failure.isEmpty() ? m_control.removeStrategy(strategy.m_nChannel) : failure;
    });
}

/// Whether the tables may not know yet what waits. A cancel then asks the broker.
bool CMainWindow::mayBeBehind() const {
    return m_facts.m_nBehind > 0 || !m_control.status().m_strJournalFailure.empty();
}

void CMainWindow::cancelSelected() {
    std::vector<std::pair<std::string, int>> selected;
    std::vector<std::pair<std::string, int>> waiting;
    const int account = columnOf(orderTable(), "account");
    for (const QString& key : table("orders").selectedKeys()) {
        const CRow* const row = model("orders").find(key);
        if (row == nullptr) continue;
        selected.emplace_back(row->m_cells[account].toString().toStdString(), key.toInt());
        if (m_board.waiting().count(key.toInt()) > 0) waiting.push_back(selected.back());
    }
    const bool asksBroker = mayBeBehind() && !selected.empty();
    if (waiting.empty() && !asksBroker)
        return m_state->setNotice(tr("None of the selected rows has a waiting order."));
    const QString text = !asksBroker
                             ? cancelText(waiting)
                             : tr("Cancel those of the %n selected order(s) that still wait? The tables show "
                                  "%1 of them, but they may be behind.",
                                  nullptr, static_cast<int>(selected.size()))
                                   .arg(waiting.size());
    if (m_ask(tr("Cancel orders"), text, tr("Cancel the orders")))
        m_control.cancelOrders(asksBroker ? std::move(selected) : std::move(waiting));
}

/// The question before orders are cancelled. Rows move while the user points at one, so it names them.
QString CMainWindow::cancelText(const std::vector<std::pair<std::string, int>>& orders) const {
    std::set<std::string> accounts;
    QStringList lines;
    for (const auto& [account, order] : orders) {
        accounts.insert(account);
        const CRow* row = model("orders").find(QString::number(order));
        if (row != nullptr && orders.size() <= kMostNamedOrders) lines.append(orderText(*row));
    }
    lines.prepend(tr("Cancel %n waiting order(s) of %1?", nullptr, static_cast<int>(orders.size()))
                      .arg(joined(accounts)));
    return lines.join(QLatin1Char('\n'));
}

void CMainWindow::cancelOfAccounts() {
    QStringList chosen;
    for (const QString& key : table("accounts").selectedKeys()) {
        const CRow* row = model("accounts").find(key);
        if (row != nullptr && row->m_eMark != ERowMark::Total) chosen.append(key); // the total is no account
    }
    if (chosen.isEmpty()) return m_state->setNotice(tr("None of the selected rows has a waiting order."));
    std::size_t orders = 0;
    std::set<std::string> accounts;
    for (const auto& [order, waiting] : m_board.waiting()) {
        if (!chosen.contains(QString::fromStdString(waiting.m_strAccount))) continue;
        ++orders;
        accounts.insert(waiting.m_strAccount);
    }
    if (orders == 0 && !mayBeBehind())
        return m_state->setNotice(tr("None of the selected rows has a waiting order."));
    for (const QString& account : chosen)
        accounts.insert(account.toStdString());
    const QString text = tr("Cancel all waiting orders of %1? The tables show %2 of them.")
                             .arg(chosen.join(QStringLiteral(", ")))
                             .arg(orders);
    if (m_ask(tr("Cancel orders"), text, tr("Cancel the orders")))
        m_control.cancelAccounts(std::vector<std::string>(accounts.begin(), accounts.end()));
}

void CMainWindow::cancelTasks() {
    const QStringList keys = table("tasks").selectedKeys();
    const bool asksBroker = mayBeBehind() && !keys.isEmpty();
    std::set<int> tasks;
    std::vector<std::pair<std::string, int>> orders;
    for (const auto& [order, waiting] : m_board.waiting()) {
        if (!keys.contains(QString::number(waiting.m_nTask))) continue;
        tasks.insert(waiting.m_nTask);
        orders.emplace_back(waiting.m_strAccount, order);
    }
    if (tasks.empty() && !asksBroker)
        return m_state->setNotice(tr("None of the selected rows has a waiting order."));
    const QString text = !asksBroker
                             ? tr("%n task(s):", nullptr, static_cast<int>(tasks.size())) + QLatin1Char(' ') +
                                   cancelText(orders)
                             : tr("Cancel the orders of the %n selected task(s) that still wait? The tables "
                                  "show %1 of them, but they may be behind.",
                                  nullptr, keys.size())
                                   .arg(orders.size());
    for (const QString& key : asksBroker ? keys : QStringList())
        tasks.insert(key.toInt());
    if (m_ask(tr("Cancel tasks"), text, tr("Cancel the tasks")))
        m_control.cancelTasks(std::vector<int>(tasks.begin(), tasks.end()));
}

void CMainWindow::halt() {
    const CDeskStatus status = m_control.status();
    const bool isBusy = status.m_bHalting || status.m_bResuming;
    if (m_bAskingToHalt || (isBusy && !status.m_bEnding)) return;
    m_bAskingToHalt = true;
    if (status.m_bEnding) {
        discardQueue();
    } else if (status.m_bHalted) {
        if (m_ask(tr("Resume?"), resumeText(), tr("Resume"))) m_control.resume();
    } else {
        const QString orders = tr("%n waiting order(s)", nullptr, static_cast<int>(m_board.waiting().size()));
        const QString accounts = tr("%n account(s)", nullptr, m_board.waitingAccounts());
        const QString text = tr("Halt the desk? It reads no more order files, declines all commands, and "
                                "cancels %1 of %2. Ctrl+H resumes; cancelled orders stay cancelled.")
                                 .arg(orders, accounts);
        if (m_ask(tr("Halt"), text, tr("HALT"))) m_control.halt();
    }
    m_bAskingToHalt = false;
    showState();
}

QString CMainWindow::resumeText() const {
    const QString text =
        tr("Files and sockets send orders again. %n strategy(s) run.", nullptr, m_facts.m_nRunning);
    return withWaitingFiles(text);
}

/// The text of a question, with the order files that are read if the user agrees.
QString CMainWindow::withWaitingFiles(const QString& text) const {
    const QStringList files = m_control.waitingFiles();
    if (files.isEmpty()) return text;
    return text + QLatin1Char('\n') +
           tr("%n order file(s) wait at their paths and are read now: %1. Before you agree, delete the files "
              "that must not be sent.",
              nullptr, files.size())
               .arg(files.join(QStringLiteral(", ")));
}

/// The end of the pause that a confirmation without an answer has left.
void CMainWindow::endPause() {
    const QString text = withWaitingFiles(tr("The desk reads order files again."));
    if (m_control.waitingFiles().isEmpty() || m_ask(tr("Resume the intake?"), text, tr("Resume")))
        m_control.endConfirmationPause();
    showState();
}

void CMainWindow::discardQueue() {
    const QString text = tr("%n accepted order(s) are not processed yet. They are written to the journal and "
                            "not sent.",
                            nullptr, m_control.status().m_nQueue);
    if (m_ask(tr("Discard the orders?"), text, tr("Discard"))) m_control.discardQueue();
}

} // namespace desk
