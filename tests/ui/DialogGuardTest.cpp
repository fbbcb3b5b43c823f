// With the guard, a key or a click that was meant for something else does not confirm.
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
    static void pressEnter(COrdersMessageBox& box, bool isRepeat) {
        QKeyEvent event(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"), isRepeat);
        QApplication::sendEvent(box.table()->table()->view(), &event);
    }

    CFakeClock clock;
};

TEST_F(DialogGuard, SecondClickOfADoubleClickDoesNotConfirmTheNextBatch) {
    EXPECT_EQ(show(orders, {},
                   [&](COrdersMessageBox& box) {
                       clock.sleep(1);
                       clickOk(box);
                   }),
              1);
    bool isOpen = false;
    EXPECT_EQ(show(orders, {},
                   [&](COrdersMessageBox& box) {
                       clickOk(box);
                       isOpen = box.isVisible() && isConfirmationPauseSet();
                       clickCancel(box);
                   }),
              0);
    EXPECT_TRUE(isOpen);
}

TEST_F(DialogGuard, OkConfirmsHalfASecondAfterTheDialogIsShown) {
    bool isOpen = false;
    EXPECT_EQ(show(orders, {},
                   [&](COrdersMessageBox& box) {
                       clock.sleep(0.49);
                       clickOk(box);
                       pressEnter(box, false);
                       isOpen = box.isVisible();
                       clock.sleep(0.02);
                       clickOk(box);
                   }),
              1);
    EXPECT_TRUE(isOpen);
}

TEST_F(DialogGuard, HeldEnterNeverConfirms) {
    bool isOpen = false;
    EXPECT_EQ(show(orders, {},
                   [&](COrdersMessageBox& box) {
                       clock.sleep(5);
                       pressEnter(box, true);
                       isOpen = box.isVisible();
                       pressEnter(box, false);
                   }),
              1);
    EXPECT_TRUE(isOpen);
}

TEST_F(DialogGuard, CancelAndEscapeAreAtOnce) {
    EXPECT_EQ(show(orders, {}, clickCancel), 0);
    EXPECT_FALSE(isConfirmationPauseSet());
    EXPECT_EQ(show(orders, {}, [](COrdersMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); }), 0);
    EXPECT_FALSE(isConfirmationPauseSet());
}

TEST_F(DialogGuard, WithoutItOkConfirmsAtOnce) {
    host.switches.on.erase("mdl_order_confirm_guard");
    EXPECT_EQ(show(orders, {}, [&](COrdersMessageBox& box) { pressEnter(box, true); }), 1);
    EXPECT_EQ(show(orders, {}, clickOk), 1);
}

} // namespace
