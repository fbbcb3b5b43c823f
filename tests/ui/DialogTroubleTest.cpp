// The dialog when the host fails, its parent dies, or the user is switched.
#include "orderservice/platform/Host.h"
#include "orderservice/ui/RemarkLine.h"
#include "tests/ui/DialogFixture.h"

#include <QLineEdit>
#include <QTableView>

#include <stdexcept>

namespace {

using namespace TC;

const QString kLayout = QStringLiteral("orders_confirm");

/// A user whose operations for the dialog may fail.
class CFailingUser : public fake::CUser {
public:
    QString getTableLayout(const QString& id) const override {
        if (fails) throw std::runtime_error("no store");
        return CUser::getTableLayout(id);
    }
    bool testHintBeforeOrderFlag(int bit) const override {
        if (fails) throw std::runtime_error("no settings");
        return CUser::testHintBeforeOrderFlag(bit);
    }
    bool fails = false;
};

class CFailingSwitches : public fake::CSwitches {
public:
    bool checkModule(const std::vector<std::string>& path) override {
        if (path.back() == failing) throw std::runtime_error("no switch");
        return CSwitches::checkModule(path);
    }
    std::string failing;
};

class DialogTrouble : public CDialogTest {
protected:
    void SetUp() override {
        CDialogTest::SetUp();
        user.hints = {1};
        CHost services = host.services();
        services.userManager = &user;
        services.luaModuleCtrl = &switches;
        releaseHost();
        ASSERT_TRUE(installHost(services).isSuccess());
    }
    static void moveColumn(COrdersMessageBox& box) { box.table()->table()->view()->setColumnWidth(3, 133); }

    CFailingUser user;
    CFailingSwitches switches;
};

class CFailingAccount : public CAccountInfo {
public:
    std::string getKey() const override { throw std::runtime_error("no key"); }
};

TEST_F(DialogTrouble, FailedOpeningRestoresThePause) {
    CCodeOrderParam record = makeRecord();
    record.m_account = boost::make_shared<CFailingAccount>();
    const std::map<int, CCodeOrderParam> failing{{0, record}};
    for (const bool wasPaused : {true, false}) {
        setConfirmationPause(wasPaused);
        EXPECT_ANY_THROW(
            COrdersMessageBox::showOrders(nullptr, QString(), EQdTraderType::Stock, failing, {}));
        EXPECT_EQ(isConfirmationPauseSet(), wasPaused);
        EXPECT_FALSE(COrdersMessageBox::isOpen());
    }
}

TEST_F(DialogTrouble, FailingSwitchesOfPartsLeaveTheDialog) {
    for (const char* name : {"mdl_order_trigger_price", "mdl_order_command_remark"}) {
        switches.failing = name;
        const std::size_t before = host.messageTexts().size();
        EXPECT_EQ(show(orders, {}, clickOk), 1) << name;
        EXPECT_EQ(host.messageTexts().size(), before + 1) << name;
    }
}

TEST_F(DialogTrouble, FailingSwitchesOfSafetyAreOn) {
    switches.failing = "mdl_order_confirm_guard";
    bool isOkEnabled = true;
    show(orders, {}, [&](COrdersMessageBox& box) {
        isOkEnabled = box.okButton()->isEnabled();
        box.close();
    });
    EXPECT_FALSE(isOkEnabled);
    switches.failing = "mdl_order_confirm_read_only";
    EXPECT_EQ(show(orders, {},
                   [](COrdersMessageBox& box) {
                       enterVolume(box, 0, "700");
                       EXPECT_EQ(box.table()->table()->itemText(0, 5), QStringLiteral("100"));
                       clickOk(box);
                   }),
              1);
}

TEST_F(DialogTrouble, PauseStaysSetAfterTheParentHasDied) {
    auto* parent = new QWidget;
    QTimer::singleShot(0, [&] { delete parent; });
    EXPECT_EQ(COrdersMessageBox::showOrders(parent, QString(), EQdTraderType::Stock, orders, {}), 0);
    EXPECT_TRUE(isConfirmationPauseSet());
    EXPECT_FALSE(COrdersMessageBox::wasAnswered());
}

TEST_F(DialogTrouble, FailingSettingsLeaveTheDialog) {
    user.fails = true;
    bool isEnabled = true;
    EXPECT_EQ(show(orders, {},
                   [&](COrdersMessageBox& box) {
                       isEnabled = box.remarkEdit()->isEnabled();
                       clickOk(box);
                   }),
              1);
    EXPECT_FALSE(isEnabled);
    EXPECT_EQ(host.messageTexts().size(), 2u) << "one report for the settings, one for the layout";
}

TEST_F(DialogTrouble, LayoutThatWasNotLoadedIsNotReplaced) {
    user.layouts[kLayout] = QStringLiteral("1;0:80,2:60");
    user.fails = true;
    show(orders, {}, [&](COrdersMessageBox& box) {
        moveColumn(box);
        user.fails = false;
        clickOk(box);
    });
    EXPECT_EQ(user.layouts[kLayout], QStringLiteral("1;0:80,2:60"));
}

TEST_F(DialogTrouble, LayoutThatTheUserHasNotChangedIsNotSaved) {
    show(orders, {}, clickOk);
    EXPECT_TRUE(user.layouts.empty());
}

TEST_F(DialogTrouble, LayoutDoesNotGoToAnotherUser) {
    show(orders, {}, [&](COrdersMessageBox& box) {
        moveColumn(box);
        user.name = "another";
        clickOk(box);
    });
    EXPECT_TRUE(user.layouts.empty());
}

TEST_F(DialogTrouble, ParentMayDieWhileACellIsEdited) {
    auto* parent = new QWidget;
    bool isEditing = false;
    QTimer::singleShot(0, [&] {
        auto* box = qobject_cast<COrdersMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        QTableView* view = box->table()->table()->view();
        const QModelIndex cell = view->model()->index(0, COrdersConfirmWidget::Volume);
        view->setCurrentIndex(cell);
        view->edit(cell);
        auto* editor = qobject_cast<QLineEdit*>(view->indexWidget(cell));
        isEditing = editor != nullptr;
        if (isEditing) editor->setText(QStringLiteral("700"));
        delete parent;
    });
    EXPECT_EQ(COrdersMessageBox::showOrders(parent, QString(), EQdTraderType::Stock, orders, {}), 0);
    EXPECT_TRUE(isEditing);
    EXPECT_FALSE(COrdersMessageBox::isOpen());
}

TEST_F(DialogTrouble, RemarkOfTheCallerDoesNotOpenTheLineToForbiddenCharacters) {
    show(orders, {{3, "a;b"}}, [](COrdersMessageBox& box) {
        CRemarkLine& line = *box.remarkEdit();
        EXPECT_EQ(line.text(), QStringLiteral("a;b"));
        line.setCursorPosition(3);
        QTest::keyClicks(&line, QStringLiteral("<c;|"));
        EXPECT_EQ(line.text(), QStringLiteral("a;bc"));
        line.setSelection(1, 1);
        QTest::keyClick(&line, Qt::Key_Backspace);
        QTest::keyClicks(&line, QStringLiteral(";d"));
        EXPECT_EQ(line.text(), QStringLiteral("adbc"));
        clickOk(box);
    });
    EXPECT_EQ(COrdersMessageBox::getRemark(3), "adbc");
}

TEST_F(DialogTrouble, UserMayBeSwitchedWhileItIsOpen) {
    EXPECT_EQ(show(orders, {},
                   [&](COrdersMessageBox& box) {
                       moveColumn(box);
                       user.loggedIn = false;
                       box.table()->slotTimeout();
                       clickOk(box);
                   }),
              1);
    EXPECT_TRUE(user.layouts.empty());
}

TEST_F(DialogTrouble, FiveThousandOrdersAreShown) {
    std::map<int, CCodeOrderParam> many;
    for (int i = 0; i < 5000; ++i)
        many[i] = makeRecord(100);
    QString summary;
    EXPECT_EQ(show(many, {},
                   [&](COrdersMessageBox& box) {
                       summary = box.summary();
                       clickOk(box);
                   }),
              1);
    EXPECT_EQ(summary, QStringLiteral("共 5000 笔, 表内预估 4,750,000.00"));
}

TEST_F(DialogTrouble, AnswerDoesNotEndTheApplication) {
    bool quits = true;
    show(orders, {}, [&](COrdersMessageBox& box) {
        quits = box.testAttribute(Qt::WA_QuitOnClose);
        clickOk(box);
    });
    EXPECT_FALSE(quits);
}

} // namespace
