// The halt and the end of the desk while a confirmation or a question is open.
#include "orderservice/gates/IntakePause.h"
#include "orderservice/ui/OrdersConfirmWidget.h"
#include "orderservice/ui/OrdersMessageBox.h"
#include "tests/desk/window/HaltFolder.h"

#include <QAction>
#include <QHeaderView>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QTimer>

#include <algorithm>

namespace desk {
namespace {

/// The user of the folder confirms his orders in the dialog.
class HaltConfirming : public CHaltFolder {
protected:
    void SetUp() override {
        makeFolder(true);
        // Without the guard no test must wait until 确定 is accepted.
        const std::string text = folder.read("desk/desk.toml");
        const std::string head = "[switches]";
        ASSERT_NE(text.find(head), std::string::npos);
        folder.write("desk/desk.toml", std::string(text).insert(text.find(head) + head.size(),
                                                                "\nmdl_order_confirm_guard = false\n"));
    }

    static TC::COrdersMessageBox* dialog() {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            auto* found = qobject_cast<TC::COrdersMessageBox*>(window);
            if (found != nullptr && found->isVisible()) return found;
        }
        return nullptr;
    }
    static bool isOpen(CMainWindow&) { return dialog() != nullptr; }
    static bool agrees(CMainWindow&) {
        QMessageBox* const open = box();
        if (open == nullptr) return false;
        const QList<QAbstractButton*> buttons = open->buttons();
        const auto yes = std::find_if(buttons.begin(), buttons.end(), [&](QAbstractButton* button) {
            return open->buttonRole(button) == QMessageBox::AcceptRole;
        });
        (*yes)->click(); // the box is gone afterwards
        return true;
    }
    CWindowFolder::CStep isRecorded(const char* text) {
        return [this, text](CMainWindow&) { return hasInJournal(text); };
    }
};

constexpr const char* kBatch = "23,0,8.02,600104,1000\n";

TEST_F(HaltConfirming, ColumnsOfTheDialogAreKeptForTheNextOne) {
    constexpr int kWide = 217;
    const auto header = [] { return dialog()->findChild<QTableView*>()->horizontalHeader(); };
    const auto decline = [](CMainWindow&) {
        dialog()->cancelButton()->click();
        return true;
    };
    const auto isClosed = [](CMainWindow&) { return dialog() == nullptr; };
    EXPECT_EQ(run({handOver(kBatch), isOpen,
                   [&](CMainWindow&) {
                       header()->resizeSection(3, kWide);
                       return true;
                   },
                   decline, isClosed, handOver(kBatch), isOpen,
                   [&](CMainWindow&) {
                       EXPECT_EQ(header()->sectionSize(3), kWide);
                       return true;
                   },
                   decline, isClosed}),
              0);
}

TEST_F(HaltConfirming, DialogOfTheWindowSendsTheBatch) {
    EXPECT_EQ(run({handOver(kBatch), isOpen, hasState(EDeskState::Paused),
                   [](CMainWindow& window) {
                       EXPECT_EQ(dialog()->parentWidget(), &window);
                       dialog()->okButton()->click();
                       return true;
                   },
                   hasRows("fills", 1),
                   [](CMainWindow& window) {
                       CRowModel& messages = window.model("messages");
                       for (int row = 0; row < messages.rowCount(); ++row) {
                           for (int column = 0; column < messages.columnCount(); ++column) {
                               const QString text = messages.index(row, column).data().toString();
                               if (text.contains(QLatin1String("accepted by the user"))) return true;
                           }
                       }
                       return false;
                   }}),
              0);
    EXPECT_TRUE(hasInJournal("\"event\":\"accepted\",\"by\":\"user\""));
}

TEST_F(HaltConfirming, ButtonInTheDialogHaltsAndDeclinesTheBatch) {
    EXPECT_EQ(run({handOver(kBatch), isOpen,
                   [](CMainWindow&) {
                       auto* halt = dialog()->findChild<QPushButton*>(QStringLiteral("halt"));
                       if (halt == nullptr) return false;
                       QCoreApplication::sendPostedEvents(dialog(), QEvent::LayoutRequest);
                       EXPECT_GE(dialog()->table()->height(), dialog()->table()->tableHeight())
                           << "the button has room of its own";
                       EXPECT_FALSE(halt->hasFocus() || halt->isDefault());
                       halt->click();
                       return true;
                   },
                   hasState(EDeskState::Halted),
                   [](CMainWindow&) {
                       EXPECT_EQ(dialog(), nullptr);
                       return true;
                   }}),
              0);
    EXPECT_TRUE(hasInJournal("\"event\":\"declined\",\"by\":\"halt\""));
    EXPECT_FALSE(hasInJournal("未按按钮关闭")) << "nobody has closed it";
    EXPECT_FALSE(hasInJournal("\"kind\":\"command\""));
}

TEST_F(HaltConfirming, KeyHaltsWhileTheDialogIsOpen) {
    EXPECT_EQ(run({handOver(kBatch), isOpen,
                   [](CMainWindow&) {
                       QTest::keyClick(dialog(), Qt::Key_H, Qt::ControlModifier);
                       return true;
                   },
                   hasState(EDeskState::Halted),
                   [](CMainWindow& window) {
                       QTest::keyRelease(&window, Qt::Key_Control); // for the tests that follow
                       EXPECT_EQ(QApplication::keyboardModifiers(), Qt::NoModifier);
                       return true;
                   }}),
              0);
    EXPECT_TRUE(hasInJournal("\"event\":\"declined\",\"by\":\"halt\""));
}

TEST_F(HaltConfirming, NobodyIsAskedWhileTheQuestionOfTheHaltIsOpenOrAfterIt) {
    asksReally = true;
    std::atomic<bool> isChecked{false};
    EXPECT_EQ(run({watchBatches(),
                   [](CMainWindow& window) {
                       QTimer::singleShot(0, &window, [&window] { window.action("halt").trigger(); });
                       return true;
                   },
                   [](CMainWindow&) { return box() != nullptr; }, handOver(kBatch), hasPlaced(),
                   [&](CMainWindow&) {
                       noteProcessed(isChecked);
                       return true;
                   },
                   [&](CMainWindow& window) {
                       if (!isChecked) return false;
                       // The checked batch was queued for this thread before.
                       QCoreApplication::sendPostedEvents(nullptr, QEvent::MetaCall);
                       EXPECT_EQ(dialog(), nullptr);
                       EXPECT_NE(window.stateBar().state(), EDeskState::Paused);
                       return true;
                   },
                   agrees, hasState(EDeskState::Halted)}),
              0);
    EXPECT_TRUE(hasInJournal("\"event\":\"not_asked\",\"by\":\"nobody\""));
    EXPECT_FALSE(hasInJournal("\"event\":\"accepted\""));
    EXPECT_FALSE(hasInJournal("\"kind\":\"command\""));
}

TEST_F(HaltConfirming, ResumeEndsThePauseOfADialogThatTheHaltHasClosed) {
    EXPECT_EQ(run({handOver(kBatch), isOpen,
                   [](CMainWindow& window) {
                       window.halt();
                       return true;
                   },
                   hasState(EDeskState::Halted), resumes(), hasState(EDeskState::Active)}),
              0);
    EXPECT_FALSE(TC::isConfirmationPauseSet());
}

TEST_F(HaltConfirming, StopDeclinesTheBatchOfAnOpenDialog) {
    EXPECT_EQ(run({handOver(kBatch), isOpen, handOver(kBatch)}), 0);
    EXPECT_TRUE(hasInJournal("\"event\":\"declined\",\"by\":\"end\""));
    EXPECT_FALSE(hasInJournal("未按按钮关闭")) << "nobody has closed it";
    EXPECT_EQ(folder.read("desk/orders/group.txt"), kBatch) << "it waits for the next start";
    EXPECT_TRUE(hasInJournal("\"reason\":\"signal\""));
    EXPECT_TRUE(folder.exists("layout.ini"));
}

TEST_F(HaltConfirming, StopClosesAQuestion) {
    asksReally = true;
    EXPECT_EQ(run({[](CMainWindow& window) {
                       QTimer::singleShot(0, &window, [&window] { window.action("halt").trigger(); });
                       return true;
                   },
                   [](CMainWindow&) { return box() != nullptr; }}),
              0);
    EXPECT_TRUE(hasInJournal("\"reason\":\"signal\""));
    EXPECT_FALSE(hasInJournal("\"kind\":\"control\""));
}

} // namespace
} // namespace desk
