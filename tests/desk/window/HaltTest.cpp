// The halt, its end, and the end of the desk: what was accepted before, and failures.
#include "orderservice/gates/IntakePause.h"
#include "orderservice/gates/OrderConfirmer.h"
#include "tests/desk/journal/DeskFolder.h"
#include "tests/desk/window/HaltFolder.h"

#include <QAction>
#include <QItemSelectionModel>
#include <QPushButton>
#include <QTimer>

#include <chrono>
#include <future>
#include <stdexcept>

namespace desk {
namespace {

using Halt = CHaltFolder;

TEST_F(Halt, ResumeSendsNothingThatWasAcceptedBefore) {
    const auto hasLater = [](CMainWindow& window) {
        CRowModel& orders = window.model("orders");
        const int code = columnOf(orders.spec(), "code");
        for (int row = 0; row < orders.rowCount(); ++row) {
            if (orders.index(row, code).data().toString().contains(QLatin1String("600102"))) return true;
        }
        return false;
    };
    std::promise<void> release;
    std::shared_future<void> released(release.get_future());
    EXPECT_EQ(run({watchBatches(),
                   [&](CMainWindow&) { // the service's thread waits here until it is released
                       const auto wait = [](std::shared_future<void>* future) { future->wait(); };
                       TC::COrderService::instance()->holdUntilProcessed(
                           std::shared_ptr<std::shared_future<void>>(&released, wait));
                       return true;
                   },
                   handOver(manyOrders(3000)), hasPlaced(), trigger("halt"), hasState(EDeskState::Halting),
                   [&](CMainWindow&) {
                       release.set_value();
                       return true;
                   },
                   hasState(EDeskState::Halted), resumes(), hasState(EDeskState::Active),
                   handOver("24,0,9.50,600102,100\n"), hasLater}),
              0);
    const std::string records = journal();
    const std::size_t resumed = records.find("\"action\":\"resumed\"");
    ASSERT_NE(resumed, std::string::npos);
    EXPECT_EQ(commandsIn(records.substr(0, resumed)), 0);
    EXPECT_EQ(commandsIn(records.substr(resumed)), 1);
}

TEST_F(Halt, ABatchThatComesDuringTheResumeIsDeclinedOrSentAsAWhole) {
    constexpr int kOrders = 3000;
    QVector<TC::COrderParam> batch;
    std::unique_ptr<TC::CConfirmationHold> hold;
    std::atomic<bool> isProcessed{false};
    EXPECT_EQ(run({[&](CMainWindow& window) {
                       const auto keep = [&](const QVector<TC::COrderParam>& orders) {
                           if (isPlaced) return;
                           batch.fill(orders.first(), kOrders);
                           isPlaced = true;
                       };
                       QObject::connect(TC::COrderService::instance(), &TC::COrderService::sigPlaceOrders,
                                        &window, keep, Qt::DirectConnection);
                       return true;
                   },
                   handOver(manyOrders(1)), hasPlaced(), hasRows("orders", 1), trigger("halt"),
                   hasState(EDeskState::Halted),
                   [&](CMainWindow& window) {
                       hold = std::make_unique<TC::CConfirmationHold>(); // the resume waits for its end
                       window.stateBar().haltButton().click();
                       return true;
                   },
                   [this](CMainWindow&) { return hasInJournal("\"action\":\"resume\""); },
                   [&](CMainWindow&) {
                       TC::COrderService::instance()->placeOrders(batch);
                       noteProcessed(isProcessed);
                       return true;
                   },
                   [this](CMainWindow&) { return hasInJournal("the desk is halted"); },
                   [&](CMainWindow&) {
                       hold.reset();
                       return true;
                   },
                   hasState(EDeskState::Active), [&](CMainWindow&) { return isProcessed.load(); }}),
              0);
    const int sent = commandsIn(journal()) - 1;
    EXPECT_TRUE(sent == 0 || sent == kOrders) << sent;
}

TEST_F(Halt, IsInTheJournal) {
    EXPECT_EQ(run({handOver("23,0,7.50,600104,2000\n"), hasRows("orders", 2), trigger("halt"),
                   hasState(EDeskState::Halted), resumes(), hasState(EDeskState::Active),
                   [this](CMainWindow&) { return hasInJournal("\"action\":\"resumed\""); }}),
              0);
    for (const char* action : {"halt\"", "halted\",\"cancelled\":2", "resume\"", "resumed\""})
        EXPECT_TRUE(hasInJournal(std::string("\"action\":\"") + action)) << action;
}

TEST_F(Halt, IsNotFinishedWhileOrdersWaitThatCannotBeCancelled) {
    std::unique_ptr<test::CFullDisk> disk;
    EXPECT_EQ(run({handOver("23,0,7.50,600104,2000\n"), hasRows("orders", 2),
                   [&](CMainWindow& window) {
                       disk = std::make_unique<test::CFullDisk>(1);
                       window.action("halt").trigger();
                       return true;
                   },
                   [](CMainWindow& window) {
                       return window.stateBar().troubleText().contains("2 order") &&
                              window.stateBar().troubleText().contains("could not be cancelled");
                   },
                   [&](CMainWindow& window) {
                       EXPECT_TRUE(window.stateBar().wordText().contains("HALTING"));
                       EXPECT_FALSE(window.stateBar().haltButton().isEnabled());
                       disk.reset();
                       return true;
                   },
                   hasState(EDeskState::Halted),
                   [](CMainWindow& window) { return cell(window, "orders", "1", "state") == "cancelled"; },
                   [](CMainWindow& window) {
                       EXPECT_EQ(window.stateBar().troubleText(), "");
                       return true;
                   }}),
              0);
}

TEST_F(Halt, ResumeNamesTheOrderFilesThatWait) {
    EXPECT_EQ(run({trigger("halt"), hasState(EDeskState::Halted), handOver("24,0,9.50,600102,100\n"),
                   resumes(), hasState(EDeskState::Active)}),
              0);
    ASSERT_EQ(questions.size(), 2);
    EXPECT_TRUE(questions[1].contains("1 order file")) << questions[1].toStdString();
    EXPECT_TRUE(questions[1].contains(": 1 group")) << questions[1].toStdString();
}

TEST_F(Halt, EndOfAPauseAsksIfOrderFilesWait) {
    EXPECT_EQ(run({[](CMainWindow&) {
                       TC::setConfirmationPause(true);
                       return true;
                   },
                   hasState(EDeskState::Paused), handOver("24,0,9.50,600102,100\n"),
                   [](CMainWindow& window) {
                       window.stateBar().pauseButton().click();
                       return true;
                   },
                   hasState(EDeskState::Active),
                   [this](CMainWindow&) { return hasInJournal("\"action\":\"resume_intake\""); }}),
              0);
    ASSERT_EQ(questions.size(), 1);
    EXPECT_TRUE(questions[0].contains(": 1 group")) << questions[0].toStdString();
    EXPECT_TRUE(questions[0].contains("reads order files again")) << questions[0].toStdString();
    EXPECT_FALSE(questions[0].contains("ocket")) << "sockets did not wait";
}

TEST_F(Halt, EndedRunShowsHowManyOrdersAreLeftAndCanDiscardThem) {
    static const std::regex kLeft("([0-9]+) accepted order");
    const auto leftIn = [](const QString& text) {
        std::smatch found;
        const std::string words = text.toStdString();
        return std::regex_search(words, found, kLeft) ? std::stoi(found[1]) : -1;
    };
    const int result =
        run({handOver(manyOrders(5000)), hasRows("orders", 200), // of 100 commands
             [](CMainWindow& window) {
                 window.close();
                 return true;
             }},
            {[](CMainWindow& window) {
                if (!window.isVisible() || window.stateBar().state() != EDeskState::Ending) return false;
                EXPECT_TRUE(window.windowTitle().contains("ENDING"));
                EXPECT_TRUE(window.stateBar().troubleText().contains("orders that it has accepted"))
                    << window.stateBar().troubleText().toStdString();
                EXPECT_FALSE(window.action("add").isEnabled());
                window.stateBar().haltButton().click();
                return true;
            }});
    EXPECT_EQ(result, 1) << "orders were discarded";
    ASSERT_EQ(questions.size(), 2);
    EXPECT_GT(leftIn(questions[0]), 0) << questions[0].toStdString();
    EXPECT_LE(leftIn(questions[0]), 4900) << questions[0].toStdString();
    static const std::regex kUnplaced(R"("kind":"unplaced")");
    const std::string records = journal();
    const auto unplaced = std::distance(std::sregex_iterator(records.begin(), records.end(), kUnplaced),
                                        std::sregex_iterator());
    EXPECT_GT(unplaced, 0);
    EXPECT_GE(leftIn(questions[1]), unplaced) << questions[1].toStdString();
    EXPECT_EQ(commandsIn(records) + unplaced, 5000);
    EXPECT_TRUE(wasClosed) << "the next Ctrl-C discards";
}

TEST_F(Halt, AHaltedDeskThatIsClosedDeclinesWhatComesAndEnds) {
    EXPECT_EQ(run({handOver(manyOrders(1)), hasRows("orders", 2), trigger("halt"),
                   hasState(EDeskState::Halted), handOver(manyOrders(1)),
                   [](CMainWindow& window) {
                       window.close();
                       return true;
                   }}),
              0);
    EXPECT_TRUE(wasClosed);
    EXPECT_EQ(commandsIn(journal()), 1);
    EXPECT_TRUE(hasInJournal("\"reason\":\"window closed\""));
    EXPECT_EQ(folder.read("desk/orders/group.txt"), manyOrders(1)) << "it waits for the next start";
}

TEST_F(Halt, TheWindowIsThereBeforeTradingStarts) {
    bool isTrading = true;
    onWindow = [&](CMainWindow& window) {
        isTrading = TC::COrderService::instance()->hasRunning();
        EXPECT_TRUE(window.isVisible());
    };
    EXPECT_EQ(run({hasRows("strategies", 16)}), 0);
    EXPECT_FALSE(isTrading) << "rejections of the first second would not be counted";
    EXPECT_FALSE(wasClosed) << "a signal has ended it";
}

TEST_F(Halt, AnExceptionInTheCancelIsTriedAgain) {
    std::atomic<bool> throws{false};
    onMade = [&](CDesk& desk) {
        desk.setOrderListener([&](const CBrokerEvent&) {
            if (throws.exchange(false)) throw std::runtime_error("no memory");
        });
    };
    EXPECT_EQ(run({handOver("23,0,7.50,600104,2000\n"),
                   [this](CMainWindow&) { return hasInJournal("\"kind\":\"order\""); },
                   [&](CMainWindow& window) {
                       throws = true;
                       window.action("halt").trigger();
                       return true;
                   },
                   [](CMainWindow& window) { return window.stateBar().troubleText().contains("no memory"); },
                   hasState(EDeskState::Halted)}),
              0);
    EXPECT_FALSE(throws);
}

TEST_F(Halt, ARefusedStartMakesNoFolderAndAStartShowsItsNote) {
    const auto trigger = [](CMainWindow& window, const char* action) {
        CTableView& view = window.table("strategies");
        for (int row = 0; row < view.filter().rowCount(); ++row) {
            const QModelIndex index = view.filter().index(row, 0);
            // Unlike selectRow it does not use the keys that an earlier test has pressed.
            if (index.data(CRowModel::KeyRole) == "1")
                view.selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect |
                                                                  QItemSelectionModel::Rows);
        }
        ASSERT_EQ(view.selectedKeys(), QStringList("1"));
        window.action(action).trigger();
    };
    const auto start = [trigger](CMainWindow& window) { trigger(window, "start"); };
    EXPECT_EQ(run({hasRows("strategies", 16),
                   [&](CMainWindow& window) {
                       trigger(window, "stop");
                       EXPECT_TRUE(cell(window, "strategies", "1", "state").contains("stopped"));
                       TC::COrderStrategyParam& strategy = *TC::COrderService::instance()->getStrategy(1);
                       const QString source = strategy.m_strSignalSource;
                       strategy.m_strSignalSource = QString::fromStdString(folder.path("desk/new/a.txt"));
                       const QString account = strategy.m_strSelectedAccount;
                       strategy.m_strSelectedAccount = QStringLiteral("gone");
                       start(window);
                       EXPECT_TRUE(window.stateBar().noticeText().contains("账号"));
                       EXPECT_FALSE(folder.exists("desk/new"));
                       strategy.m_strSelectedAccount = account;
                       strategy.m_strSignalSource.clear();
                       start(window);
                       EXPECT_TRUE(window.stateBar().noticeText().contains("信号来源为空"))
                           << window.stateBar().noticeText().toStdString();
                       strategy.m_strSignalSource = source;
                       start(window);
                       EXPECT_EQ(window.stateBar().noticeText(), "");
                       EXPECT_TRUE(cell(window, "strategies", "1", "state").contains("runs"));
                       return true;
                   },
                   [](CMainWindow& window) {
                       CRowModel& messages = window.model("messages");
                       const int text = columnOf(messages.spec(), "text");
                       for (int row = 0; row < messages.rowCount(); ++row) {
                           if (messages.index(row, text).data().toString() == "Strategy 1: 代码不能为空")
                               return true;
                       }
                       return false;
                   }}),
              0);
}

TEST_F(Halt, RunningDeskShowsWhatTheLastOrderNeeded) {
    EXPECT_EQ(run({handOver("24,0,9.50,600102,100\n"), hasRows("orders", 1),
                   [](CMainWindow& window) {
                       static const std::regex kLast(
                           R"(queue 0 .*last order \d\d:\d\d:\d\d\.\d{3} \(\d+\.\d ms\))");
                       return std::regex_search(window.stateBar().factsText().toStdString(), kLast);
                   }}),
              0);
}

TEST_F(Halt, CancelByHandNamesItsReasonAndAsksTheBroker) {
    EXPECT_EQ(run({handOver("23,0,7.50,600104,2000\n"), hasRows("orders", 2),
                   [](CMainWindow& window) {
                       window.table("accounts").selectAll();
                       window.action("cancel_all").trigger();
                       return true;
                   },
                   [](CMainWindow& window) { return cell(window, "orders", "2", "state") == "cancelled"; },
                   [](CMainWindow& window) {
                       EXPECT_EQ(cell(window, "orders", "1", "reason"), "cancelled in the window");
                       return true;
                   }}),
              0);
    EXPECT_TRUE(hasInJournal("\"action\":\"cancel\",\"reason\":\"cancelled in the window\""));
}

TEST_F(Halt, AResumeThatIsNotFinishedAtTheEndIsGivenUp) {
    QVector<TC::COrderParam> batch;
    std::unique_ptr<TC::CConfirmationHold> hold;
    std::promise<void> release;
    std::shared_future<void> released(release.get_future());
    bool isResuming = false;
    const auto keepBatch = [&](CMainWindow& window) {
        const auto keep = [&](const QVector<TC::COrderParam>& orders) {
            if (!isPlaced) batch = orders;
            isPlaced = true;
        };
        QObject::connect(TC::COrderService::instance(), &TC::COrderService::sigPlaceOrders, &window, keep,
                         Qt::DirectConnection);
        return true;
    };
    const auto resumeLater = [&](CMainWindow& window) {
        hold = std::make_unique<TC::CConfirmationHold>(); // the resume waits for its end
        window.stateBar().haltButton().click();
        return true;
    };
    const auto queueTheEndOfTheHalt = [&](CMainWindow&) {
        const auto wait = [](std::shared_future<void>* future) { future->wait(); };
        TC::COrderService::instance()->holdUntilProcessed(
            std::shared_ptr<std::shared_future<void>>(&released, wait)); // the service's thread waits here
        TC::whenNoConfirmationIsOpen([&] { isResuming = true; });
        hold.reset();
        return true;
    };
    const auto closeWithABatchBehindIt = [&](CMainWindow& window) {
        if (!isResuming) return false;
        TC::COrderService::instance()->placeOrders(batch);
        window.close();
        return true;
    };
    const auto processTheRest = [&](CMainWindow& window) {
        if (window.stateBar().state() != EDeskState::Ending) return false;
        release.set_value();
        return true;
    };
    EXPECT_EQ(run({keepBatch, handOver(manyOrders(5)), hasPlaced(), hasRows("orders", 5), trigger("halt"),
                   hasState(EDeskState::Halted), resumeLater,
                   [this](CMainWindow&) { return hasInJournal("\"action\":\"resume\""); },
                   queueTheEndOfTheHalt, closeWithABatchBehindIt},
                  {processTheRest}),
              0);
    EXPECT_EQ(commandsIn(journal()), 5) << "those before the halt";
}

TEST_F(Halt, AQuestionThatIsOpenInTheEndDoesNotHoldItUp) {
    asksReally = true;
    bool isAnswered = false;
    const auto declineAll = [&] {
        isAnswered = true;
        while (CMainWindow::declineOpen()) {
        }
    };
    QTimer::singleShot(std::chrono::seconds(50), qApp, declineAll); // so that a failure ends
    EXPECT_EQ(run({handOver(manyOrders(3000)), hasRows("orders", 1)},
                  {[](CMainWindow& window) {
                       if (window.stateBar().state() != EDeskState::Ending) return false;
                       QTimer::singleShot(0, &window, [&window] { window.halt(); });
                       return true;
                   },
                   [](CMainWindow&) { return box() != nullptr; }}),
              0);
    EXPECT_FALSE(isAnswered) << "the end has waited for an answer";
    EXPECT_EQ(box(), nullptr);
    EXPECT_TRUE(hasInJournal("\"kind\":\"stopped\""));
    EXPECT_FALSE(hasInJournal("\"kind\":\"unplaced\""));
}

} // namespace
} // namespace desk
