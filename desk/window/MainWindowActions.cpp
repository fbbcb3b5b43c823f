// The commands of the main window: menus, keys, and what they do.
#include "desk/window/MainWindow.h"
#include "desk/window/StrategyDialog.h"
#include "desk/window/Theme.h"

#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QFileInfo>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QSettings>

#include <set>
#include <utility>

namespace desk {

QAction* CMainWindow::addCommand(const char* name, const QString& text, const QKeySequence& keys, QMenu& menu,
                                 std::function<void()> action) {
    QAction* command = menu.addAction(text, this, std::move(action), keys);
    command->setObjectName(QLatin1String(name));
    m_actions[name] = command;
    return command;
}

void CMainWindow::makeMenus() {
    QMenu& desk = *m_menus->addMenu(tr("&Desk"));
    addCommand("halt", tr("&Halt or resume..."), QKeySequence(Qt::CTRL | Qt::Key_H), desk,
               [this] { halt(); });
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
    add("start", tr("&Start or stop (Enter, Space)"), {}, [this] { toggleStrategy(); });
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

void CMainWindow::toggleStrategy() {
    const TC::COrderStrategyMap all = m_control.strategies();
    runOnStrategies([&](int id) {
        const TC::COrderStrategyParam strategy = all.value(id);
        if (strategy.isRunning()) return m_control.stopStrategy(id);
        const QString text =
            tr("An order file waits at %1. The start deletes it unread.").arg(strategy.m_strSignalSource);
        const bool isFileWaiting = strategy.m_eStrategyType == TC::EOrderStrategyType::File &&
                                   QFileInfo(strategy.m_strSignalSource).size() > 0;
        if (isFileWaiting && !m_ask(tr("Start strategy %1?").arg(id), text, tr("Delete and start")))
            return QString();
        return m_control.startStrategy(id);
    });
}

void CMainWindow::runOnStrategies(const std::function<QString(int)>& operation) {
    QStringList failures;
    for (const QString& key : table("strategies").selectedKeys()) {
        const QString failure = operation(key.toInt());
        if (!failure.isEmpty()) failures.append(tr("Strategy %1: %2").arg(key, failure));
    }
    m_state->setNotice(failures.join(QLatin1Char('\n')));
    showStrategies();
}

void CMainWindow::addStrategy() {
    TC::COrderStrategyParam fresh;
    fresh.m_eStrategyType = TC::EOrderStrategyType::File;
    CStrategyDialog dialog(
        m_control.config(), fresh, true,
        [this](const TC::COrderStrategyParam& strategy) { return m_control.addStrategy(strategy); }, this);
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
        m_control.config(), *strategy, false,
        [this](const TC::COrderStrategyParam& changed) { return m_control.changeStrategy(changed); }, this);
    dialog.exec();
    showStrategies();
}

void CMainWindow::removeStrategies() {
    const QStringList keys = table("strategies").selectedKeys();
    if (keys.isEmpty()) return;
    const QString text =
        tr("Remove %n strategy(s)? Channels: %1", nullptr, keys.size()).arg(keys.join(QStringLiteral(", ")));
    if (m_ask(tr("Remove strategies"), text, tr("Remove")))
        runOnStrategies([this](int id) { return m_control.removeStrategy(id); });
}

void CMainWindow::cancelSelected() {
    std::vector<std::pair<std::string, int>> orders;
    std::set<std::string> accounts;
    for (const QString& key : table("orders").selectedKeys()) {
        const auto waiting = m_board.waiting().find(key.toInt());
        if (waiting == m_board.waiting().end()) continue;
        orders.emplace_back(waiting->second.m_strAccount, waiting->first);
        accounts.insert(waiting->second.m_strAccount);
    }
    askAndCancel(std::move(orders), accounts.size());
}

void CMainWindow::cancelOfAccounts() {
    const QStringList chosen = table("accounts").selectedKeys();
    std::size_t orders = 0;
    std::set<std::string> accounts;
    for (const auto& [order, waiting] : m_board.waiting()) {
        if (!chosen.contains(QString::fromStdString(waiting.m_strAccount))) continue;
        ++orders;
        accounts.insert(waiting.m_strAccount);
    }
    // The tables may not know yet what waits. The cancel asks the broker.
    if (orders == 0 && m_facts.m_nBehind == 0 && m_control.status().m_strJournalFailure.empty())
        return m_state->setNotice(tr("None of the selected rows has a waiting order."));
    for (const QString& account : chosen)
        accounts.insert(account.toStdString());
    const QString text = tr("Cancel all waiting orders of %1? The tables show %2 of them.")
                             .arg(chosen.join(QStringLiteral(", ")))
                             .arg(orders);
    if (m_ask(tr("Cancel orders"), text, tr("Cancel the orders")))
        m_control.cancelAccounts(std::vector<std::string>(accounts.begin(), accounts.end()));
}

void CMainWindow::askAndCancel(std::vector<std::pair<std::string, int>> orders, std::size_t accounts) {
    if (orders.empty()) return m_state->setNotice(tr("None of the selected rows has a waiting order."));
    const QString text = tr("Cancel %1 waiting orders of %2 accounts?").arg(orders.size()).arg(accounts);
    if (m_ask(tr("Cancel orders"), text, tr("Cancel the orders"))) m_control.cancelOrders(std::move(orders));
}

void CMainWindow::cancelTasks() {
    const QStringList keys = table("tasks").selectedKeys();
    std::set<int> tasks;
    std::size_t orders = 0;
    for (const auto& [order, waiting] : m_board.waiting()) {
        if (!keys.contains(QString::number(waiting.m_nTask))) continue;
        tasks.insert(waiting.m_nTask);
        ++orders;
    }
    if (tasks.empty()) return m_state->setNotice(tr("None of the selected rows has a waiting order."));
    const QString text = tr("Cancel %1 waiting orders of %2 tasks?").arg(orders).arg(tasks.size());
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
        const QString text = tr("Halt the desk? It reads no more order files, declines all commands, and "
                                "cancels %1 waiting orders "
                                "of %2 accounts. Ctrl+H resumes; cancelled orders stay cancelled.")
                                 .arg(m_board.waiting().size())
                                 .arg(m_board.waitingAccounts());
        if (m_ask(tr("Halt"), text, tr("HALT"))) m_control.halt();
    }
    m_bAskingToHalt = false;
    showState();
}

QString CMainWindow::resumeText() const {
    const QString text =
        tr("Files and sockets send orders again. %1 strategies run.").arg(m_facts.m_nRunning);
    const QStringList files = m_control.waitingFiles();
    if (files.isEmpty()) return text;
    return text + QLatin1Char('\n') +
           tr("%n order file(s) wait at their paths and are read now: %1. Delete the files that must not be "
              "sent before you agree.",
              nullptr, files.size())
               .arg(files.join(QStringLiteral(", ")));
}

/// The end of the pause that a confirmation without an answer has left.
void CMainWindow::endPause() {
    if (m_control.waitingFiles().isEmpty() || m_ask(tr("Resume the intake?"), resumeText(), tr("Resume")))
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
