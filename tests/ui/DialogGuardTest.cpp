// With the guard, a key or a click that was meant for something else does not confirm.
#include "orderservice/ui/RemarkLine.h"
#include "tests/support/FakeClock.h"
#include "tests/ui/DialogFixture.h"

#include <QKeyEvent>
#include <QTableView>

namespace {

using namespace TC;

class DialogGuard : public CDialogTest {
protected:
    void SetUp() override {
        CDialogTest::SetUp();
        host.switches.on.insert("mdl_order_confirm_guard");
    }
    /// The key goes where the user presses it: to the table, which has the focus.
    static void press(COrdersMessageBox& box, int key, bool isRepeat) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, QString(), isRepeat);
        QApplication::sendEvent(box.table()->table()->view(), &event);
    }
    static void pressEnter(COrdersMessageBox& box, bool isRepeat) { press(box, Qt::Key_Return, isRepeat); }
    static void pressEscape(COrdersMessageBox& box, bool isRepeat) { press(box, Qt::Key_Escape, isRepeat); }
    /// Moves the clock, and lets the guard's timer fire.
    void wait(COrdersMessageBox& box, double seconds) {
        clock.sleep(seconds);
        QTimerEvent event(box.guardTimer()->timerId());
        QApplication::sendEvent(box.guardTimer(), &event);
    }
    static bool isOpen(COrdersMessageBox& box) { return box.isVisible() && isConfirmationPauseSet(); }

    CFakeClock clock;
};

TEST_F(DialogGuard, SecondClickOfADoubleClickDoesNotAnswerTheNextBatch) {
    for (const bool isOk : {true, false}) {
        const auto click = isOk ? clickOk : clickCancel;
        EXPECT_EQ(show(orders, {},
                       [&](COrdersMessageBox& box) {
                           wait(box, 1);
                           click(box);
                       }),
                  isOk ? 1 : 0);
        bool isStillOpen = false;
        show(orders, {}, [&](COrdersMessageBox& box) {
            click(box);
            box.handleEvent(COrdersMessageBox::ButtonEvent, isOk ? 0 : 1);
            isStillOpen = isOpen(box);
            if (isStillOpen) box.close();
        });
        EXPECT_TRUE(isStillOpen) << isOk;
    }
}

TEST_F(DialogGuard, KeyForAQuestionAboveTheDialogDoesNotAnswerIt) {
    bool isStillOpen = false;
    EXPECT_EQ(show(orders, {},
                   [&](COrdersMessageBox& box) {
                       wait(box, 1);
                       box.restartGuard();
                       pressEnter(box, false);
                       pressEscape(box, false);
                       isStillOpen = isOpen(box) && !box.okButton()->isEnabled();
                       wait(box, 0.51);
                       pressEnter(box, false);
                   }),
              1);
    EXPECT_TRUE(isStillOpen);
}

TEST_F(DialogGuard, AnswersAreTakenHalfASecondAfterTheDialogIsShown) {
    bool isStillOpen = false;
    EXPECT_EQ(show(orders, {},
                   [&](COrdersMessageBox& box) {
                       wait(box, 0.49);
                       clickOk(box);
                       clickCancel(box);
                       pressEnter(box, false);
                       pressEscape(box, false);
                       isStillOpen = isOpen(box);
                       wait(box, 0.02);
                       clickOk(box);
                   }),
              1);
    EXPECT_TRUE(isStillOpen);
    for (const bool isKey : {true, false}) {
        EXPECT_EQ(show(orders, {},
                       [&](COrdersMessageBox& box) {
                           wait(box, 0.51);
                           isKey ? pressEscape(box, false) : clickCancel(box);
                           isStillOpen = box.isVisible();
                           if (isStillOpen) box.close();
                       }),
                  0);
        EXPECT_FALSE(isStillOpen);
        EXPECT_FALSE(isConfirmationPauseSet());
    }
}

TEST_F(DialogGuard, ButtonsAreDisabledUntilTheyWork) {
    EXPECT_EQ(show(orders, {},
                   [&](COrdersMessageBox& box) {
                       for (const double seconds : {0.0, 0.49}) {
                           wait(box, seconds);
                           EXPECT_FALSE(box.okButton()->isEnabled()) << seconds;
                           EXPECT_FALSE(box.cancelButton()->isEnabled()) << seconds;
                       }
                       EXPECT_TRUE(box.guardTimer()->isActive());
                       EXPECT_TRUE(box.guardTimer()->isSingleShot());
                       EXPECT_EQ(box.guardTimer()->interval(), 500);
                       wait(box, 0.02);
                       EXPECT_TRUE(box.okButton()->isEnabled());
                       EXPECT_TRUE(box.cancelButton()->isEnabled());
                       EXPECT_TRUE(box.okButton()->isDefault());
                       clickOk(box);
                   }),
              1);
}

TEST_F(DialogGuard, KeyThatIsHeldDownNeverAnswers) {
    bool isStillOpen = false;
    EXPECT_EQ(show(orders, {},
                   [&](COrdersMessageBox& box) {
                       wait(box, 5);
                       pressEscape(box, true);
                       pressEnter(box, true);
                       isStillOpen = isOpen(box);
                       pressEnter(box, false);
                   }),
              1);
    EXPECT_TRUE(isStillOpen);
}

TEST_F(DialogGuard, EnterInTheRemarkLineEndsTheRemarkOnly) {
    bool isStillOpen = false;
    EXPECT_EQ(show(orders, {},
                   [&](COrdersMessageBox& box) {
                       wait(box, 1);
                       box.remarkEdit()->setFocus();
                       QTest::keyClicks(box.remarkEdit(), QStringLiteral("text"));
                       QTest::keyClick(box.remarkEdit(), Qt::Key_Return);
                       isStillOpen = isOpen(box);
                       if (!isStillOpen) return;
                       EXPECT_EQ(box.focusWidget(), box.table()->table()->view());
                       QTest::keyClick(box.focusWidget(), Qt::Key_Return);
                   }),
              1);
    EXPECT_TRUE(isStillOpen);
    EXPECT_EQ(COrdersMessageBox::getRemark(3), "text");
    host.switches.on.erase("mdl_order_confirm_guard");
    EXPECT_EQ(show(orders, {},
                   [&](COrdersMessageBox& box) {
                       box.remarkEdit()->setFocus();
                       QTest::keyClick(box.remarkEdit(), Qt::Key_Return);
                   }),
              1);
}

TEST_F(DialogGuard, FrameClosesAtOnce) {
    EXPECT_EQ(show(orders, {}, [](COrdersMessageBox& box) { box.close(); }), 0);
    EXPECT_TRUE(isConfirmationPauseSet());
}

TEST_F(DialogGuard, WithoutItAllAnswersAreTakenAtOnce) {
    host.switches.on.erase("mdl_order_confirm_guard");
    EXPECT_EQ(show(orders, {}, [&](COrdersMessageBox& box) { pressEnter(box, true); }), 1);
    EXPECT_EQ(show(orders, {}, clickOk), 1);
    EXPECT_EQ(show(orders, {}, clickCancel), 0);
    EXPECT_FALSE(isConfirmationPauseSet());
    EXPECT_EQ(show(orders, {}, [&](COrdersMessageBox& box) { pressEscape(box, true); }), 0);
    EXPECT_FALSE(isConfirmationPauseSet());
}

} // namespace
