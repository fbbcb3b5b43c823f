#include "orderservice/ui/OrdersConfirmer.h"

#include "orderservice/gates/IntakePause.h"
#include "orderservice/gates/OrderConfirmer.h"
#include "orderservice/ui/RemarkLine.h"
#include "tests/ui/DialogFixture.h"

#include <QDialog>

#include <vector>

namespace {

using namespace TC;

CConfirmQuestion makeQuestion() {
    CConfirmQuestion question;
    question.m_strTitle = QStringLiteral("标题");
    question.m_rows = {{0, makeRecord(100)}, {2, makeRecord(200)}};
    question.m_remarks = {{0, "first"}, {2, "second"}};
    return question;
}

class Confirmer : public CDialogTest {
protected:
    CConfirmAnswer ask(const std::function<void(COrdersMessageBox&)>& act) {
        QTimer::singleShot(0, [&] {
            auto* box = qobject_cast<COrdersMessageBox*>(QApplication::activeModalWidget());
            if (box != nullptr) act(*box);
        });
        return askForConfirmation(makeQuestion());
    }
    void SetUp() override {
        CDialogTest::SetUp();
        setOrderConfirmer(&confirmer);
    }
    void TearDown() override {
        setOrderConfirmer(nullptr);
        CDialogTest::TearDown();
    }
    COrdersConfirmer confirmer;
};

TEST_F(Confirmer, AnswerHasTheRemarksByTheIndexOfTheOrder) {
    const CConfirmAnswer answer = ask([](COrdersMessageBox& box) {
        box.remarkEdit()->clear();
        QTest::keyClicks(box.remarkEdit(), QStringLiteral("changed"));
        clickOk(box);
    });
    EXPECT_EQ(answer.m_eResult, EConfirmResult::Accepted);
    EXPECT_EQ(answer.m_remarks, (std::map<int, std::string>{{0, "changed"}, {2, "second"}}));
}

TEST_F(Confirmer, EveryOtherEndDeclines) {
    EXPECT_EQ(ask(clickCancel).m_eResult, EConfirmResult::Declined);
    EXPECT_EQ(ask([](COrdersMessageBox& box) { box.close(); }).m_eResult, EConfirmResult::Declined);
    EXPECT_EQ(ask([](COrdersMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); }).m_eResult,
              EConfirmResult::Declined);
}

TEST_F(Confirmer, EndWithoutTheUserIsNoAnswer) {
    CConfirmAnswer answer = ask([](COrdersMessageBox& box) { box.hide(); });
    EXPECT_EQ(answer.m_eResult, EConfirmResult::NotAsked);
    EXPECT_EQ(answer.m_strReason, QStringLiteral("确认窗口已被关闭, 无人确认"));
    auto* parent = new QWidget;
    parent->show();
    QApplication::setActiveWindow(parent);
    answer = ask([&](COrdersMessageBox& box) {
        EXPECT_EQ(box.parentWidget(), parent);
        delete parent;
    });
    EXPECT_EQ(answer.m_eResult, EConfirmResult::NotAsked);
    EXPECT_FALSE(COrdersMessageBox::isOpen());
}

TEST_F(Confirmer, EndOfTheApplicationIsNoAnswer) {
    CConfirmAnswer answer;
    QTimer::singleShot(0, [&] { answer = ask([](COrdersMessageBox&) { QCoreApplication::quit(); }); });
    QCoreApplication::exec();
    EXPECT_EQ(answer.m_eResult, EConfirmResult::NotAsked);
}

TEST_F(Confirmer, NobodyIsAskedWhileADialogIsOpen) {
    CConfirmAnswer second;
    show(orders, {}, [&](COrdersMessageBox& box) {
        second = confirmer.confirm(makeQuestion());
        clickOk(box);
    });
    EXPECT_EQ(second.m_eResult, EConfirmResult::NotAsked);
    EXPECT_EQ(second.m_strReason, QStringLiteral("另一批指令正在确认"));
}

TEST_F(Confirmer, BatchesWaitUntilADialogOfTheHostIsClosed) {
    std::vector<QString> order;
    show(orders, {}, [&](COrdersMessageBox& box) {
        EXPECT_TRUE(isConfirmationOpen());
        whenNoConfirmationIsOpen([&] { order.push_back(QStringLiteral("batch")); });
        QCoreApplication::processEvents();
        order.push_back(QStringLiteral("answer"));
        clickOk(box);
    });
    EXPECT_FALSE(isConfirmationOpen());
    QCoreApplication::processEvents();
    EXPECT_EQ(order, (std::vector<QString>{QStringLiteral("answer"), QStringLiteral("batch")}));
}

TEST_F(Confirmer, WithdrawnQuestionClosesItsDialogAndEndsThePause) {
    const CConfirmAnswer answer = ask([](COrdersMessageBox& box) {
        EXPECT_TRUE(isConfirmationPauseSet());
        withdrawConfirmation(openConfirmation());
        EXPECT_FALSE(box.isVisible());
    });
    EXPECT_EQ(answer.m_eResult, EConfirmResult::NotAsked);
    EXPECT_FALSE(COrdersMessageBox::isOpen());
    EXPECT_FALSE(isConfirmationPauseSet());
    EXPECT_TRUE(host.messageTexts().empty());
}

TEST_F(Confirmer, WithdrawnQuestionLeavesAnEarlierPause) {
    setConfirmationPause(true);
    ask([](COrdersMessageBox&) { withdrawConfirmation(openConfirmation()); });
    EXPECT_TRUE(isConfirmationPauseSet());
    setConfirmationPause(false);
}

TEST_F(Confirmer, DialogOfTheHostIsNotWithdrawn) {
    EXPECT_EQ(show(orders, {},
                   [](COrdersMessageBox& box) {
                       withdrawConfirmation(openConfirmation());
                       EXPECT_TRUE(box.isVisible());
                       clickOk(box);
                   }),
              1);
}

TEST_F(Confirmer, WithdrawingWithoutAQuestionDoesNothing) {
    withdrawConfirmation(openConfirmation());
    COrdersMessageBox::withdraw();
    EXPECT_EQ(ask(clickCancel).m_eResult, EConfirmResult::Declined);
}

TEST_F(Confirmer, ParentIsTheActiveWindow) {
    QWidget window;
    window.show();
    QApplication::setActiveWindow(&window);
    const QWidget* parent = nullptr;
    ask([&](COrdersMessageBox& box) {
        parent = box.parentWidget();
        clickOk(box);
    });
    EXPECT_EQ(parent, &window);
}

const QWidget* parentOfDialog(COrdersConfirmer& confirmer) {
    const QWidget* parent = nullptr;
    QTimer::singleShot(0, [&] {
        auto* box = qobject_cast<COrdersMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        parent = box->parentWidget();
        box->reject();
    });
    confirmer.confirm(makeQuestion());
    return parent;
}

TEST_F(Confirmer, ParentIsTheWindowThatADialogBelongsTo) {
    QWidget window;
    QWidget inner(&window);
    window.show();
    QDialog dialog(&inner);
    dialog.show();
    QApplication::setActiveWindow(&dialog);
    EXPECT_EQ(parentOfDialog(confirmer), &window);
}

TEST_F(Confirmer, ParentIsTheLargestWindowIfNoneIsActive) {
    QWidget small, large, hidden;
    small.resize(100, 100);
    large.resize(500, 400);
    hidden.resize(900, 900);
    small.show();
    large.show();
    QApplication::setActiveWindow(nullptr);
    EXPECT_EQ(parentOfDialog(confirmer), &large);
}

TEST_F(Confirmer, ParentIsNoMinimizedWindow) {
    QWidget small, minimized;
    small.resize(100, 100);
    minimized.resize(500, 400);
    small.show();
    minimized.showMinimized();
    QApplication::setActiveWindow(nullptr);
    EXPECT_EQ(parentOfDialog(confirmer), &small);
}

} // namespace
