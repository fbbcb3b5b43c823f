#include "orderservice/ui/RemarkLine.h"
#include "tests/ui/DialogFixture.h"

#include <QClipboard>
#include <QHeaderView>
#include <QInputMethodEvent>
#include <QLabel>
#include <QLayout>
#include <QTableView>

#include <vector>

namespace {

using namespace TC;

class MessageBox : public CDialogTest {};

TEST_F(MessageBox, OkConfirms) {
    EXPECT_EQ(show(orders, {}, clickOk), 1);
    EXPECT_TRUE(wasShown);
    EXPECT_FALSE(isConfirmationPauseSet());
    EXPECT_FALSE(COrdersMessageBox::isOpen());
}

TEST_F(MessageBox, CancelDeclines) {
    EXPECT_EQ(show(orders, {}, clickCancel), 0);
    EXPECT_FALSE(isConfirmationPauseSet());
}

TEST_F(MessageBox, PauseIsSetWhileItIsOpen) {
    bool isSet = false, isOpen = false;
    show(orders, {}, [&](COrdersMessageBox& box) {
        isSet = isConfirmationPauseSet();
        isOpen = COrdersMessageBox::isOpen();
        clickOk(box);
    });
    EXPECT_TRUE(isSet);
    EXPECT_TRUE(isOpen);
}

TEST_F(MessageBox, EscapeDeclinesAndEndsThePauseWhereverItIsPressed) {
    for (const int place : {0, 1, 2}) {
        EXPECT_EQ(show(orders, {},
                       [&](COrdersMessageBox& box) {
                           QWidget* const places[] = {&box, box.table()->table()->view(), box.remarkEdit()};
                           QTest::keyClick(places[place], Qt::Key_Escape);
                       }),
                  0);
        EXPECT_FALSE(isConfirmationPauseSet()) << place;
    }
}

TEST_F(MessageBox, EscapeWithAnotherKeyChangesNothing) {
    bool isSet = false, isVisible = false;
    show(orders, {}, [&](COrdersMessageBox& box) {
        QTest::keyClick(&box, Qt::Key_Escape, Qt::ShiftModifier);
        QTest::keyClick(&box, Qt::Key_Escape, Qt::ControlModifier);
        isSet = isConfirmationPauseSet();
        isVisible = box.isVisible();
        clickCancel(box);
    });
    EXPECT_TRUE(isSet);
    EXPECT_TRUE(isVisible);
}

TEST_F(MessageBox, ClosingByTheFrameDeclinesAndLeavesThePause) {
    EXPECT_EQ(show(orders, {}, [](COrdersMessageBox& box) { box.close(); }), 0);
    EXPECT_TRUE(isConfirmationPauseSet());
    const std::vector<QString> paused{QStringLiteral("[接口单]　确认窗口未按按钮关闭, 文件单读取保持暂停")};
    EXPECT_EQ(host.messageTexts(), paused);
    EXPECT_EQ(show(orders, {}, clickOk), 1);
    EXPECT_FALSE(isConfirmationPauseSet()) << "the next answer ends it";
    EXPECT_EQ(host.messageTexts(), paused) << "an answer needs no message";
}

TEST_F(MessageBox, EndOfTheApplicationDeclines) {
    int result = -1;
    QTimer::singleShot(
        0, [&] { result = show(orders, {}, [](COrdersMessageBox&) { QCoreApplication::quit(); }); });
    QCoreApplication::exec();
    EXPECT_TRUE(wasShown);
    EXPECT_EQ(result, 0);
    EXPECT_TRUE(isConfirmationPauseSet());
    EXPECT_FALSE(COrdersMessageBox::isOpen());
}

TEST_F(MessageBox, ParentThatDiesDeclines) {
    auto* parent = new QWidget;
    QTimer::singleShot(0, [&] { delete parent; });
    EXPECT_EQ(COrdersMessageBox::showOrders(parent, QString(), EQdTraderType::Stock, orders, {}), 0);
    EXPECT_FALSE(COrdersMessageBox::isOpen());
}

TEST_F(MessageBox, EditedVolumesAreNamedAboveTheButtons) {
    show(orders, {}, [](COrdersMessageBox& box) {
        EXPECT_EQ(box.notice(), QString());
        enterVolume(box, 0, "700");
        enterVolume(box, 2, "700");
        EXPECT_EQ(box.notice(), QStringLiteral("2 行的分配量已修改, 但仍按原分配量下单"));
        const QLabel* line = nullptr;
        for (const QLabel* each : box.findChildren<QLabel*>()) {
            if (each->text() == box.notice()) line = each;
        }
        ASSERT_NE(line, nullptr);
        EXPECT_TRUE(line->isVisible());
        EXPECT_EQ(line->palette().color(QPalette::WindowText), QColor(Qt::red));
        QCoreApplication::processEvents();
        EXPECT_LT(line->mapTo(&box, QPoint()).y(), box.okButton()->mapTo(&box, QPoint()).y());
        enterVolume(box, 0, "100");
        enterVolume(box, 2, "300");
        EXPECT_EQ(box.notice(), QString());
        clickOk(box);
    });
    EXPECT_TRUE(wasShown);
}

TEST_F(MessageBox, ChangedRemarksAreNamedAboveTheButtons) {
    show(orders, {{3, "first"}}, [](COrdersMessageBox& box) {
        QTest::keyClicks(box.remarkEdit(), QStringLiteral("s"));
        EXPECT_EQ(box.notice(), QStringLiteral("1 行的备注已修改, 但仍按原备注下单"));
        enterVolume(box, 0, "700");
        EXPECT_EQ(box.notice(), QStringLiteral("1 行的分配量已修改, 但仍按原分配量下单; "
                                               "1 行的备注已修改, 但仍按原备注下单"));
        enterVolume(box, 0, "100");
        QTest::keyClick(box.remarkEdit(), Qt::Key_Backspace);
        EXPECT_EQ(box.notice(), QString());
        clickOk(box);
    });
    EXPECT_TRUE(wasShown);
}

TEST_F(MessageBox, OtherButtonValuesAreIgnored) {
    bool isVisible = false;
    EXPECT_EQ(show(orders, {},
                   [&](COrdersMessageBox& box) {
                       box.handleEvent(5, 2);
                       box.handleEvent(5, -1);
                       box.handleEvent(7, 0);
                       isVisible = box.isVisible() && isConfirmationPauseSet();
                       box.handleEvent(5, 0);
                   }),
              1);
    EXPECT_TRUE(isVisible);
}

TEST_F(MessageBox, EventOfCancelDeclines) {
    EXPECT_EQ(show(orders, {}, [](COrdersMessageBox& box) { box.handleEvent(5, 1); }), 0);
    EXPECT_FALSE(isConfirmationPauseSet());
}

TEST_F(MessageBox, EnterConfirms) {
    EXPECT_EQ(show(orders, {},
                   [](COrdersMessageBox& box) {
                       QTest::keyClick(box.table()->table()->view(), Qt::Key_Return);
                       if (box.isVisible()) box.reject();
                   }),
              1);
}

TEST_F(MessageBox, EnterAndEscapeInACellEndTheEditOnly) {
    bool isVisible = false, isSet = false;
    QString kept, discarded;
    show(orders, {}, [&](COrdersMessageBox& box) {
        QTableView* view = box.table()->table()->view();
        const auto editCell = [&](const char* text, Qt::Key key) {
            const QModelIndex cell = view->model()->index(0, COrdersConfirmWidget::Volume);
            view->setCurrentIndex(cell);
            QTest::keyClick(view, Qt::Key_F2);
            auto* editor = qobject_cast<QLineEdit*>(view->indexWidget(cell));
            ASSERT_NE(editor, nullptr);
            editor->selectAll();
            QTest::keyClicks(editor, QString::fromLatin1(text));
            QTest::keyClick(editor, key);
            QCoreApplication::processEvents();
        };
        editCell("700", Qt::Key_Return);
        kept = box.table()->table()->itemText(0, 5);
        EXPECT_TRUE(box.isVisible()) << "Enter";
        editCell("800", Qt::Key_Escape);
        discarded = box.table()->table()->itemText(0, 5);
        isVisible = box.isVisible();
        isSet = isConfirmationPauseSet();
        clickCancel(box);
    });
    EXPECT_EQ(kept, QStringLiteral("700"));
    EXPECT_EQ(discarded, QStringLiteral("700"));
    EXPECT_TRUE(isVisible);
    EXPECT_TRUE(isSet);
}

TEST_F(MessageBox, ButtonsHaveTheirTextsAndSizesAndTakeNoFocus) {
    show(orders, {}, [](COrdersMessageBox& box) {
        EXPECT_EQ(box.windowTitle(), QStringLiteral("标题"));
        EXPECT_EQ(box.okButton()->text(), QStringLiteral("确定"));
        EXPECT_EQ(box.cancelButton()->text(), QStringLiteral("取消"));
        for (const QPushButton* button : {box.okButton(), box.cancelButton()}) {
            EXPECT_EQ(button->size(), QSize(80, 26));
            EXPECT_EQ(button->focusPolicy(), Qt::NoFocus);
        }
        EXPECT_TRUE(box.okButton()->isDefault());
        EXPECT_FALSE(box.cancelButton()->isDefault());
        EXPECT_EQ(box.minimumSize(), QSize(462, 152));
        EXPECT_FALSE(box.windowFlags() & Qt::WindowContextHelpButtonHint);
        EXPECT_TRUE(box.isModal());
        clickOk(box);
    });
    EXPECT_TRUE(wasShown);
}

TEST_F(MessageBox, ButtonRowHasItsMarginsSpacingAndHeight) {
    show(orders, {}, [](COrdersMessageBox& box) {
        const QWidget* row = box.okButton()->parentWidget();
        EXPECT_EQ(row->layout()->contentsMargins(), QMargins(15, 10, 15, 5));
        EXPECT_EQ(row->layout()->spacing(), 15);
        EXPECT_EQ(row->height(), 46);
        clickOk(box);
    });
    EXPECT_TRUE(wasShown);
}

TEST_F(MessageBox, RowsAreInTheOrderOfTheKeys) {
    show(orders, {}, [](COrdersMessageBox& box) {
        EXPECT_EQ(box.table()->table()->rowCount(), 3);
        for (int row = 0; row < 3; ++row)
            EXPECT_EQ(box.table()->table()->itemText(row, 5), QString::number((row + 1) * 100));
        EXPECT_EQ(box.table()->selectedRow(), 0);
        clickOk(box);
    });
}

TEST_F(MessageBox, NumberAndMoneyAreBesideTheButtons) {
    QString text;
    show(orders, {}, [&](COrdersMessageBox& box) {
        text = box.summary();
        clickOk(box);
    });
    EXPECT_EQ(text, QStringLiteral("共 3 笔, 表内预估 5,700.00"));
    CCodeOrderParam unset = makeRecord();
    unset.m_dPrice = kUnsetDouble;
    show({{0, makeRecord(100)}, {1, unset}}, {}, [&](COrdersMessageBox& box) {
        text = box.summary();
        clickOk(box);
    });
    EXPECT_EQ(text, QStringLiteral("共 2 笔, 表内预估 950.00 (1 笔无金额)"));
}

TEST_F(MessageBox, RemarksHaveTheKeyOfTheCaller) {
    show(orders, {{3, "first"}, {9, "third"}}, [](COrdersMessageBox& box) {
        EXPECT_EQ(box.remarkEdit()->text(), QStringLiteral("first"));
        box.table()->setSelectedRow(1);
        EXPECT_EQ(box.remarkEdit()->text(), QString());
        box.remarkEdit()->setFocus();
        QTest::keyClicks(box.remarkEdit(), QStringLiteral("second"));
        box.table()->setSelectedRow(2);
        EXPECT_EQ(box.remarkEdit()->text(), QStringLiteral("third"));
        clickOk(box);
    });
    EXPECT_EQ(COrdersMessageBox::getRemark(3), "first");
    EXPECT_EQ(COrdersMessageBox::getRemark(5), "second");
    EXPECT_EQ(COrdersMessageBox::getRemark(9), "third");
    EXPECT_EQ(COrdersMessageBox::getRemark(0), "");
}

TEST_F(MessageBox, EventsOfTheSelectionAndTheRemarkAreThoseOfTheirNumbers) {
    show(orders, {{3, "first"}}, [](COrdersMessageBox& box) {
        for (const int event : {47, 49}) {
            box.remarkEdit()->setText(QStringLiteral("changed"));
            box.handleEvent(event, 0);
            EXPECT_EQ(box.remarkEdit()->text(), QStringLiteral("first")) << event;
        }
        box.remarkEdit()->setText(QStringLiteral("stored"));
        box.handleEvent(98, 0);
        clickOk(box);
    });
    EXPECT_EQ(COrdersMessageBox::getRemark(3), "stored");
}

TEST_F(MessageBox, RemarksOfAnEarlierDialogAreForgotten) {
    show(orders, {{3, "first"}}, clickOk);
    show(orders, {}, clickOk);
    EXPECT_EQ(COrdersMessageBox::getRemark(3), "");
}

TEST_F(MessageBox, EmptyBatchHasNoSelectionAndNoRemark) {
    EXPECT_EQ(show({}, {},
                   [](COrdersMessageBox& box) {
                       EXPECT_EQ(box.table()->selectedRow(), -1);
                       EXPECT_TRUE(box.remarkEdit()->isReadOnly()) << "no order would get the text";
                       QTest::keyClicks(box.remarkEdit(), QStringLiteral("text"));
                       EXPECT_EQ(box.remarkEdit()->text(), QString());
                       EXPECT_EQ(box.summary(), QStringLiteral("共 0 笔"));
                       clickOk(box);
                   }),
              1);
    EXPECT_EQ(COrdersMessageBox::getRemark(0), "");
}

TEST_F(MessageBox, RemarkLineNeedsItsSwitchAndTheUsersKind) {
    const auto hasLine = [&] {
        bool has = false;
        show(orders, {}, [&](COrdersMessageBox& box) {
            has = box.remarkEdit() != nullptr;
            clickOk(box);
        });
        return has;
    };
    EXPECT_TRUE(hasLine());
    host.user.kind = 200;
    EXPECT_FALSE(hasLine());
    host.user.kind = 100;
    host.switches.on.clear();
    EXPECT_FALSE(hasLine());
}

TEST_F(MessageBox, RemarkLineIsEnabledByTheHintBits) {
    const auto isEnabled = [&] {
        bool enabled = false;
        show(orders, {{3, "first"}}, [&](COrdersMessageBox& box) {
            enabled = box.remarkEdit()->isEnabled();
            EXPECT_EQ(box.remarkEdit()->text(), QStringLiteral("first"));
            clickOk(box);
        });
        return enabled;
    };
    EXPECT_TRUE(isEnabled());
    EXPECT_TRUE(host.user.globalHintCalls.all().empty()) << "asked only if the first answer is no";
    host.user.hints = {16, 32};
    EXPECT_FALSE(isEnabled());
    host.user.globalHints = {1};
    EXPECT_TRUE(isEnabled());
    EXPECT_EQ(host.user.globalHintCalls.all(), (std::vector<int>{1, 1}));
}

TEST_F(MessageBox, RemarkLineHasItsHintAndSize) {
    show(orders, {}, [](COrdersMessageBox& box) {
        EXPECT_EQ(box.remarkEdit()->placeholderText(), QStringLiteral("请选择或输入指令备注"));
        EXPECT_EQ(box.remarkEdit()->sizeHint(), QSize(467, 22));
        EXPECT_EQ(box.remarkEdit()->height(), 22);
        EXPECT_EQ(box.remarkEdit()->palette().color(QPalette::PlaceholderText),
                  QApplication::palette().color(QPalette::Disabled, QPalette::Text));
        EXPECT_EQ(box.remarkEdit()->font().family(), QApplication::font().family());
        EXPECT_EQ(box.remarkEdit()->font().pointSize(), QApplication::font().pointSize());
        EXPECT_EQ(box.remarkEdit()->toolTip(), QStringLiteral("修改不改变任何指令的备注"));
        const QLabel* label = nullptr;
        for (const QLabel* each : box.findChildren<QLabel*>()) {
            if (each->text() == QStringLiteral("投资备注")) label = each;
        }
        ASSERT_NE(label, nullptr);
        EXPECT_EQ(label->height(), 22);
        clickOk(box);
    });
}

TEST_F(MessageBox, OnlyCharactersOfTheExpressionCanBeEntered) {
    show(orders, {}, [](COrdersMessageBox& box) {
        CRemarkLine& line = *box.remarkEdit();
        QTest::keyClicks(&line, QStringLiteral("ab;c<d|e_1 ,.!?-"));
        EXPECT_EQ(line.text(), QStringLiteral("abcde_1 ,.!?"));
        clickOk(box);
    });
    EXPECT_EQ(COrdersMessageBox::getRemark(3), "abcde_1 ,.!?");
}

TEST_F(MessageBox, PastedTextIsChecked) {
    show(orders, {}, [](COrdersMessageBox& box) {
        CRemarkLine& line = *box.remarkEdit();
        QApplication::clipboard()->setText(QStringLiteral("a;b"));
        line.paste();
        EXPECT_EQ(line.text(), QString());
        QApplication::clipboard()->setText(QStringLiteral("备注，一。！？"));
        line.paste();
        EXPECT_EQ(line.text(), QStringLiteral("备注，一。！？"));
        clickOk(box);
    });
    EXPECT_EQ(COrdersMessageBox::getRemark(3), "备注，一。！？");
}

TEST_F(MessageBox, TextOfAnInputMethodIsChecked) {
    show(orders, {}, [](COrdersMessageBox& box) {
        const auto commit = [&](const QString& text) {
            QInputMethodEvent event;
            event.setCommitString(text);
            QApplication::sendEvent(box.remarkEdit(), &event);
        };
        commit(QStringLiteral("中文"));
        EXPECT_EQ(box.remarkEdit()->text(), QStringLiteral("中文"));
        commit(QStringLiteral("；"));
        EXPECT_EQ(box.remarkEdit()->text(), QStringLiteral("中文"));
        clickOk(box);
    });
    EXPECT_EQ(COrdersMessageBox::getRemark(3), "中文");
}

TEST_F(MessageBox, LayoutIsSavedAndApplied) {
    show(orders, {}, [](COrdersMessageBox& box) {
        box.table()->table()->view()->setColumnWidth(3, 133);
        clickOk(box);
    });
    ASSERT_FALSE(host.user.layouts[QStringLiteral("orders_confirm")].isEmpty());
    show(orders, {}, [](COrdersMessageBox& box) {
        EXPECT_EQ(box.table()->table()->view()->columnWidth(3), 133);
        clickOk(box);
    });
}

TEST_F(MessageBox, DamagedLayoutIsIgnored) {
    host.user.layouts[QStringLiteral("orders_confirm")] = QStringLiteral("1;0:80,0:90,x");
    const auto widthOfFirst = [&] {
        int width = 0;
        EXPECT_EQ(show(orders, {},
                       [&](COrdersMessageBox& box) {
                           EXPECT_EQ(box.table()->table()->view()->horizontalHeader()->logicalIndex(0), 0);
                           width = box.table()->table()->view()->columnWidth(0);
                           clickOk(box);
                       }),
                  1);
        return width;
    };
    const int width = widthOfFirst();
    host.user.layouts.clear();
    EXPECT_EQ(width, widthOfFirst());
}

TEST_F(MessageBox, OrdersWithoutARecordAreCounted) {
    show(orders, {{3, ""}, {4, ""}, {5, ""}, {9, ""}}, [](COrdersMessageBox& box) {
        EXPECT_EQ(box.summary(), QStringLiteral("共 4 笔, 1 笔不在表内, 表内预估 5,700.00"));
        clickOk(box);
    });
    EXPECT_TRUE(wasShown);
}

TEST_F(MessageBox, SummaryHasTheAmountsOfLaterQuotes) {
    host.quotes.quotes.clear();
    CCodeOrderParam latest = makeRecord(100);
    latest.m_ePriceType = EPriceType::Latest;
    latest.m_dPrice = kUnsetDouble;
    show({{0, makeRecord(100)}, {1, latest}}, {}, [&](COrdersMessageBox& box) {
        EXPECT_EQ(box.summary(), QStringLiteral("共 2 笔, 表内预估 950.00 (1 笔无金额)"));
        host.quotes.callbacks.at(QStringLiteral("SH600000"))(makeQuote(10));
        box.table()->slotTimeout();
        EXPECT_EQ(box.summary(), QStringLiteral("共 2 笔, 表内预估 1,950.00"));
        clickOk(box);
    });
    EXPECT_TRUE(wasShown);
}

TEST_F(MessageBox, SecondDialogIsNotShownInTheFirst) {
    int second = -1;
    EXPECT_EQ(show(orders, {{3, "kept"}},
                   [&](COrdersMessageBox& box) {
                       second = COrdersMessageBox::showOrders(nullptr, QString(), EQdTraderType::Basket,
                                                              {{1, makeRecord()}}, {{3, "other"}});
                       EXPECT_TRUE(isConfirmationPauseSet());
                       clickOk(box);
                   }),
              1);
    EXPECT_EQ(second, 0);
    EXPECT_EQ(COrdersMessageBox::getRemark(3), "kept");
    EXPECT_EQ(host.messageTexts(),
              (std::vector<QString>{QStringLiteral("[接口单]　另一批指令正在确认, 1条指令未执行!")}));
}

} // namespace
