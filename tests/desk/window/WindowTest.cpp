#include "desk/window/Language.h"
#include "desk/window/Words.h"
#include "orderservice/gates/IntakePause.h"
#include "tests/desk/window/WindowFolder.h"

#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>

#include <gtest/gtest.h>

namespace {

using namespace desk;

class Window : public CWindowFolder {
protected:
    void SetUp() override { makeFolder(false); }
};

constexpr const char* kOrders = "23,0,8.02,600104,1000\n23,0,7.50,600104,2000\n23,0,8.02,600104,150\n";

TEST_F(Window, ShowsWhatHappensToOrders) {
    EXPECT_EQ(run({hasRows("strategies", 16), hasRows("accounts", 15), handOver(kOrders),
                   hasRows("orders", 5), hasRows("fills", 2), hasRows("tasks", 3),
                   [](CMainWindow& window) {
                       EXPECT_EQ(cell(window, "orders", "1", "state"), "filled");
                       EXPECT_EQ(cell(window, "orders", "3", "state"), "waits");
                       EXPECT_EQ(cell(window, "orders", "5", "state"), "REJECTED");
                       EXPECT_EQ(cell(window, "orders", "5", "reason"),
                                 "volume 150 is not a multiple of 100");
                       EXPECT_EQ(cell(window, "tasks", "2", "waiting"), "2");
                       EXPECT_EQ(window.panel("orders").windowTitle(), "Orders (1 REJECTED)");
                       window.action("view_orders").trigger();
                       EXPECT_EQ(window.panel("orders").windowTitle(), "Orders");
                       EXPECT_TRUE(window.stateBar().factsText().contains("2 orders wait"));
                       EXPECT_TRUE(window.windowTitle().contains("ACTIVE"));
                       return true;
                   }}),
              0)
        << out.str();
    EXPECT_TRUE(hasInJournal("\"reason\":\"signal\""));
}

TEST_F(Window, HaltCancelsAndKeepsFilesWaitingUntilResumed) {
    EXPECT_EQ(run({handOver(kOrders), hasRows("orders", 5), trigger("halt"), hasState(EDeskState::Halted),
                   [](CMainWindow& window) { return cell(window, "orders", "4", "state") == "cancelled"; },
                   handOver("23,0,8.02,600104,100\n"),
                   [this](CMainWindow& window) {
                       EXPECT_TRUE(TC::CIntakePause::isPaused());
                       EXPECT_TRUE(folder.exists("desk/orders/group.txt"));
                       EXPECT_TRUE(window.windowTitle().contains("HALTED"));
                       window.stateBar().haltButton().click();
                       return true;
                   },
                   hasRows("orders", 6), hasState(EDeskState::Active)}),
              0)
        << out.str();
    ASSERT_EQ(questions.size(), 2);
    EXPECT_TRUE(questions[0].contains("cancels 2 waiting orders of 2 accounts"))
        << questions[0].toStdString();
    EXPECT_TRUE(hasInJournal("the desk was halted"));
}

TEST_F(Window, NothingDangerousHappensWithoutAgreement) {
    answer = false;
    EXPECT_EQ(run({handOver(kOrders), hasRows("orders", 5),
                   [](CMainWindow& window) {
                       window.action("halt").trigger();
                       window.table("orders").selectAll();
                       window.action("cancel").trigger();
                       window.table("tasks").selectAll();
                       window.action("cancel_task").trigger();
                       window.table("strategies").selectAll();
                       window.action("remove").trigger();
                       EXPECT_FALSE(window.close());
                       EXPECT_EQ(window.stateBar().state(), EDeskState::Active);
                       EXPECT_EQ(window.model("strategies").rowCount(), 16);
                       return true;
                   }}),
              0);
    ASSERT_EQ(questions.size(), 5);
    EXPECT_TRUE(questions[1].contains("Cancel 2 waiting orders of "));
    EXPECT_TRUE(questions[2].contains("1 task: Cancel 2 waiting orders of "));
    EXPECT_TRUE(questions[4].contains("16 strateg") && questions[4].contains("2 order"));
    EXPECT_FALSE(hasInJournal("\"kind\":\"control\""));
}

TEST_F(Window, CancelsOneOrder) {
    EXPECT_EQ(run({handOver(kOrders), hasRows("orders", 5),
                   [](CMainWindow& window) {
                       CTableView& view = window.table("orders");
                       for (int row = 0; row < view.filter().rowCount(); ++row) {
                           if (view.filter().index(row, 0).data(CRowModel::KeyRole) == "3")
                               view.selectRow(row);
                       }
                       window.action("cancel").trigger();
                       return true;
                   },
                   [](CMainWindow& window) { return cell(window, "orders", "3", "state") == "cancelled"; },
                   [](CMainWindow& window) {
                       EXPECT_EQ(cell(window, "orders", "4", "state"), "waits");
                       return true;
                   }}),
              0);
}

TEST_F(Window, StopsAndStartsAStrategyByKey) {
    EXPECT_EQ(run({hasRows("strategies", 16),
                   [](CMainWindow& window) {
                       window.action("view_strategies").trigger();
                       window.table("strategies").selectRow(0);
                       QTest::keyClick(&window.table("strategies"), Qt::Key_Space);
                       EXPECT_TRUE(cell(window, "strategies", "1", "state").contains("stopped"));
                       EXPECT_TRUE(window.stateBar().noticeText().isEmpty());
                       return true;
                   },
                   [](CMainWindow& window) { return window.stateBar().factsText().startsWith("15 of 16"); },
                   [](CMainWindow& window) {
                       QTest::keyClick(&window.table("strategies"), Qt::Key_Return);
                       EXPECT_EQ(window.stateBar().noticeText(), "");
                       EXPECT_TRUE(cell(window, "strategies", "1", "state").contains("runs"));
                       return true;
                   }}),
              0);
}

TEST_F(Window, AStartThatDeletesAWaitingFileAsksFirst) {
    answer = false;
    EXPECT_EQ(run({hasRows("strategies", 16),
                   [this](CMainWindow& window) {
                       window.table("strategies").selectRow(0);
                       window.action("stop").trigger();
                       folder.handOver("desk/orders/group.txt", kOrders);
                       window.action("start").trigger();
                       EXPECT_TRUE(cell(window, "strategies", "1", "state").contains("stopped"));
                       return true;
                   }}),
              0);
    ASSERT_EQ(questions.size(), 1);
    EXPECT_TRUE(questions[0].contains("The start deletes it unread."));
    EXPECT_EQ(folder.read("desk/orders/group.txt"), kOrders);
}

TEST_F(Window, OffersToEndThePauseOfAnUnansweredConfirmation) {
    EXPECT_EQ(run({[](CMainWindow& window) {
                       EXPECT_TRUE(window.stateBar().pauseBar().isHidden());
                       TC::setConfirmationPause(true);
                       return true;
                   },
                   hasState(EDeskState::Paused),
                   [](CMainWindow& window) {
                       EXPECT_FALSE(window.stateBar().pauseBar().isHidden());
                       window.stateBar().pauseButton().click();
                       EXPECT_FALSE(TC::isConfirmationPauseSet());
                       return true;
                   },
                   hasState(EDeskState::Active)}),
              0);
}

TEST_F(Window, ClosingEndsTheDesk) {
    EXPECT_EQ(run({hasRows("strategies", 16),
                   [](CMainWindow& window) {
                       window.close();
                       return true;
                   }}),
              0);
    EXPECT_TRUE(hasInJournal("\"reason\":\"window closed\""));
    EXPECT_TRUE(folder.exists("layout.ini"));
    EXPECT_EQ(questions.size(), 1);
}

/// The widest orders of the demo: long codes, prices of four digits, a reason, and all kinds of instruments.
TEST_F(Window, TheDefaultLayoutNeedsNoScrollBarAcross) {
    EXPECT_EQ(run({handOver(kOrders), hasRows("orders", 5), handOver("0,0,4000.4,IF2609,3\n", "future.txt"),
                   hasRows("orders", 6), handOver("48,0,0.5002,10005001,3\n", "option.txt"),
                   hasRows("orders", 7), handOver("27,0,11.02,600101,1000\n", "credit.txt"),
                   hasRows("orders", 8), hasRows("positions", 4), hasRows("messages", 4),
                   [](CMainWindow& window) {
                       window.resize(1366, 730);
                       for (const char* name :
                            {"strategies", "orders", "accounts", "positions", "messages", "quotes"}) {
                           CTableView& view = window.table(name);
                           for (int row = view.filter().rowCount() - 1; row >= 0; --row) {
                               view.scrollTo(view.filter().index(row, 0)); // what is painted may make its
                               view.grab();                                // column wider
                           }
                           QCoreApplication::processEvents();
                           EXPECT_EQ(view.horizontalScrollBar()->maximum(), 0) << name;
                       }
                       const CTableView& accounts = window.table("accounts");
                       EXPECT_EQ(accounts.indexAt({1, 1}).data().toString(), "All");
                       return true;
                   }}),
              0);
}

TEST(StateBar, TheMostUrgentStateIsShown) {
    CDeskStatus status;
    EXPECT_EQ(stateOf(status), EDeskState::Active);
    status.m_bConfirmationPause = true;
    EXPECT_EQ(stateOf(status), EDeskState::Paused);
    status.m_bHalted = true;
    EXPECT_EQ(stateOf(status), EDeskState::Halted);
    status.m_strJournalFailure = "disk full";
    EXPECT_EQ(stateOf(status), EDeskState::JournalBroken);
}

TEST(Language, EachTextHasAChineseTranslation) {
    CLanguage language;
    EXPECT_FALSE(CLanguage().install("fr"));
    ASSERT_TRUE(language.install("zh"));
    for (const char* word : translatedWords())
        EXPECT_NE(QCoreApplication::translate("words", word), QString::fromLatin1(word)) << word;
    for (const CTableSpec* spec :
         {&strategyTable(), &orderTable(), &taskTable(), &fillTable(), &accountTable(), &positionTable(),
          &quoteTable(), &bookTable(), &messageTable(), &journalTable()}) {
        for (const CColumn& column : spec->m_columns)
            EXPECT_NE(QCoreApplication::translate("columns", column.m_pszTitle),
                      QString::fromLatin1(column.m_pszTitle))
                << column.m_pszTitle;
    }
    EXPECT_EQ(stateWord(EDeskState::Halted), "■ 已停止交易");
}

} // namespace
