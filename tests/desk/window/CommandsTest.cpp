// The commands of the main window with a control that writes down what it is asked for.
#include "desk/window/MainWindow.h"
#include "desk/window/StrategyDialog.h"

#include "tests/desk/window/FakeControl.h"
#include "tests/support/TempFolder.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QSettings>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

using namespace desk;

class Commands : public testing::Test {
protected:
    Commands() {
        control.add(1, true);
        control.add(2, false);
        control.add(3, true);
        window.setAsk([this](const QString&, const QString& text, const QString&) {
            questions.append(text);
            if (onQuestion) onQuestion();
            return answer;
        });
        window.show();
        window.takeFeed();
    }
    void addOrder(int id, const char* account, EOrderStatus status = EOrderStatus::Working, int filled = 0) {
        CBrokerEvent event;
        event.m_order.m_nId = id;
        event.m_order.m_nTask = id / 10;
        event.m_order.m_strAccount = account;
        event.m_order.m_strStock = "SH600104";
        event.m_order.m_nVolume = 1000;
        event.m_order.m_nFilled = filled;
        event.m_order.m_nPrice = 80200;
        event.m_order.m_eStatus = status;
        feed.addEvent(event);
        window.takeFeed();
    }
    CTableView& strategies() const { return window.table("strategies"); }

    CTempFolder folder;
    QSettings settings{QString::fromStdString(folder.path("layout.ini")), QSettings::IniFormat};
    CFakeControl control;
    CWindowFeed feed;
    CMainWindow window{QString::fromStdString(folder.path("desk")), control, feed, settings};
    QStringList questions;
    bool answer = true;
    std::function<void()> onQuestion;
};

TEST_F(Commands, EnterInAFilterFieldStartsNothing) {
    strategies().filterHeader().showFilters(true);
    strategies().selectRow(1);
    QLineEdit* field = strategies().filterHeader().field(0);
    ASSERT_NE(field, nullptr);
    field->setFocus();
    QTest::keyClick(field, Qt::Key_Return);
    QTest::keyClick(field, Qt::Key_Enter);
    EXPECT_EQ(control.m_calls, QStringList());
}

TEST_F(Commands, EnterStartsAndSpaceStopsTheSelectedOnesThatItFits) {
    strategies().selectAll();
    QTest::keyClick(&strategies(), Qt::Key_Return);
    EXPECT_EQ(control.m_calls, QStringList{"start 2"});
    control.m_calls.clear();
    QTest::keyClick(&strategies(), Qt::Key_Return);
    EXPECT_EQ(control.m_calls, QStringList());
    strategies().selectAll();
    QTest::keyClick(&strategies(), Qt::Key_Space);
    EXPECT_EQ(control.m_calls, (QStringList{"stop 1", "stop 2", "stop 3"}));
}

/// A table that gets the focus has a current row that is not selected.
TEST_F(Commands, TheKeyOfAPanelSelectsARowForTheNextKey) {
    QApplication::setActiveWindow(&window);
    strategies().setFocus();
    ASSERT_TRUE(strategies().currentIndex().isValid());
    ASSERT_EQ(strategies().selectedKeys(), QStringList());
    window.action("view_strategies").trigger();
    EXPECT_EQ(strategies().selectedKeys(), QStringList{"1"});
    strategies().selectRow(1);
    window.action("view_strategies").trigger();
    QTest::keyClick(&strategies(), Qt::Key_Return);
    EXPECT_EQ(control.m_calls, QStringList{"start 2"});
}

TEST_F(Commands, AHeldKeyIsOneCommand) {
    strategies().selectRow(1);
    control.m_failure = "refused";
    QTest::keyClick(&strategies(), Qt::Key_Return);
    for (int i = 0; i < 5; ++i) {
        QKeyEvent again(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QString(), true);
        QCoreApplication::sendEvent(&strategies(), &again);
    }
    EXPECT_EQ(control.m_calls, QStringList{"start 2"});
    EXPECT_FALSE(window.action("remove").autoRepeat());
}

TEST_F(Commands, OnlyTheLeftButtonActivates) {
    const QPoint place = strategies().visualRect(strategies().filter().index(1, 0)).center();
    QTest::mouseDClick(strategies().viewport(), Qt::RightButton, {}, place);
    EXPECT_EQ(control.m_calls, QStringList());
    QTest::mouseDClick(strategies().viewport(), Qt::LeftButton, {}, place);
    EXPECT_EQ(control.m_calls, QStringList{"start 2"});
}

TEST_F(Commands, AStrategyThatIsGoneAfterAQuestionIsNotStarted) {
    for (const int id : {2, 4})
        control.add(id, false);
    folder.write("two.txt", "1\n");
    control.m_strategies[2].m_strSignalSource = QString::fromStdString(folder.path("two.txt"));
    window.takeFeed();
    onQuestion = [&] { control.m_strategies.remove(4); };
    strategies().selectAll();
    window.action("start").trigger();
    EXPECT_EQ(control.m_calls, QStringList{"start 2"});
    EXPECT_EQ(window.stateBar().noticeText(), "Strategy 4: it is not there any more");
}

TEST_F(Commands, TheStartOfATableThatIsThereAsksFirst) {
    folder.write("table.dbf", "rows");
    control.m_strategies[2].m_eStrategyType = TC::EOrderStrategyType::BatchPending;
    control.m_strategies[2].m_strSignalSource = QString::fromStdString(folder.path("table.dbf"));
    strategies().selectRow(1);
    answer = false;
    window.action("start").trigger();
    ASSERT_EQ(questions.size(), 1);
    EXPECT_TRUE(questions[0].endsWith("The start reads it and sends its orders."));
    EXPECT_EQ(control.m_calls, QStringList());
}

TEST_F(Commands, ARunningStrategyIsStoppedBeforeItIsRemoved) {
    strategies().selectAll();
    window.action("remove").trigger();
    ASSERT_EQ(questions.size(), 1);
    EXPECT_EQ(questions[0], "Remove 3 strategies? Channels: 1, 2, 3\n2 of them run and are stopped first.");
    EXPECT_EQ(control.m_calls, (QStringList{"stop 1", "remove 1", "remove 2", "stop 3", "remove 3"}));
}

TEST_F(Commands, ARefusalWithoutAReasonHasOne) {
    control.m_failure = "-1";
    strategies().selectRow(1);
    window.action("start").trigger();
    EXPECT_EQ(window.stateBar().noticeText(),
              "Strategy 2: it cannot be done now; the strategy may have been changed meanwhile");
}

TEST_F(Commands, ANewStrategyHasTheDefaultSettingsOfTheUser) {
    TC::COrderSetting setting;
    setting.m_ePriceType = TC::EPriceType::NoQuote;
    setting.m_dFirstLimit = 12.5;
    control.m_config.defaultSettings[TC::defaultForSlot(TC::ESettingSlot::Stock)] = setting;
    CAccountEntry account;
    account.key = "A1";
    account.broker = TC::EQDBrokerType::Stock;
    control.m_config.accounts = {account};
    QTimer::singleShot(0, &window, [] {
        auto* dialog = qobject_cast<CStrategyDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        for (QComboBox* box : dialog->findChildren<QComboBox*>()) {
            if (box->findText("A1 (account)") >= 0) box->setCurrentText("A1 (account)");
        }
        dialog->accept();
        dialog->reject();
    });
    window.action("add").trigger();
    EXPECT_EQ(control.m_calls, QStringList{"add"});
    EXPECT_EQ(control.m_added.m_stockSetting.m_ePriceType, TC::EPriceType::NoQuote);
    EXPECT_EQ(control.m_added.m_stockSetting.m_dFirstLimit, 12.5);
    EXPECT_EQ(control.m_added.m_strSelectedAccount, "A1");
}

TEST_F(Commands, TheQuestionOfACancelNamesTheOrders) {
    addOrder(11, "A1");
    addOrder(12, "A2", EOrderStatus::PartFilled, 400);
    addOrder(13, "A2", EOrderStatus::Filled, 1000);
    window.table("orders").selectAll();
    answer = false;
    window.action("cancel").trigger();
    ASSERT_EQ(questions.size(), 1);
    EXPECT_EQ(questions[0], "Cancel 2 waiting orders of A1, A2?\nA2: buy SH600104, 600 left at 8.020\n"
                            "A1: buy SH600104, 1,000 left at 8.020");
    EXPECT_EQ(control.m_calls, QStringList());
    window.table("orders").selectRow(2);
    answer = true;
    window.action("cancel").trigger();
    EXPECT_TRUE(questions[1].startsWith("Cancel 1 waiting order of A1?")) << questions[1].toStdString();
    EXPECT_EQ(control.m_calls, QStringList{"cancel A1 11"});
}

TEST_F(Commands, TheTotalIsNotAnAccountWhoseOrdersAreCancelled) {
    auto books = std::make_shared<CBooks>();
    CValuedAccount account;
    account.m_funds.m_strAccount = "A1";
    books->m_accounts.push_back(account);
    feed.setBooks(books);
    addOrder(11, "A1");
    window.table("accounts").selectRow(0);
    window.action("cancel_all").trigger();
    EXPECT_EQ(questions, QStringList());
    window.table("accounts").selectAll();
    window.action("cancel_all").trigger();
    ASSERT_EQ(questions.size(), 1);
    EXPECT_EQ(questions[0], "Cancel all waiting orders of A1? The tables show 1 of them.");
    EXPECT_EQ(control.m_calls, QStringList{"cancel all of A1"});
}

/// While the journal is broken, the tables do not show what happens.
TEST_F(Commands, ACancelAsksTheBrokerIfTheTablesMayBeBehind) {
    addOrder(11, "A1", EOrderStatus::Filled, 1000);
    addOrder(21, "A2");
    const auto cancel = [&](const char* table, const char* action) {
        window.table(table).selectAll();
        window.action(action).trigger();
    };
    window.table("orders").selectRow(1);
    window.action("cancel").trigger();
    EXPECT_EQ(questions, QStringList());
    control.m_status.m_strJournalFailure = "no room on the disk";
    cancel("orders", "cancel");
    cancel("tasks", "cancel_task");
    ASSERT_EQ(questions.size(), 2);
    EXPECT_EQ(questions[0], "Cancel those of the 2 selected orders that still wait? The tables show 1 of "
                            "them, but they may be behind.");
    EXPECT_EQ(questions[1], "Cancel the orders of the 2 selected tasks that still wait? The tables show 1 of "
                            "them, but they may be behind.");
    EXPECT_EQ(control.m_calls,
              (QStringList{"cancel A2 21", "cancel A1 11", "cancel task 1", "cancel task 2"}));
}

TEST_F(Commands, OneIsNotSeveral) {
    control.m_strategies.remove(3);
    control.m_strategies.remove(2);
    ++control.m_nRevision;
    addOrder(11, "A1");
    window.halt();
    control.m_status.m_bHalted = true;
    window.halt();
    ASSERT_EQ(questions.size(), 2);
    EXPECT_TRUE(questions[0].contains("cancels 1 waiting order of 1 account.")) << questions[0].toStdString();
    EXPECT_TRUE(questions[1].contains("1 strategy runs.")) << questions[1].toStdString();
    EXPECT_TRUE(window.stateBar().factsText().startsWith("1 of 1 strategy running"));
}

TEST_F(Commands, TheNoticeAndThePauseEndFromTheMenu) {
    window.action("resume_intake").trigger();
    EXPECT_EQ(control.m_calls, QStringList()) << "nothing is paused";
    control.m_status.m_bConfirmationPause = true;
    window.takeFeed();
    window.action("resume_intake").trigger();
    EXPECT_EQ(control.m_calls, QStringList{"end pause"});
    window.stateBar().setNotice("a notice");
    window.action("close_notice").trigger();
    EXPECT_EQ(window.stateBar().noticeText(), "");
}

/// The menu of the table has the focus of the keyboard, so everything in it is reached by keys.
TEST_F(Commands, ATableIsSortedByKeys) {
    addOrder(11, "A2");
    addOrder(12, "A1");
    const auto chooses = [&](const QString& title) {
        QTimer::singleShot(0, &window, [title] {
            auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            ASSERT_NE(menu, nullptr);
            const QList<QMenu*> submenus = menu->findChildren<QMenu*>();
            ASSERT_EQ(submenus.size(), 1);
            for (QAction* action : submenus[0]->actions()) {
                if (action->text() == title) action->trigger();
            }
            menu->close();
        });
        QApplication::setActiveWindow(&window); // without a screen nobody does it
        window.action("view_orders").trigger();
        window.action("table_menu").trigger();
    };
    const auto first = [&] {
        return window.table("orders").filter().index(0, 0).data(CRowModel::KeyRole).toString().toStdString();
    };
    EXPECT_EQ(first(), "12");
    chooses("Order");
    EXPECT_EQ(first(), "11");
    chooses("Order");
    EXPECT_EQ(first(), "12") << "the second time it sorts down";
    chooses("Account");
    EXPECT_EQ(first(), "12");
}

TEST_F(Commands, TheQuestionOfManyCancelsNamesTheAccounts) {
    for (int id = 11; id <= 16; ++id)
        addOrder(id, "A1");
    window.table("tasks").selectAll();
    window.action("cancel_task").trigger();
    ASSERT_EQ(questions.size(), 1);
    EXPECT_EQ(questions[0], "1 task: Cancel 6 waiting orders of A1?");
    EXPECT_EQ(control.m_calls, QStringList{"cancel task 1"});
}

} // namespace
