#include "desk/window/MainWindow.h"

#include "desk/window/ConfirmDialog.h"
#include "desk/window/LeftColumn.h"
#include "desk/window/Theme.h"
#include "orderservice/base/Clock.h"
#include "orderservice/gates/IntakePause.h"
#include "orderservice/gates/OrderConfirmer.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QDir>
#include <QDockWidget>
#include <QFileInfo>
#include <QKeyEvent>
#include <QMenuBar>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QSettings>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace desk {
namespace {

constexpr int kLayoutVersion = 1;
constexpr int kIconSize = 64;

QIcon stateIcon(EDeskState state) {
    QPixmap picture(kIconSize, kIconSize);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(CTheme::stateColour(state));
    painter.setPen(Qt::NoPen);
    const bool isRound = state == EDeskState::Active;
    if (isRound)
        painter.drawEllipse(4, 4, kIconSize - 8, kIconSize - 8);
    else
        painter.drawRoundedRect(6, 6, kIconSize - 12, kIconSize - 12, 6, 6);
    return QIcon(picture);
}

} // namespace

CMainWindow::CMainWindow(const QString& folder, IDeskControl& control, CWindowFeed& feed, QSettings& settings)
    : m_strFolder(folder), m_control(control), m_feed(feed), m_settings(settings),
      m_ask([this](const QString& title, const QString& text, const QString& agree) {
          return askUser(title, text, agree);
      }),
      m_menus(new QMenuBar), m_state(new CStateBar) {
    for (const CInstrumentEntry& instrument : control.config().instruments)
        m_names.emplace(instrument.key(), instrument.name);
    setDockNestingEnabled(true);
    auto* top = new QWidget(this); // the menus and the state, above all panels
    auto* lines = new QVBoxLayout(top);
    lines->setContentsMargins(0, 0, 0, 0);
    lines->setSpacing(0);
    lines->addWidget(m_menus);
    lines->addWidget(m_state);
    setMenuWidget(top);
    CTheme::apply(*qApp, CTheme::current()); // the views need the font
    makePanels();
    makeMenus();
    connect(m_state, &CStateBar::sigHalt, this, &CMainWindow::halt);
    connect(m_state, &CStateBar::sigEndPause, this, &CMainWindow::endPause);
    qApp->installEventFilter(this);
    connect(&m_timer, &QTimer::timeout, this, &CMainWindow::takeTurn);
    m_timer.setInterval(kFeedMs / 2); // a batch has two turns
    setWindowIcon(stateIcon(m_state->state()));
    placePanels();
    restoreAll();
    new CLeftColumn(*this, *m_panels["strategies"], *m_panels["orders"]); // the window owns it
    showState();
}

CMainWindow::~CMainWindow() = default;

CMainWindow::CTable CMainWindow::makeTable(const CTableSpec& spec, const QString& emptyText) {
    CTable table;
    table.m_model = new CRowModel(spec, this);
    table.m_view = new CTableView(*table.m_model, this);
    table.m_view->setEmptyText(emptyText);
    connect(&table.m_view->filter(), &CRowFilter::sigFiltersChanged, this, &CMainWindow::showCounts);
    m_tables[spec.m_pszName] = table;
    return table;
}

QDockWidget* CMainWindow::addPanel(const char* name, const QString& title, QWidget* content,
                                   Qt::DockWidgetArea area) {
    auto* panel = new QDockWidget(title, this);
    panel->setObjectName(QLatin1String(name));
    panel->setProperty("title", title);
    panel->setWidget(content);
    addDockWidget(area, panel);
    m_panels[name] = panel;
    return panel;
}

void CMainWindow::makePanels() {
    const Qt::DockWidgetArea left = Qt::LeftDockWidgetArea;
    const Qt::DockWidgetArea right = Qt::RightDockWidgetArea;
    const auto add = [this](const CTableSpec& spec, const QString& title, const QString& empty,
                            Qt::DockWidgetArea area) {
        addPanel(spec.m_pszName, title, makeTable(spec, empty).m_view, area);
    };
    add(strategyTable(), tr("Strategies"), tr("No strategy. Add one with Insert, or write strategies.toml."),
        left);
    add(accountTable(), tr("Accounts"), tr("No account. Write one to desk.toml."), left);
    add(bookTable(), tr("Book"), tr("No instrument. Choose one with Enter in Quotes, Orders or Positions."),
        left);
    add(quoteTable(), tr("Quotes"), tr("No instrument. Write one to instruments.csv."), left);
    add(orderTable(), tr("Orders"),
        tr("No order yet. Start a strategy (F2, Enter) and hand it an order file."), right);
    addRejectionBar();
    add(taskTable(), tr("Tasks"), tr("No task yet. Each command of an order becomes a task."), right);
    add(fillTable(), tr("Fills"), tr("No fill yet. An order is filled when the book has its price."), right);
    add(positionTable(), tr("Positions"), tr("No position. A filled buy makes one."), right);
    add(messageTable(), tr("Messages"), tr("No message yet."), right);
    add(journalTable(), tr("Journal"), tr("No record yet in this run. orderdesk journal shows earlier ones."),
        right);
    m_plots = new CPlotPanel(this);
    addPanel("plots", tr("Plots"), m_plots, right);
    connect(table("accounts").selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &CMainWindow::showPlottedAccounts);
    const auto choose = [this](const char* name, int column) {
        connect(&table(name), &CTableView::sigActivated, this, [this, name, column](const QStringList& keys) {
            const CRow* row = model(name).find(keys.value(0));
            if (row != nullptr) chooseInstrument({row->m_cells[column].toString()});
        });
    };
    choose("quotes", columnOf(quoteTable(), "code"));
    choose("orders", columnOf(orderTable(), "code"));
    choose("fills", columnOf(fillTable(), "code"));
    choose("positions", columnOf(positionTable(), "code"));
    connect(&table("strategies"), &CTableView::sigActivated, this, [this] { startStrategies(); });
    connect(&table("strategies"), &CTableView::sigSpace, this, [this] { stopStrategies(); });
}

/// The reasons of rejections stay visible below the orders until the user has seen them.
void CMainWindow::addRejectionBar() {
    auto* content = new QWidget(this);
    auto* lines = new QVBoxLayout(content);
    lines->setContentsMargins(0, 0, 0, 0);
    lines->setSpacing(0);
    m_rejections = new CRejectionBar(model("orders"), content);
    lines->addWidget(&table("orders"), 1);
    lines->addWidget(m_rejections);
    m_panels["orders"]->setWidget(content);
    connect(m_rejections, &CRejectionBar::sigSeen, this, [this] {
        m_board.markSeen();
        showCounts();
    });
}

/// The default layout: it fits a screen of 1366 x 768.
void CMainWindow::placePanels() {
    resize(1366, 730);
    splitDockWidget(m_panels["strategies"], m_panels["accounts"], Qt::Vertical);
    splitDockWidget(m_panels["accounts"], m_panels["quotes"], Qt::Vertical);
    tabifyDockWidget(m_panels["quotes"], m_panels["book"]);
    splitDockWidget(m_panels["orders"], m_panels["positions"], Qt::Vertical);
    splitDockWidget(m_panels["positions"], m_panels["messages"], Qt::Vertical);
    tabifyDockWidget(m_panels["orders"], m_panels["tasks"]);
    tabifyDockWidget(m_panels["tasks"], m_panels["fills"]);
    tabifyDockWidget(m_panels["messages"], m_panels["journal"]);
    tabifyDockWidget(m_panels["journal"], m_panels["plots"]);
    constexpr int kFrame = 35; // of a table with its scroll bar, and rounding
    const int left = table("quotes").scaledWidth(500) + kFrame;
    resizeDocks({m_panels["strategies"], m_panels["orders"]}, {left, 1360 - left}, Qt::Horizontal);
    resizeDocks({m_panels["strategies"], m_panels["accounts"], m_panels["quotes"]}, {230, 190, 190},
                Qt::Vertical);
    resizeDocks({m_panels["orders"], m_panels["positions"], m_panels["messages"]}, {280, 170, 160},
                Qt::Vertical);
    for (const char* name : {"orders", "quotes", "messages"})
        m_panels[name]->raise();
    m_defaultLayout = saveState(kLayoutVersion);
}

void CMainWindow::begin() {
    do { // what the broker had at the start, which may be the orders of many days
        takeFeed();
        takeFeed(); // the other half of the batch
    } while (m_facts.m_nBehind > 0);
    m_board.setStarted();
    m_timer.start();
}

void CMainWindow::takeTurn() {
    m_bFirstTurn = !m_bFirstTurn;
    const bool hasTexts = !m_texts.m_messages.empty() || !m_texts.m_journal.empty();
    if (m_bFirstTurn || hasTexts) return takeFeed();
    showPartOfBooks();
}

void CMainWindow::takeFeed() {
    if (!m_texts.m_messages.empty() || !m_texts.m_journal.empty()) {
        showTexts();
        return showPartOfBooks();
    }
    CFeedBatch batch = m_feed.take();
    m_facts.m_nBehind = static_cast<int>(batch.m_nWaitingTrades);
    showTrades(batch);
    m_plots->data().addOrders(static_cast<double>(utils::currentDateTime().toMSecsSinceEpoch()),
                              static_cast<int>(batch.m_nNewOrders));
    m_texts.m_messages = std::move(batch.m_messages);
    if (batch.m_nDropped > 0) m_texts.m_messages.push_back(droppedMessage(batch.m_nDropped));
    m_texts.m_journal = std::move(batch.m_journal);
    if (batch.m_books) {
        m_books = batch.m_books;
        m_dBooksTime = utils::getTime();
        m_bNewBooks = true;
        showBooks(*m_books);
    }
    showPartOfBooks();
    if (!m_bEnding) showStrategies();
    showState();
    showCounts();
}

CFeedMessage CMainWindow::droppedMessage(std::size_t lines) {
    CFeedMessage message;
    message.m_nNumber = --m_nLastOwnMessage; // numbers of the feed are positive
    message.m_strTime = cellText(ECell::Time, QString::fromStdString(utils::currentTimeText()));
    message.m_eKind = CFeedMessage::EKind::Desk;
    message.m_bWarning = true;
    message.m_strText =
        tr("%n line(s) were left out here, because too many came at once. The journal has the records.",
           nullptr, static_cast<int>(lines));
    return message;
}

/// The messages and records of the last batch. They have a turn of their own, so that the thread is not
/// blocked for both halves of a batch at once.
void CMainWindow::showTexts() {
    std::vector<CRow> messages;
    for (const CFeedMessage& message : m_texts.m_messages) {
        messages.push_back(messageRow(message));
        if (message.m_bWarning) ++m_nUnseenWarnings;
    }
    model("messages").apply(messages);
    std::vector<CRow> records;
    QStringList unread;
    for (const std::string& line : m_texts.m_journal) {
        records.push_back(journalRow(line));
        if (journalText(line, "kind") == "discarded")
            unread.append(tr("NOT READ: %1 (%2)")
                              .arg(QString::fromStdString(journalText(line, "source")),
                                   QString::fromStdString(journalText(line, "cause"))));
    }
    if (!unread.isEmpty()) m_state->setNotice(unread.join(QLatin1Char('\n')));
    model("journal").apply(records);
    m_texts = {};
}

void CMainWindow::showTrades(const CFeedBatch& batch) {
    std::vector<CRow> orders;
    for (const CPaperOrder& order : batch.m_orders)
        orders.push_back(orderRow(order, m_names));
    model("orders").apply(orders);
    std::vector<CRow> tasks;
    for (const CTaskState& task : m_board.take(batch))
        tasks.push_back(taskRow(task));
    model("tasks").apply(tasks);
    std::vector<CRow> fills;
    for (const CBrokerEvent& fill : batch.m_fills)
        fills.push_back(fillRow(fill, m_names));
    model("fills").apply(fills);
}

void CMainWindow::showStrategies() {
    const std::uint64_t revision = m_control.strategyRevision();
    if (m_bHasStrategies && revision == m_nRevision) return;
    m_nRevision = revision;
    m_bHasStrategies = true;
    std::vector<CRow> rows;
    QStringList keys;
    m_facts.m_nRunning = 0;
    const TC::COrderStrategyMap strategies = m_control.strategies();
    for (const TC::COrderStrategyParam& strategy : strategies) {
        rows.push_back(strategyRow(strategy));
        keys.append(rows.back().m_strKey);
        if (strategy.isRunning()) ++m_facts.m_nRunning;
    }
    m_facts.m_nStrategies = static_cast<int>(rows.size());
    model("strategies").apply(rows);
    model("strategies").retain(keys);
}

void CMainWindow::plotCommandTime(const CDeskStatus& status) {
    if (status.m_strLastCommand == m_strLastCommand) return;
    m_strLastCommand = status.m_strLastCommand;
    const auto now = static_cast<double>(utils::currentDateTime().toMSecsSinceEpoch());
    if (status.m_lastMs) m_plots->data().addCommandTime(now, *status.m_lastMs);
}

void CMainWindow::showState() {
    m_facts.m_nWaiting = static_cast<int>(m_board.waiting().size());
    if (m_books) m_facts.m_nBooksAge = static_cast<int>(utils::getTime() - m_dBooksTime);
    const CDeskStatus status = m_control.status();
    m_state->showStatus(status, m_facts);
    plotCommandTime(status);
    const QString text = deskStateText(status);
    if (text == m_strState) return;
    m_strState = text;
    const QString folder = QDir::cleanPath(QFileInfo(m_strFolder).absoluteFilePath());
    setWindowTitle(text + QStringLiteral("  -  ") + QFileInfo(folder).fileName());
    setWindowIcon(stateIcon(m_state->state()));
}

/// The titles of the panels: hidden rows, and rejections that were not seen.
void CMainWindow::showCounts() {
    m_rejections->showOrders(m_board.unseen());
    for (const auto& [name, panel] : m_panels) {
        const auto table = m_tables.find(name);
        if (table == m_tables.end()) continue;
        QString title = panel->property("title").toString();
        const int hidden = table->second.m_view->filter().hiddenRows();
        if (hidden > 0) title += tr(" (%n row(s) hidden)", nullptr, hidden);
        if (name == "orders" && m_board.unseenRejections() > 0)
            title += tr(" (%n REJECTED)", nullptr, m_board.unseenRejections());
        if (name == "messages" && m_nUnseenWarnings > 0)
            title += tr(" (%n WARNING(S))", nullptr, m_nUnseenWarnings);
        if (title != panel->windowTitle()) panel->setWindowTitle(title);
    }
}

CTableView* CMainWindow::focusedTable() const {
    for (QWidget* widget = QApplication::focusWidget(); widget != nullptr; widget = widget->parentWidget()) {
        if (auto* view = qobject_cast<CTableView*>(widget)) return view;
    }
    return nullptr;
}

void CMainWindow::focusPanel(const char* name) {
    m_panels[name]->show();
    m_panels[name]->raise();
    CTableView& view = table(name);
    view.setFocus();
    if (!view.selectionModel()->hasSelection() && view.filter().rowCount() > 0)
        view.selectRow(std::max(view.currentIndex().row(), 0)); // the next key is for a marked row
    if (std::string(name) == "orders") m_board.markSeen();
    if (std::string(name) == "messages") m_nUnseenWarnings = 0;
    showCounts();
}

/// No confirmation opens above a question of the window: it would take the keys that are meant for this one.
bool CMainWindow::askUser(const QString& title, const QString& text, const QString& agree) {
    const TC::CConfirmationHold hold;
    QWidget* const above = QApplication::activeModalWidget();
    QMessageBox box(QMessageBox::Warning, title, text, QMessageBox::NoButton,
                    above != nullptr ? above : this);
    box.setTextFormat(Qt::PlainText);
    QPushButton* yes = box.addButton(agree, QMessageBox::AcceptRole);
    QPushButton* no = box.addButton(tr("No"), QMessageBox::RejectRole);
    box.setDefaultButton(no);
    box.setEscapeButton(no);
    box.exec();
    CConfirmDialog::restartGuard();
    return box.clickedButton() == yes;
}

bool CMainWindow::declineOpen() {
    if (QWidget* const popup = QApplication::activePopupWidget()) popup->close();
    QWidget* const top = QApplication::activeModalWidget();
    if (top == nullptr) return false;
    if (CConfirmDialog::close(*top)) return true;
    if (auto* const dialog = qobject_cast<QDialog*>(top))
        dialog->reject();
    else
        top->close();
    return true;
}

/// The shortcut of the menu does not work while a dialog is open.
bool CMainWindow::eventFilter(QObject* object, QEvent* event) {
    if (event->type() != QEvent::KeyPress || QApplication::activeModalWidget() == nullptr)
        return QMainWindow::eventFilter(object, event);
    const auto* const key = static_cast<const QKeyEvent*>(event);
    if (key->key() != Qt::Key_H || key->modifiers() != Qt::ControlModifier)
        return QMainWindow::eventFilter(object, event);
    if (!key->isAutoRepeat()) halt();
    return true;
}

/// What happens to the accepted orders if the window is closed now.
QString CMainWindow::queueText(const CDeskStatus& status) {
    const int orders = status.m_nQueue;
    if (status.m_bResuming)
        return tr(
            "%n accepted order(s) are not processed yet. They are sent if the resume is finished in time, "
            "otherwise declined.",
            nullptr, orders);
    if (status.m_bHalting || status.m_bHalted)
        return tr("%n accepted order(s) are not processed yet. The desk is halted: they are declined.",
                  nullptr, orders);
    if (status.m_bConfirms)
        return tr(
            "%n accepted order(s) are not processed yet. Those that need your confirmation are not sent.",
            nullptr, orders);
    return tr("%n accepted order(s) are not processed yet. The desk still sends them before it ends. "
              "Until then the window stays and can discard them.",
              nullptr, orders);
}

/// What is not finished; empty if nothing is lost or goes on by closing.
QString CMainWindow::closeText() const {
    const CDeskStatus status = m_control.status();
    QStringList texts;
    if (m_facts.m_nRunning > 0) texts.append(tr("%n strategy(s) run.", nullptr, m_facts.m_nRunning));
    if (status.m_nQueue > 0) texts.append(queueText(status));
    if (status.m_nDelayed > 0)
        texts.append(tr("%n checked batch(es) wait. If they need your confirmation, they are not sent.",
                        nullptr, status.m_nDelayed));
    const auto waiting = static_cast<int>(m_board.waiting().size());
    if (waiting > 0) texts.append(tr("%n order(s) wait and stay in the books.", nullptr, waiting));
    if (status.m_bConfirmationOpen)
        texts.append(tr("The batch that waits for your confirmation is declined."));
    if (status.m_bHalting) texts.append(tr("The halt is not finished."));
    return texts.join(QLatin1Char('\n'));
}

void CMainWindow::closeEvent(QCloseEvent* event) {
    event->ignore(); // the program deletes the window when the desk has ended
    if (m_bEnding) return;
    // Order files that come from now on wait at their paths for the next start.
    auto pause = std::make_unique<TC::CIntakePause>();
    const QString text = closeText();
    if (!text.isEmpty() && !m_ask(tr("Close the desk?"), text, tr("Close the desk"))) return;
    m_pauseOfClose = std::move(pause);
    emit sigClosed();
}

void CMainWindow::showEnding() {
    m_bEnding = true;
    for (const char* name : {"close", "start", "add", "change", "remove"})
        action(name).setEnabled(false);
    showState();
}

void CMainWindow::restoreAll() {
    restoreGeometry(m_settings.value(QStringLiteral("window/geometry")).toByteArray());
    restoreState(m_settings.value(QStringLiteral("window/layout")).toByteArray(), kLayoutVersion);
    for (const auto& [name, table] : m_tables)
        table.m_view->restoreLayout(m_settings);
}

void CMainWindow::restoreDefaultLayout() {
    restoreState(m_defaultLayout, kLayoutVersion);
}

void CMainWindow::saveAll() {
    m_settings.setValue(QStringLiteral("window/geometry"), saveGeometry());
    m_settings.setValue(QStringLiteral("window/layout"), saveState(kLayoutVersion));
    for (const auto& [name, table] : m_tables)
        table.m_view->saveLayout(m_settings);
    m_settings.sync();
}

} // namespace desk
