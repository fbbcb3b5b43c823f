// Batches that need a confirmation while the window asks something else.
#include "orderservice/ui/OrdersMessageBox.h"
#include "tests/desk/window/WindowFolder.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>

#include <gtest/gtest.h>

namespace desk {
namespace {

class HeldBatch : public CWindowFolder {
protected:
    void SetUp() override {
        makeFolder(true);
        asksReally = true;
    }

    template<typename CBox>
    static CBox* open() {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            auto* found = qobject_cast<CBox*>(window);
            if (found != nullptr && found->isVisible()) return found;
        }
        return nullptr;
    }
    template<typename CBox>
    static bool isOpen(CMainWindow&) {
        return open<CBox>() != nullptr;
    }
    template<typename CBox>
    static bool rejects(CMainWindow&) {
        open<CBox>()->reject();
        return true;
    }
};

TEST_F(HeldBatch, IsShownUntilTheQuestionOfTheWindowIsAnswered) {
    const auto says = [](const char* text) {
        return [text](CMainWindow& window) { return window.stateBar().troubleText() == text; };
    };
    EXPECT_EQ(run({[](CMainWindow& window) {
                       QTimer::singleShot(0, &window, [&window] { window.action("halt").trigger(); });
                       return true;
                   },
                   isOpen<QMessageBox>, handOver("23,0,8.02,600104,1000\n"),
                   says("1 batch waits until you answer the open question."),
                   handOver("23,0,8.02,600104,2000\n", "single.txt"),
                   says("2 batches wait until you answer the open question."),
                   [](CMainWindow&) {
                       EXPECT_EQ(open<TC::COrdersMessageBox>(), nullptr);
                       return true;
                   },
                   rejects<QMessageBox>, isOpen<TC::COrdersMessageBox>,
                   says("1 batch waits until you answer the open question."), rejects<TC::COrdersMessageBox>,
                   says("")}),
              0);
}

TEST_F(HeldBatch, ThatIsNotAskedAnyMoreIsReportedAtTheEnd) {
    EXPECT_EQ(run({[](CMainWindow& window) {
                       QTimer::singleShot(0, &window, [&window] { window.action("halt").trigger(); });
                       return true;
                   },
                   isOpen<QMessageBox>, handOver("23,0,8.02,600104,1000\n23,0,8.02,600104,2000\n"),
                   [](CMainWindow& window) {
                       return window.stateBar().troubleText() ==
                              QStringLiteral("1 batch waits until you answer the open question.");
                   }}),
              1); // the run ends with the question open
    const std::string text = "2 orders not sent: they needed a confirmation when the desk ended";
    EXPECT_NE(out.str().find(text), std::string::npos) << out.str();
    EXPECT_TRUE(hasInJournal("\"event\":\"not_asked\""));
    EXPECT_FALSE(hasInJournal("\"kind\":\"command\""));
}

} // namespace
} // namespace desk
