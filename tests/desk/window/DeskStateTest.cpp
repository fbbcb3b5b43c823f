// What the window shows of the desk's state, without a running desk.
#include "desk/journal/RecordCapture.h"
#include "desk/window/DeskWorker.h"
#include "desk/window/IntakeMeter.h"
#include "desk/window/KeptText.h"
#include "desk/window/LiveControl.h"
#include "desk/window/MainWindow.h"
#include "desk/window/MeteredAudit.h"
#include "desk/window/StateBar.h"
#include "orderservice/gates/IntakePause.h"
#include "tests/desk/paper/PaperDesk.h"
#include "tests/desk/window/FakeControl.h"

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QDockWidget>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace desk {
namespace {

TEST(StateBar, BrokenJournalDoesNotHideTheHalt) {
    CStateBar bar;
    CDeskStatus status;
    status.m_strJournalFailure = "no room on the disk";
    status.m_bHalted = true;
    bar.showStatus(status, {});
    EXPECT_EQ(bar.wordText(), "▲ JOURNAL BROKEN  ■ HALTED");
    EXPECT_EQ(bar.haltButton().text(), "RESUME");
    EXPECT_TRUE(bar.haltButton().toolTip().contains("Takes orders again"));
    EXPECT_TRUE(bar.troubleText().contains("no room on the disk"));
    EXPECT_FALSE(bar.factsText().contains("no room on the disk")) << "it has a line of its own";
    status.m_bHalted = false;
    bar.showStatus(status, {});
    EXPECT_EQ(bar.wordText(), "▲ JOURNAL BROKEN");
    EXPECT_EQ(bar.haltButton().text(), "HALT");
    EXPECT_FALSE(bar.haltButton().toolTip().contains("Takes orders again"));
}

TEST(StateBar, ButtonWaitsUntilTheHaltAndTheResumeAreDone) {
    CStateBar bar;
    CDeskStatus status;
    status.m_bHalting = true;
    status.m_strHaltProblem = "5 orders could not be cancelled";
    bar.showStatus(status, {});
    EXPECT_FALSE(bar.haltButton().isEnabled());
    EXPECT_EQ(bar.troubleText(), "5 orders could not be cancelled");
    status = {};
    status.m_bHalted = status.m_bResuming = true;
    bar.showStatus(status, {});
    EXPECT_FALSE(bar.haltButton().isEnabled());
    status.m_bResuming = false;
    bar.showStatus(status, {});
    EXPECT_TRUE(bar.haltButton().isEnabled());
    EXPECT_EQ(bar.troubleText(), "");
}

TEST(StateBar, ShowsTheQueueAndWhatTheLastOrderNeeded) {
    CStateBar bar;
    CDeskStatus status;
    status.m_nQueue = 17;
    bar.showStatus(status, {});
    EXPECT_TRUE(bar.factsText().contains("queue 17"));
    EXPECT_FALSE(bar.factsText().contains("last order"));
    status.m_strLastCommand = "10:31:07.214";
    status.m_lastMs = 3.14;
    bar.showStatus(status, {});
    EXPECT_TRUE(bar.factsText().contains("last order 10:31:07.214 (3.1 ms)"));
    status.m_lastMs.reset(); // a person was asked
    bar.showStatus(status, {});
    EXPECT_TRUE(bar.factsText().contains("last order 10:31:07.214   ·"));
}

TEST(StateBar, SaysThatTheTablesAreFarBehind) {
    CStateBar bar;
    CStateFacts facts;
    facts.m_nBehind = 999;
    bar.showStatus({}, facts);
    EXPECT_EQ(bar.troubleText(), "");
    facts.m_nBehind = 5000;
    bar.showStatus({}, facts);
    EXPECT_TRUE(bar.troubleText().contains("5000 entries behind"));
}

TEST(StateBar, SaysWhatHappensToTheAcceptedOrdersAtTheEnd) {
    CStateBar bar;
    CDeskStatus status;
    status.m_bEnding = true;
    status.m_nQueue = 3;
    bar.showStatus(status, {});
    EXPECT_EQ(bar.troubleText(), "The desk sends the 3 orders that it has accepted, and then ends.");
    status.m_bConfirms = true;
    bar.showStatus(status, {});
    EXPECT_EQ(bar.troubleText(),
              "The desk processes the 3 orders that it has accepted, and then ends. Those that need "
              "your confirmation are not sent.");
    status.m_nQueue = 0;
    bar.showStatus(status, {});
    EXPECT_EQ(bar.troubleText(), "The desk ends.");
    status.m_nQueue = 3;
    status.m_bHalted = true;
    bar.showStatus(status, {});
    EXPECT_EQ(bar.troubleText(),
              "The desk is halted: it declines the 3 orders that it has accepted, and then ends.");
}

class StartedWindow : public testing::Test {
protected:
    std::unique_ptr<CMainWindow> window(const QString& name = QStringLiteral("my-desk")) {
        return std::make_unique<CMainWindow>(name, m_control, m_feed, m_settings);
    }

    const QTemporaryDir m_folder;
    QSettings m_settings{m_folder.filePath(QStringLiteral("layout.ini")), QSettings::IniFormat};
    CFakeControl m_control;
    CWindowFeed m_feed;
};

TEST_F(StartedWindow, EarlierRejectionsAreNoNewsHoweverManyThereAre) {
    constexpr int kOrders = 7000;
    for (int id = 1; id <= kOrders; ++id) {
        CPaperOrder order;
        order.m_nId = id;
        order.m_nTask = id;
        order.m_eStatus = EOrderStatus::Rejected;
        m_feed.addOrder(order);
    }
    const auto shown = window();
    shown->begin();
    EXPECT_EQ(shown->model("orders").rowCount(), kOrders);
    EXPECT_EQ(shown->panel("orders").windowTitle(), "Orders");
}

TEST_F(StartedWindow, ABatchWithoutMessagesHasTwoTurnsToo) {
    const auto shown = window();
    const auto add = [this](int id) {
        CPaperOrder order;
        order.m_nId = id;
        m_feed.addOrder(order);
    };
    add(1);
    shown->takeTurn();
    EXPECT_EQ(shown->model("orders").rowCount(), 1);
    add(2);
    shown->takeTurn();
    EXPECT_EQ(shown->model("orders").rowCount(), 1) << "it is the turn of the messages";
    shown->takeTurn();
    EXPECT_EQ(shown->model("orders").rowCount(), 2);
    shown->takeTurn();
    m_feed.addMessage(CFeedMessage::EKind::Desk, false, QStringLiteral("note"));
    shown->takeTurn();
    EXPECT_EQ(shown->model("messages").rowCount(), 0) << "first the trades";
    shown->takeTurn();
    EXPECT_EQ(shown->model("messages").rowCount(), 1);
}

TEST_F(StartedWindow, TheCloseSaysWhatHappensToAcceptedOrders) {
    CDeskStatus& status = m_control.m_status;
    const auto shown = window();
    QString question;
    shown->setAsk([&](const QString&, const QString& text, const QString&) {
        question = text;
        return false;
    });
    const auto questionOf = [&] {
        question.clear();
        shown->close();
        return question;
    };
    EXPECT_EQ(questionOf(), "") << "nothing is lost";
    status.m_nQueue = 3;
    EXPECT_EQ(questionOf(),
              "3 accepted orders are not processed yet. The desk still sends them before it ends. "
              "Until then the window stays and can discard them.");
    status.m_bConfirms = true;
    EXPECT_EQ(questionOf(),
              "3 accepted orders are not processed yet. Those that need your confirmation are not sent.");
    status.m_nDelayed = 1;
    EXPECT_TRUE(
        questionOf().endsWith("\n1 checked batch waits. If it needs your confirmation, it is not sent."));
    status.m_nDelayed = 0;
    status.m_bHalted = true;
    EXPECT_EQ(questionOf(),
              "3 accepted orders are not processed yet. The desk is halted: they are declined.");
    status.m_bResuming = true;
    EXPECT_EQ(questionOf(),
              "3 accepted orders are not processed yet. They are sent if the resume is finished in "
              "time, otherwise declined.");
}

TEST_F(StartedWindow, OrderFilesWaitFromTheQuestionOfTheCloseOn) {
    m_control.m_status.m_nQueue = 3;
    auto shown = window();
    bool answer = false;
    bool wasPaused = false;
    shown->setAsk([&](const QString&, const QString&, const QString&) {
        wasPaused = TC::CIntakePause::isPaused();
        return answer;
    });
    shown->close();
    EXPECT_TRUE(wasPaused);
    EXPECT_FALSE(TC::CIntakePause::isPaused()) << "the desk goes on";
    answer = true;
    shown->close();
    EXPECT_TRUE(TC::CIntakePause::isPaused()) << "the desk ends";
    shown.reset();
    EXPECT_FALSE(TC::CIntakePause::isPaused());
}

TEST_F(StartedWindow, TitleHasTheNameOfTheFolderHoweverItWasWritten) {
    EXPECT_TRUE(window(QStringLiteral("my-desk/"))->windowTitle().endsWith("my-desk"));
    const QString here = QDir::current().dirName();
    EXPECT_TRUE(window(QStringLiteral("."))->windowTitle().endsWith(here));
}

TEST_F(StartedWindow, SaysThatMoneyAndQuotesAreOld) {
    test::CStillClock clock;
    const auto shown = window();
    m_feed.setBooks(std::make_shared<CBooks>());
    shown->takeFeed();
    clock.m_dNow = 2;
    shown->takeFeed();
    EXPECT_EQ(shown->stateBar().troubleText(), "");
    clock.m_dNow = 3;
    shown->takeFeed();
    EXPECT_TRUE(shown->stateBar().troubleText().contains("3 seconds old"));
    m_feed.setBooks(std::make_shared<CBooks>());
    shown->takeFeed();
    EXPECT_EQ(shown->stateBar().troubleText(), "");
}

TEST_F(StartedWindow, TitleShowsAllThatIsUrgent) {
    m_control.m_status.m_bHalted = true;
    m_control.m_status.m_strJournalFailure = "disk";
    EXPECT_TRUE(window()->windowTitle().startsWith("▲ JOURNAL BROKEN  ■ HALTED"));
}

TEST_F(StartedWindow, OpenDialogsAreDeclinedFromTheTop) {
    QDialog first, second;
    first.setModal(true);
    second.setModal(true);
    first.show();
    second.show();
    EXPECT_TRUE(CMainWindow::declineOpen());
    EXPECT_FALSE(second.isVisible());
    EXPECT_TRUE(first.isVisible());
    EXPECT_TRUE(CMainWindow::declineOpen());
    EXPECT_FALSE(CMainWindow::declineOpen());
}

TEST(WindowFeed, ReadsTheTasksOfCommandsWhenTheyAreTaken) {
    CWindowFeed feed;
    for (int task = 1; task <= static_cast<int>(CWindowFeed::kMaxWaiting) + 7; ++task)
        feed.addJournalLines(R"({"kind":"command","time":"T","seq":)" + std::to_string(task) + R"(,"task":)" +
                             std::to_string(task) + "}\n");
    std::size_t tasks = 0;
    CFeedBatch batch;
    do {
        batch = feed.take();
        tasks += batch.m_tasks.size();
    } while (batch.m_nWaitingTrades > 0);
    EXPECT_EQ(tasks, CWindowFeed::kMaxWaiting + 7) << "tasks are never dropped";
    EXPECT_EQ(batch.m_tasks.back().m_nId, static_cast<int>(CWindowFeed::kMaxWaiting) + 7);
}

TEST(WindowFeed, KeepsNothingAfterItsEnd) {
    CWindowFeed feed;
    feed.addMessage(CFeedMessage::EKind::Desk, false, QStringLiteral("before"));
    feed.end();
    feed.addOrder({});
    feed.addEvent({});
    feed.addMessage(CFeedMessage::EKind::Desk, false, QStringLiteral("after"));
    feed.addJournalLines("{}\n");
    feed.setBooks(std::make_shared<CBooks>());
    const CFeedBatch batch = feed.take();
    EXPECT_TRUE(batch.m_orders.empty() && batch.m_messages.empty() && batch.m_journal.empty());
    EXPECT_EQ(batch.m_books, nullptr);
}

TEST(KeptText, KeepsTheLastLines) {
    std::ostringstream target;
    CKeptText kept(target);
    std::ostream out(&kept);
    for (int line = 0; line < 10000; ++line)
        out << "line " << line << '\n';
    out << "the journal could not be closed\n" << std::flush;
    EXPECT_LE(kept.text().size(), CKeptText::kMost);
    EXPECT_EQ(kept.text().compare(0, 5, "line "), 0);
    EXPECT_NE(kept.text().find("the journal could not be closed\n"), std::string::npos);
    EXPECT_EQ(target.str().compare(0, 7, "line 0\n"), 0);
}

TEST(IntakeMeter, CountsTheQueueAndTheTimeOfACommand) {
    const auto meter = std::make_shared<CIntakeMeter>();
    auto first = meter->begin(3, 10);
    auto second = meter->begin(4, 11);
    EXPECT_EQ(meter->state().m_nQueue, 7);
    EXPECT_EQ(meter->state().m_strLastTime, "");
    meter->command(true, 10.0031);
    EXPECT_NEAR(meter->state().m_lastMs.value(), 3.1, 1e-6);
    EXPECT_NE(meter->state().m_strLastTime, "");
    EXPECT_EQ(meter->state().m_nQueue, 6);
    first.reset();
    EXPECT_EQ(meter->state().m_nQueue, 4);
    meter->command(true, 11.5);
    EXPECT_NEAR(meter->state().m_lastMs.value(), 500, 1e-6);
    meter->command(false, 12);
    EXPECT_FALSE(meter->state().m_lastMs.has_value());
    EXPECT_EQ(meter->state().m_nQueue, 3);
    second.reset();
    EXPECT_EQ(meter->state().m_nQueue, 0);
}

TEST(IntakeMeter, CountsARefusedOrderOnce) {
    const auto meter = std::make_shared<CIntakeMeter>();
    meter->refusal(); // of no batch
    auto batch = meter->begin(4, 10);
    meter->message();
    EXPECT_EQ(meter->state().m_nQueue, 4);
    meter->refusal();
    meter->refusal(); // another row of the same basket
    EXPECT_EQ(meter->state().m_nQueue, 4) << "a command may still follow";
    meter->message(); // the next order
    EXPECT_EQ(meter->state().m_nQueue, 3);
    meter->refusal();
    meter->command(true, 11); // without the refused row
    meter->message();
    EXPECT_EQ(meter->state().m_nQueue, 2);
    for (int i = 0; i < 3; ++i)
        meter->command(true, 12);
    EXPECT_EQ(meter->state().m_nQueue, 0);
    batch.reset();
    EXPECT_EQ(meter->state().m_nQueue, 0);
}

/// A desk that records nothing.
class CNoAudit : public TC::CIntakeAudit {
public:
    void recordIntake(const TC::CIntakeReport&) override {}
    void recordDoor(const TC::CDoorReport&) override {}
};

TEST(IntakeMeter, AMessageOfAnotherThreadEndsNoRefusedOrder) {
    const auto meter = std::make_shared<CIntakeMeter>();
    const auto batch = meter->begin(2, 1);
    meter->refusal();
    std::thread([&] { meter->message(); }).join();
    EXPECT_EQ(meter->state().m_nQueue, 2) << "a command of the order may still come";
    meter->command(true, 1);
    EXPECT_EQ(meter->state().m_nQueue, 1);
    meter->refusal();
    meter->message();
    EXPECT_EQ(meter->state().m_nQueue, 0);
}

/// A desk that sends nothing.
class CNoOrders : public TC::COrderClient {
public:
    void orderCommands(const TC::COrderComandParamPtr&) override {}
    void showTradeError(const QString&, const QString&) override {}
};

TEST(IntakeMeter, ACallOfAFunctionIsInNoBatch) {
    CNoOrders desk;
    const auto meter = std::make_shared<CIntakeMeter>();
    CWindowOrderClient client(desk, meter);
    const auto batch = meter->begin(2, 1);
    std::thread([&] {
        const CRecordCapture capture; // as during a call
        client.showTradeError({}, {});
        client.orderCommands(nullptr);
        meter->message();
    }).join();
    EXPECT_EQ(meter->state().m_nQueue, 2);
    EXPECT_FALSE(meter->state().m_lastMs.has_value());
    EXPECT_NE(meter->state().m_strLastTime, "");
    std::thread([&] { client.orderCommands(nullptr); }).join();
    EXPECT_EQ(meter->state().m_nQueue, 1);
}

TEST(IntakeMeter, AFileThatPlacesNothingBeginsNoBatch) {
    CNoAudit desk;
    const auto meter = std::make_shared<CIntakeMeter>();
    CMeteredAudit audit(desk, meter);
    TC::CIntakeReport report;
    report.m_nOrders = 3;
    for (bool TC::CIntakeReport::*flag : {&TC::CIntakeReport::m_bRejected, &TC::CIntakeReport::m_bLeftOver,
                                          &TC::CIntakeReport::m_bLeftWaiting}) {
        TC::CIntakeReport unplaced = report;
        unplaced.*flag = true;
        audit.recordIntake(unplaced);
        EXPECT_EQ(meter->state().m_nQueue, 0);
    }
    audit.recordIntake({}); // an empty file
    meter->command(true, 10);
    EXPECT_FALSE(meter->state().m_lastMs.has_value()) << "there is no batch to measure from";
    audit.recordIntake(report);
    EXPECT_EQ(meter->state().m_nQueue, 3);
    EXPECT_NE(CIntakeMeter::takeOfThread(), nullptr);
}

TEST(IntakeMeter, KeepsTheBatchThatADoorHasReportedForItsThread) {
    const auto meter = std::make_shared<CIntakeMeter>();
    EXPECT_EQ(CIntakeMeter::takeOfThread(), nullptr);
    meter->beginOnThread(3, 1); // is not placed
    meter->beginOnThread(5, 2);
    EXPECT_EQ(meter->state().m_nQueue, 5);
    std::thread([] { EXPECT_EQ(CIntakeMeter::takeOfThread(), nullptr); }).join();
    auto batch = CIntakeMeter::takeOfThread();
    EXPECT_NE(batch, nullptr);
    EXPECT_EQ(CIntakeMeter::takeOfThread(), nullptr);
    batch.reset();
    EXPECT_EQ(meter->state().m_nQueue, 0);
}

using Worker = test::PaperDesk;

TEST_F(Worker, ReadsTheEquityOfTheStartBeforeItReturns) {
    CWindowFeed feed;
    const CDeskWorker worker(*m_broker, m_quotes, {}, feed);
    const CFeedBatch batch = feed.take();
    ASSERT_NE(batch.m_books, nullptr);
    EXPECT_EQ(batch.m_books->m_accounts[0].m_dStart, batch.m_books->m_accounts[0].m_dEquity);
    EXPECT_GT(batch.m_books->m_accounts[0].m_dStart, 100000);
}

TEST_F(Worker, ExceptionOfAnActionIsShownAndTheNextActionIsCalled) {
    CWindowFeed feed;
    CDeskWorker worker(*m_broker, m_quotes, {}, feed);
    std::promise<void> called;
    worker.post([] { throw std::runtime_error("no memory"); });
    worker.post([&] { called.set_value(); });
    ASSERT_EQ(called.get_future().wait_for(std::chrono::minutes(1)), std::future_status::ready);
    const CFeedBatch batch = feed.take();
    ASSERT_EQ(batch.m_messages.size(), 1U);
    EXPECT_EQ(batch.m_messages[0].m_strText, "no memory");
    EXPECT_TRUE(batch.m_messages[0].m_bWarning);
}

} // namespace
} // namespace desk
