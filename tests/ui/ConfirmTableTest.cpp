#include "tests/ui/ConfirmFixture.h"

#include "orderservice/widgets/BaseTable.h"
#include "orderservice/widgets/FilterMenu.h"
#include "orderservice/widgets/TableModel.h"

#include <QAction>
#include <QApplication>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <QValidator>
#include <QWhatsThis>

#include <gtest/gtest.h>

namespace {

using namespace TC;

QStringList headersOf(const CConfirmTable& table) {
    QStringList headers;
    for (int column = 0; column < table.widget.table()->columnCount(); ++column)
        headers.append(table.widget.table()->columnHeader(column));
    return headers;
}

/// Begins to edit a volume and returns the editor.
QLineEdit* editVolume(CConfirmTable& table, int row) {
    QTableView* view = table.widget.table()->view();
    const QModelIndex cell = view->model()->index(row, COrdersConfirmWidget::Volume);
    view->setCurrentIndex(cell);
    view->edit(cell);
    return view->viewport()->findChild<QLineEdit*>();
}

void enterVolume(CConfirmTable& table, int row, const QString& text) {
    table.widget.table()->view()->model()->setData(
        table.widget.table()->view()->model()->index(row, COrdersConfirmWidget::Volume), text, Qt::EditRole);
}

TEST(ConfirmTable, HasTheTwelveColumns) {
    const CFakeHost host;
    const CConfirmTable table;
    EXPECT_EQ(
        headersOf(table),
        (QStringList{QStringLiteral("账号"), QStringLiteral("市场"), QStringLiteral("代码"),
                     QStringLiteral("股票名称"), QStringLiteral("交易类型"), QStringLiteral("分配量"),
                     QStringLiteral("可用量"), QStringLiteral("最新市值"), QStringLiteral("基准价"),
                     QStringLiteral("委托价"), QStringLiteral("委托预估金额"), QStringLiteral("产品名称")}));
}

TEST(ConfirmTable, NameColumnIsNamedByTheTraderType) {
    const CFakeHost host;
    for (const int type : {1, 2, 4, 8, 16, 32, 128, 256, 1024, 16384}) {
        const CConfirmTable table(static_cast<EQdTraderType>(type));
        const bool isContract = type == 2 || type == 16 || type == 1024;
        EXPECT_EQ(table.widget.table()->columnHeader(3),
                  isContract ? QStringLiteral("合约名称") : QStringLiteral("股票名称"))
            << type;
    }
}

TEST(ConfirmTable, NumbersAreBoldAndRightAlignedInTableAndSumRow) {
    const CFakeHost host;
    CConfirmTable table;
    table.widget.setOrders({makeRecord()});
    const QAbstractItemModel* model = table.widget.table()->view()->model();
    for (int column = 0; column < 12; ++column) {
        const bool isNumber = column >= 5 && column <= 10;
        const QModelIndex cell = model->index(0, column);
        EXPECT_EQ(cell.data(Qt::FontRole).value<QFont>().bold(), isNumber) << column;
        EXPECT_EQ(table.widget.table()->isStatBold(column), isNumber) << column;
        const auto side = static_cast<Qt::Alignment>(cell.data(Qt::TextAlignmentRole).toInt());
        EXPECT_TRUE(side & (isNumber ? Qt::AlignRight : Qt::AlignLeft)) << column;
    }
}

TEST(ConfirmTable, AllColumnsCanBeFiltered) {
    CFakeHost host;
    host.switches.on = {"mdl_order_trigger_price"};
    CConfirmTable table;
    table.widget.setOrders({makeRecord(100), makeRecord(200)});
    auto* shown = table.widget.table();
    for (int column = 0; column < 13; ++column) {
        shown->view()->setCurrentIndex(shown->view()->model()->index(0, column));
        QTest::keyClick(shown->view(), Qt::Key_F, Qt::ControlModifier);
        auto* menu = shown->findChild<UW::CFilterMenu*>();
        ASSERT_NE(menu, nullptr) << column;
        delete menu;
    }
}

TEST(ConfirmTable, OnlyTheMarketValueFlashes) {
    CFakeHost host;
    CConfirmTable table;
    table.widget.setOrders({makeRecord(100)});
    host.quotes.callbacks.at(QStringLiteral("SH600000"))(makeQuote(11));
    table.widget.slotTimeout();
    const QAbstractItemModel* model = table.widget.table()->view()->model();
    for (int column = 0; column < 12; ++column)
        EXPECT_EQ(model->index(0, column).data(UW::CTableModel::FlashRole).toBool(), column == 7) << column;
}

TEST(ConfirmTable, HelpIsShown) {
    const CFakeHost host;
    CConfirmTable table(EQdTraderType::Stock, 1);
    table.widget.slotHelp(false);
    bool isShown = false;
    for (const QWidget* each : QApplication::topLevelWidgets())
        isShown = isShown || each->inherits("QWhatsThat");
    EXPECT_TRUE(isShown);
    QWhatsThis::hideText();
}

TEST(ConfirmTable, ShowsTheRecord) {
    CFakeHost host;
    host.quotes.quotes.clear();
    CConfirmTable table;
    table.widget.setOrders({makeRecord()});
    EXPECT_EQ(table.cell(0, 0), QStringLiteral("A1"));
    EXPECT_EQ(table.cell(0, 1), QStringLiteral("SH"));
    EXPECT_EQ(table.cell(0, 2), QStringLiteral("600000"));
    EXPECT_EQ(table.cell(0, 3), QStringLiteral("name"));
    EXPECT_EQ(table.cell(0, 6), QStringLiteral("-"));
    EXPECT_EQ(table.cell(0, 7), QStringLiteral("-"));
    EXPECT_EQ(table.cell(0, 11), QStringLiteral("-"));
}

TEST(ConfirmTable, RecordWithoutAnythingShowsOnlyDashes) {
    const CFakeHost host;
    CConfirmTable table;
    table.widget.setOrders({CCodeOrderParam()});
    for (int column = 0; column < 12; ++column)
        EXPECT_EQ(table.cell(0, column), QStringLiteral("-")) << column;
}

TEST(ConfirmTable, AccountAndProductAreNamedByTheProduct) {
    CFakeHost host;
    host.user.products[QStringLiteral("A1")] = {QStringLiteral("一号产品"), QStringLiteral("股票账户")};
    CConfirmTable table;
    table.widget.setOrders({makeRecord()});
    EXPECT_EQ(table.cell(0, 0), QStringLiteral("股票账户"));
    EXPECT_EQ(table.cell(0, 11), QStringLiteral("一号产品"));
}

TEST(ConfirmTable, AvailableVolumeIsThatOfTheAccount) {
    CFakeHost host;
    host.tasks.canOrder["A1"] = 1200;
    CConfirmTable table;
    table.widget.setOrders({makeRecord()});
    EXPECT_EQ(table.cell(0, 6), QStringLiteral("1200"));
}

TEST(ConfirmTable, AvailableVolumeIsHiddenForOtherKinds) {
    const CFakeHost host;
    CConfirmTable table;
    EXPECT_FALSE(table.widget.table()->isColumnHidden(6));
    table.widget.setOrderKind(17);
    EXPECT_TRUE(table.widget.table()->isColumnHidden(6));
}

struct CExtraCase {
    int type;
    QStringList headers;
};

TEST(ConfirmTable, ExtraColumnsNeedTheirSwitchAndTheirTraderType) {
    CFakeHost host;
    EXPECT_TRUE(CConfirmTable(EQdTraderType::Basket).widget.extraColumns().isEmpty());
    EXPECT_EQ(CConfirmTable(EQdTraderType::Basket).widget.lastColumn(), -1);
    host.switches.on = {"mdl_order_trigger_price", "mdl_order_market_if_touched",
                        "mdl_order_credit_special_code"};
    const QString trigger = QStringLiteral("触价价格"), basket = QStringLiteral("篮子触价"),
                  contract = QStringLiteral("负债合约编号");
    for (const CExtraCase& each :
         {CExtraCase{1, {trigger}}, CExtraCase{4, {trigger, basket}}, CExtraCase{8, {trigger, contract}}}) {
        const CConfirmTable table(static_cast<EQdTraderType>(each.type));
        EXPECT_EQ(headersOf(table).mid(12), each.headers) << each.type;
        EXPECT_EQ(table.widget.lastColumn(), 11 + each.headers.size()) << each.type;
    }
    const auto extra = CConfirmTable(EQdTraderType::Credit).widget.extraColumns();
    EXPECT_EQ(extra[QStringLiteral("mdl_order_credit_special_code")], qMakePair(13, contract));
}

TEST(ConfirmTable, DebtContractIsYesWithItsNumberOrNo) {
    CFakeHost host;
    host.switches.on = {"mdl_order_credit_special_code"};
    CConfirmTable table(EQdTraderType::Credit);
    CCodeOrderParam repay = makeRecord(), contract = makeRecord();
    repay.m_strRepayText = "1001";
    contract.m_strContractText = "C7";
    table.widget.setOrders({makeRecord(), repay, contract});
    EXPECT_EQ(table.cell(0, 12), QStringLiteral("否"));
    EXPECT_EQ(table.cell(1, 12), QStringLiteral("是 1001"));
    EXPECT_EQ(table.cell(2, 12), QStringLiteral("是 C7"));
}

TEST(ConfirmTable, HelpIsInTheMenuOnlyInModeOne) {
    const CFakeHost host;
    for (const int mode : {0, 1}) {
        const CConfirmTable table(EQdTraderType::Stock, mode);
        bool hasHelp = false;
        for (const QAction* action : table.widget.table()->findChild<QMenu*>()->actions())
            hasHelp = hasHelp || action->text() == QStringLiteral("帮助");
        EXPECT_EQ(hasHelp, mode == 1);
    }
}

TEST(ConfirmTable, EditedVolumeStaysInTheTableAndItsRows) {
    CFakeHost host;
    CConfirmTable table;
    table.widget.setOrders({makeRecord(600), makeRecord(200)});
    enterVolume(table, 1, QStringLiteral("500"));
    EXPECT_EQ(table.cell(1, 5), QStringLiteral("500"));
    EXPECT_EQ(table.cell(1, 10), QStringLiteral("4750.00"));
    EXPECT_EQ(table.cell(1, 7), QStringLiteral("5250.00"));
    EXPECT_EQ(table.sum(7), QStringLiteral("11550.00"));
    EXPECT_EQ(table.sum(10), QStringLiteral("10450.00"));
    EXPECT_EQ(table.widget.orders()[1].m_nVolume, 500);
    EXPECT_EQ(table.widget.orders()[0].m_nVolume, 600);
    EXPECT_DOUBLE_EQ(table.widget.total().m_dAmount, 7600.0);
    const QString tip = table.widget.table()->view()->model()->index(1, 5).data(Qt::ToolTipRole).toString();
    EXPECT_TRUE(tip.startsWith(QStringLiteral("原分配量 200. "))) << tip.toStdString();
}

TEST(ConfirmTable, ToolTipOfTheVolumeSaysThatAnEditReachesNoCommand) {
    const CFakeHost host;
    CConfirmTable table;
    table.widget.setOrders({makeRecord()});
    EXPECT_EQ(table.widget.table()->view()->model()->index(0, 5).data(Qt::ToolTipRole).toString(),
              QStringLiteral("修改只保留在本表内, 不改变任何指令. 下单按原分配量执行."));
}

TEST(ConfirmTable, VolumeIsReadOnlyWithTheSwitch) {
    CFakeHost host;
    host.switches.on = {"mdl_order_confirm_read_only"};
    CConfirmTable table;
    table.widget.setOrders({makeRecord()});
    EXPECT_FALSE(table.widget.table()->view()->model()->index(0, 5).flags() & Qt::ItemIsEditable);
    enterVolume(table, 0, QStringLiteral("500"));
    EXPECT_EQ(table.cell(0, 5), QStringLiteral("600"));
}

TEST(ConfirmTable, OnlyTheVolumeCanBeEdited) {
    const CFakeHost host;
    CConfirmTable table;
    CCodeOrderParam unset = makeRecord();
    unset.m_nVolume = kUnsetInt;
    table.widget.setOrders({makeRecord(), unset});
    const QAbstractItemModel* model = table.widget.table()->view()->model();
    for (int column = 0; column < 12; ++column) {
        EXPECT_EQ(static_cast<bool>(model->index(0, column).flags() & Qt::ItemIsEditable), column == 5);
        EXPECT_FALSE(model->index(1, column).flags() & Qt::ItemIsEditable) << "no volume to edit";
    }
}

QValidator::State check(const QLineEdit& editor, QString text) {
    int place = 0;
    return editor.validator()->validate(text, place);
}

TEST(ConfirmTable, VolumesAreWholeNumbersFromOneOn) {
    const CFakeHost host;
    CConfirmTable table;
    table.widget.setOrders({makeRecord()});
    const QLineEdit* editor = editVolume(table, 0);
    ASSERT_NE(editor, nullptr);
    EXPECT_EQ(check(*editor, QStringLiteral("1")), QValidator::Acceptable);
    EXPECT_NE(check(*editor, QStringLiteral("0")), QValidator::Acceptable);
    EXPECT_EQ(check(*editor, QStringLiteral("-5")), QValidator::Invalid);
    EXPECT_EQ(check(*editor, QStringLiteral("1.5")), QValidator::Invalid);
    EXPECT_EQ(check(*editor, QStringLiteral("1,000")), QValidator::Invalid);
    EXPECT_NE(check(*editor, QStringLiteral("2147483647")), QValidator::Acceptable) << "means not set";
}

TEST(ConfirmTable, AmountsOfRepaymentsMayHaveFractions) {
    const CFakeHost host;
    CConfirmTable table(EQdTraderType::Credit);
    CCodeOrderParam record = makeRecord();
    record.m_eOperationType = EOperationType::RepayMoney;
    record.m_dQuantity = 1234.56;
    table.widget.setOrders({record});
    const QLineEdit* editor = editVolume(table, 0);
    ASSERT_NE(editor, nullptr);
    EXPECT_EQ(check(*editor, QStringLiteral("1.25")), QValidator::Acceptable);
    EXPECT_EQ(check(*editor, QStringLiteral("1.255")), QValidator::Invalid);
    EXPECT_NE(check(*editor, QStringLiteral("0.5")), QValidator::Acceptable);
    enterVolume(table, 0, QStringLiteral("99.50"));
    EXPECT_EQ(table.cell(0, 10), QStringLiteral("99.50"));
    EXPECT_DOUBLE_EQ(table.widget.orders()[0].m_dQuantity, 99.5);
    EXPECT_EQ(table.widget.orders()[0].m_nVolume, 99);
}

TEST(ConfirmTable, EditorEndsWithAnInputThatIsNotAccepted) {
    const CFakeHost host;
    CConfirmTable table;
    table.widget.setOrders({makeRecord()});
    QLineEdit* editor = editVolume(table, 0);
    ASSERT_NE(editor, nullptr);
    editor->setText(QStringLiteral("0"));
    auto* delegate = table.widget.table()->view()->itemDelegate();
    delegate->setModelData(editor, table.widget.table()->view()->model(),
                           table.widget.table()->view()->model()->index(0, 5));
    EXPECT_EQ(table.cell(0, 5), QStringLiteral("600"));
}

TEST(ConfirmTable, FilterHidesRowsAndTheSumHasAllOfThem) {
    CFakeHost host;
    CConfirmTable table;
    CCodeOrderParam sale = makeRecord(200);
    sale.m_eOperationType = EOperationType::Sell;
    table.widget.setOrders({makeRecord(600), sale});
    EXPECT_EQ(table.widget.table()->columnTexts(4),
              (std::set<QString>{QStringLiteral("买入"), QStringLiteral("卖出")}));
    table.widget.table()->filterColumn(4, {QStringLiteral("卖出")});
    EXPECT_EQ(table.widget.table()->hiddenRows(), 1);
    EXPECT_EQ(table.widget.table()->hiddenRowsText(), QStringLiteral("筛选隐藏了 1 行; 确定仍执行全部 2 笔"));
    EXPECT_EQ(table.widget.table()->rowID(0), 1);
    table.widget.slotTimeout();
    EXPECT_EQ(table.sum(7), QStringLiteral("8400.00"));
    EXPECT_EQ(table.sum(10), QStringLiteral("7600.00"));
    table.widget.setOrders({makeRecord()});
    EXPECT_EQ(table.widget.table()->hiddenRows(), 0) << "new orders end the filter";
    EXPECT_EQ(table.widget.table()->hiddenRowsText(), QString());
}

TEST(ConfirmTable, LayoutIsKept) {
    const CFakeHost host;
    CConfirmTable first;
    first.widget.table()->view()->setColumnWidth(3, 123);
    first.widget.table()->view()->horizontalHeader()->moveSection(2, 0);
    const QString config = first.widget.tableConfig();
    CConfirmTable second;
    second.widget.setTableConfig(config);
    EXPECT_EQ(second.widget.table()->view()->columnWidth(3), 123);
    EXPECT_EQ(second.widget.table()->view()->horizontalHeader()->logicalIndex(0), 2);
    EXPECT_EQ(second.widget.tableConfig(), config);
}

TEST(ConfirmTable, ColumnsFitTheOrders) {
    const CFakeHost host;
    CConfirmTable table;
    CCodeOrderParam longest = makeRecord();
    longest.m_stock.m_strName = "longer than its header";
    table.widget.setOrders({longest});
    const QTableView* view = table.widget.table()->view();
    EXPECT_GT(view->columnWidth(3), QFontMetrics(view->font()).horizontalAdvance(table.cell(0, 3)));
}

TEST(ConfirmTable, HelpOfTheMenuIsShown) {
    const CFakeHost host;
    CConfirmTable table(EQdTraderType::Stock, 1);
    table.widget.table()->findChild<QMenu*>()->actions().last()->trigger();
    bool isShown = false;
    for (const QWidget* each : QApplication::topLevelWidgets())
        isShown = isShown || (each->inherits("QWhatsThat") && each->isVisible());
    EXPECT_TRUE(isShown);
    QWhatsThis::hideText();
}

TEST(ConfirmTable, AvailableVolumeIsShownAgainForItsKind) {
    const CFakeHost host;
    CConfirmTable table;
    table.widget.setOrderKind(17);
    table.widget.setOrderKind(18);
    EXPECT_FALSE(table.widget.table()->isColumnHidden(6));
}

TEST(ConfirmTable, EmptyBatchHasNoRows) {
    const CFakeHost host;
    CConfirmTable table;
    table.widget.setOrders({});
    EXPECT_EQ(table.widget.table()->rowCount(), 0);
    EXPECT_EQ(table.widget.selectedRow(), -1);
    EXPECT_EQ(table.sum(7), QStringLiteral("-"));
    EXPECT_EQ(table.sum(10), QStringLiteral("-"));
    EXPECT_GT(table.widget.tableHeight(), 0);
}

TEST(ConfirmTable, FiveThousandRowsAreShown) {
    CFakeHost host;
    CConfirmTable table;
    table.widget.setOrders(std::vector<CCodeOrderParam>(5000, makeRecord(100)));
    EXPECT_EQ(table.widget.table()->rowCount(), 5000);
    EXPECT_EQ(table.sum(7), QStringLiteral("5250000.00"));
    EXPECT_EQ(table.sum(10), QStringLiteral("4750000.00"));
    EXPECT_EQ(host.quotes.subscribed.size(), 1u);
}

TEST(ConfirmTable, HeightGrowsWithTheRows) {
    const CFakeHost host;
    CConfirmTable table;
    table.widget.setOrders({makeRecord()});
    const int one = table.widget.tableHeight();
    table.widget.setOrders({makeRecord(), makeRecord(), makeRecord()});
    const int row = table.widget.table()->view()->verticalHeader()->defaultSectionSize();
    EXPECT_EQ(table.widget.tableHeight(), one + 2 * row);
}

TEST(ConfirmTable, TimerShowsTheMarketValuesTwiceASecond) {
    CFakeHost host;
    host.quotes.quotes.clear();
    CConfirmTable table;
    const auto timers = table.widget.findChildren<QTimer*>(QString(), Qt::FindDirectChildrenOnly);
    ASSERT_EQ(timers.size(), 1);
    EXPECT_EQ(timers[0]->interval(), 500);
    EXPECT_TRUE(timers[0]->isActive());
    table.widget.setOrders({makeRecord(100)});
    host.quotes.callbacks.at(QStringLiteral("SH600000"))(makeQuote(10));
    EXPECT_EQ(table.cell(0, 7), QStringLiteral("-"));
    QTimerEvent tick(timers[0]->timerId());
    QApplication::sendEvent(timers[0], &tick);
    EXPECT_EQ(table.cell(0, 7), QStringLiteral("1000.00"));
}

} // namespace
