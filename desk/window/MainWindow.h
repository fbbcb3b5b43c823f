#pragma once

#include "desk/window/DeskControl.h"
#include "desk/window/Feed.h"
#include "desk/window/PlotPanel.h"
#include "desk/window/RejectionBar.h"
#include "desk/window/RowModel.h"
#include "desk/window/StateBar.h"
#include "desk/window/TableView.h"
#include "desk/window/TradeBoard.h"

#include <QMainWindow>
#include <QTimer>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

class QAction;
class QDockWidget;
class QMenu;
class QMenuBar;
class QSettings;

namespace TC {
class CIntakePause;
}

namespace desk {

/// Asks a question that must be answered before something dangerous is done. Returns whether the user agreed;
/// the default answer is no. `agree` is the text of the button.
using CAsk = std::function<bool(const QString& title, const QString& text, const QString& agree)>;

/// The window of the desk: the state bar and the panels. It shows what the feed has, 20 times a second at
/// most, and passes the user's wishes to the control. Main thread only. Control, feed and settings must
/// outlive it.
class CMainWindow : public QMainWindow {
    Q_OBJECT
public:
    static constexpr int kFeedMs = 50;

    CMainWindow(const QString& folder, IDeskControl& control, CWindowFeed& feed, QSettings& settings);
    ~CMainWindow() override;

    /// Shows one half of a batch of the feed: first the trades, at the next call the messages and the
    /// journal.
    void takeFeed();
    /// The window's timer calls it 40 times a second. A batch has two turns, also if it has no messages.
    void takeTurn();
    /// Starts the timer, and counts rejections from now on.
    void begin();
    /// The desk ends: shows how many orders are still to be processed, and changes no strategy any more.
    void showEnding();
    /// Answers all open questions, menus and dialogs as if the user had declined them. A call ends the one on
    /// top, because the others wait in its event loop; returns whether there was one.
    static bool declineOpen();
    /// Halts or resumes after a question, also while a dialog is open.
    void halt();
    /// Keeps panels, columns and sizes.
    void saveAll();
    /// Replaces the question boxes, for tests.
    void setAsk(CAsk ask) { m_ask = std::move(ask); }

    CTableView& table(const char* name) const { return *m_tables.at(name).m_view; }
    CRowModel& model(const char* name) const { return *m_tables.at(name).m_model; }
    CStateBar& stateBar() const { return *m_state; }
    QAction& action(const char* name) const { return *m_actions.at(name); }
    QDockWidget& panel(const char* name) const { return *m_panels.at(name); }

signals:
    /// The user has agreed to end the desk. The window stays until the program deletes it.
    void sigClosed();

protected:
    bool eventFilter(QObject* object, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    struct CTable {
        CRowModel* m_model = nullptr;
        CTableView* m_view = nullptr;
    };

    CTable makeTable(const CTableSpec& spec, const QString& emptyText);
    QDockWidget* addPanel(const char* name, const QString& title, QWidget* content, Qt::DockWidgetArea area);
    void makePanels();
    void addRejectionBar();
    void placePanels();
    QAction* addCommand(const char* name, const QString& text, const QKeySequence& keys, QMenu& menu,
                        std::function<void()> action);
    void makeMenus();
    void makeStrategyMenu();
    void makeTradeMenu();
    void makeViewMenu();
    void focusPanel(const char* name);
    void showFilter();
    void restoreDefaultLayout();
    CTableView* focusedTable() const;

    void showTexts();
    void showTrades(const CFeedBatch& batch);
    void showBooks(const CBooks& books);
    void showPartOfBooks();
    CRow makeQuoteRow(const CInstrumentEntry& instrument, const CBooks& books);
    CFeedMessage droppedMessage(std::size_t lines);
    void showBook();
    void plotEquity(const std::vector<CRow>& accounts);
    void showPlottedAccounts();
    void plotCommandTime(const CDeskStatus& status);
    void showStrategies();
    void showState();
    void showCounts();

    using CStrategyOperation = std::function<QString(const TC::COrderStrategyParam&)>;
    bool agreesToStart(const TC::COrderStrategyParam& strategy);
    void startStrategies();
    void stopStrategies();
    void runOnStrategies(const CStrategyOperation& operation);
    void addStrategy();
    void changeStrategy();
    void removeStrategies();
    bool mayBeBehind() const;
    void cancelSelected();
    void cancelOfAccounts();
    void cancelTasks();
    QString cancelText(const std::vector<std::pair<std::string, int>>& orders) const;
    void discardQueue();
    void endPause();
    static QString queueText(const CDeskStatus& status);
    QString closeText() const;
    QString resumeText() const;
    QString withWaitingFiles(const QString& text) const;
    void chooseInstrument(const QStringList& keys);
    void applyTheme();
    void restoreAll();
    bool askUser(const QString& title, const QString& text, const QString& agree);

    const QString m_strFolder;
    IDeskControl& m_control;
    CWindowFeed& m_feed;
    QSettings& m_settings;
    CAsk m_ask;
    CTradeBoard m_board;
    CQuoteTimes m_quoteTimes;
    int m_nUnseenWarnings = 0;
    std::int64_t m_nLastOwnMessage = 0; ///< numbers of the window's own messages: -1, -2 and so on
    CFeedBatch m_texts;                 ///< only messages and records: those that are not shown yet
    CNames m_names;
    std::map<std::string, CTable> m_tables;
    std::map<std::string, QDockWidget*> m_panels;
    std::map<std::string, QAction*> m_actions;
    QMenuBar* m_menus; ///< the window owns it, like all widgets
    CStateBar* m_state;
    CRejectionBar* m_rejections = nullptr;
    CPlotPanel* m_plots = nullptr;
    CStateFacts m_facts;
    std::shared_ptr<const CBooks> m_books;
    /// The books whose positions and quotes are being shown, part by part.
    struct CPart {
        std::shared_ptr<const CBooks> m_books; ///< null: all is shown
        std::size_t m_nPosition = 0;
        std::size_t m_nQuote = 0;
        QStringList m_positionKeys;
    };
    CPart m_part;
    bool m_bNewBooks = false;    ///< m_books is newer than m_part
    double m_dBooksTime = 0;     ///< when they came; seconds of base/Clock.h
    std::string m_strInstrument; ///< of the book
    std::uint64_t m_nRevision = 0;
    bool m_bHasStrategies = false;                    ///< m_nRevision is valid
    std::unique_ptr<TC::CIntakePause> m_pauseOfClose; ///< from the close to the end
    bool m_bEnding = false;
    bool m_bAskingToHalt = false;
    bool m_bFirstTurn = false; ///< the last turn was the first one of a batch
    QString m_strState;        ///< as the title shows it
    QString m_strLastCommand;  ///< the one that was plotted last
    QTimer m_timer;
    QByteArray m_defaultLayout;
};

} // namespace desk
