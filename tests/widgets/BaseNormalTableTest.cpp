#include "orderservice/widgets/BaseNormalTable.h"
#include "orderservice/widgets/SimpleTextWidget.h"
#include "orderservice/widgets/TableModel.h"
#include "tests/support/FakeClock.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QTableView>
#include <QTest>

#include <gtest/gtest.h>

namespace {

/// A table that tells which filter the user asked for.
class CTable : public UW::CBaseNormalTable {
public:
    void showFilterMenu(int column, const QPoint&) override { asked.push_back(column); }
    std::vector<int> asked;
};

/// A name and a number in each of three rows.
class BaseNormalTable : public testing::Test {
protected:
    void SetUp() override {
        table.setColumnHeader(0, QStringLiteral("名称"));
        table.setColumnHeader(1, QStringLiteral("数量"));
        table.setColumnIsNumber(1, true);
        table.setColumnFilterable(1, true);
        table.setRowCount(3);
        const int numbers[] = {30, 4, 100};
        for (int row = 0; row < 3; ++row) {
            table.setItemText(row, 0, QStringLiteral("r%1").arg(row));
            table.setItemLonglong(row, 1, numbers[row]);
        }
    }
    void clickHeader(int column, int fromLeft = 60) {
        const QHeaderView* header = table.view()->horizontalHeader();
        const int left = header->sectionViewportPosition(column);
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, {left + fromLeft, header->height() / 2});
    }
    std::vector<int> shownRows() const {
        std::vector<int> rows;
        for (int place = 0; place < table.view()->model()->rowCount(); ++place)
            rows.push_back(table.rowID(place));
        return rows;
    }
    bool isFlashing(int row, int column) const {
        return table.view()->model()->index(row, column).data(UW::CTableModel::FlashRole).toBool();
    }

    CFakeClock clock;
    CTable table;
};

TEST_F(BaseNormalTable, CellsWithoutAValueShowADash) {
    table.setRowCount(1);
    EXPECT_EQ(table.itemText(0, 0), QStringLiteral("-"));
}

TEST_F(BaseNormalTable, NumbersHaveFixedDecimals) {
    table.setItemDouble(0, 1, 12.5, 2);
    EXPECT_EQ(table.itemText(0, 1), QStringLiteral("12.50"));
    table.setItemLonglong(0, 1, 9007199254740993);
    EXPECT_EQ(table.itemText(0, 1), QStringLiteral("9007199254740993"));
}

TEST_F(BaseNormalTable, CellsOutsideAreIgnored) {
    table.setItemText(3, 0, QStringLiteral("x"));
    table.setItemText(0, 2, QStringLiteral("x"));
    table.setItemText(-1, -1, QStringLiteral("x"));
    EXPECT_EQ(table.rowCount(), 3);
    EXPECT_EQ(table.rowID(3), -1);
}

TEST_F(BaseNormalTable, HeaderSortsUpDownAndBack) {
    table.resize(600, 300);
    table.show();
    table.view()->setColumnWidth(1, 120);
    clickHeader(1);
    EXPECT_EQ(shownRows(), (std::vector<int>{1, 0, 2}));
    clickHeader(1);
    EXPECT_EQ(shownRows(), (std::vector<int>{2, 0, 1}));
    clickHeader(1);
    EXPECT_EQ(shownRows(), (std::vector<int>{0, 1, 2}));
}

TEST_F(BaseNormalTable, RowsDoNotMoveIfANumberChanges) {
    table.resize(600, 300);
    table.show();
    table.view()->setColumnWidth(1, 120);
    clickHeader(1);
    table.setItemLonglong(1, 1, 1000);
    EXPECT_EQ(shownRows(), (std::vector<int>{1, 0, 2}));
}

TEST_F(BaseNormalTable, RowNumbersAreThoseOfTheRecords) {
    table.setColumnFilter(1, {QStringLiteral("100")});
    EXPECT_EQ(shownRows(), (std::vector<int>{2}));
    EXPECT_EQ(table.hiddenRows(), 2);
    table.setSelectedRow(2);
    EXPECT_EQ(table.selectedRow(), 2);
    table.clearFilter();
    EXPECT_EQ(shownRows(), (std::vector<int>{0, 1, 2}));
    EXPECT_EQ(table.selectedRow(), 2);
}

TEST_F(BaseNormalTable, FiltersOfTwoColumnsBothApply) {
    table.setColumnFilter(1, {QStringLiteral("30"), QStringLiteral("4")});
    table.setColumnFilter(0, {QStringLiteral("r1"), QStringLiteral("r2")});
    EXPECT_EQ(shownRows(), (std::vector<int>{1}));
    table.setColumnFilter(1, {});
    EXPECT_EQ(shownRows(), (std::vector<int>{1, 2}));
}

TEST_F(BaseNormalTable, FilterIsAskedByItsButtonAndByTheKeyboard) {
    table.resize(600, 300);
    table.show();
    table.view()->setColumnWidth(1, 120);
    clickHeader(1, 10);
    EXPECT_EQ(table.asked, (std::vector<int>{1}));
    EXPECT_EQ(shownRows(), (std::vector<int>{0, 1, 2})) << "the button does not sort";
    table.view()->setCurrentIndex(table.view()->model()->index(0, 1));
    QTest::keyClick(table.view(), Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(table.asked, (std::vector<int>{1, 1}));
    table.view()->setCurrentIndex(table.view()->model()->index(0, 0));
    QTest::keyClick(table.view(), Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(table.asked.size(), 2u) << "column 0 has no filter";
}

TEST_F(BaseNormalTable, FilterButtonOfTextsIsAtTheRight) {
    table.setColumnFilterable(0, true);
    table.resize(600, 300);
    table.show();
    table.view()->setColumnWidth(0, 120);
    clickHeader(0, 110);
    EXPECT_EQ(table.asked, (std::vector<int>{0}));
    clickHeader(0, 10);
    EXPECT_EQ(table.asked.size(), 1u);
}

TEST_F(BaseNormalTable, ChangedCellFlashesFor400Milliseconds) {
    table.setColumnFlashChange(1, true);
    table.setItemLonglong(0, 1, 31);
    EXPECT_TRUE(isFlashing(0, 1));
    EXPECT_FALSE(isFlashing(1, 1));
    clock.sleep(0.39);
    table.slotFlashEnd();
    EXPECT_TRUE(isFlashing(0, 1));
    clock.sleep(0.02);
    table.slotFlashEnd();
    EXPECT_FALSE(isFlashing(0, 1));
}

TEST_F(BaseNormalTable, SameTextAndFirstTextDoNotFlash) {
    table.setColumnFlashChange(1, true);
    table.setItemLonglong(0, 1, 30);
    EXPECT_FALSE(isFlashing(0, 1));
    table.setRowCount(1);
    table.setItemLonglong(0, 1, 30);
    EXPECT_FALSE(isFlashing(0, 1));
}

TEST_F(BaseNormalTable, CellFlashesAtMostFiveTimesASecond) {
    table.setColumnFlashChange(1, true);
    table.setItemLonglong(0, 1, 31);
    clock.sleep(0.1);
    table.setItemLonglong(0, 1, 32); // too early: the first flash is not prolonged
    clock.sleep(0.31);
    table.slotFlashEnd();
    EXPECT_FALSE(isFlashing(0, 1));
    table.setItemLonglong(0, 1, 33);
    EXPECT_TRUE(isFlashing(0, 1));
}

TEST_F(BaseNormalTable, ManyChangesAreDrawnOnce) {
    int signalsSeen = 0;
    QObject::connect(table.view()->model(), &QAbstractItemModel::dataChanged, [&] { ++signalsSeen; });
    table.beginUpdate();
    for (int row = 0; row < 3; ++row)
        table.setItemLonglong(row, 1, row + 500);
    EXPECT_EQ(signalsSeen, 0);
    table.endUpdate();
    EXPECT_EQ(signalsSeen, 1);
}

TEST_F(BaseNormalTable, CopyIsTextWithTabsAndTheHeaders) {
    table.view()->selectRow(1);
    QTest::keyClick(table.view(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("名称\t数量\nr1\t4"));
    table.view()->horizontalHeader()->moveSection(1, 0);
    EXPECT_EQ(table.selectedText(), QStringLiteral("数量\t名称\n4\tr1"));
    table.setColumnHidden(0, true);
    table.view()->selectAll();
    EXPECT_EQ(table.selectedText(), QStringLiteral("数量\n30\n4\n100"));
}

TEST_F(BaseNormalTable, LayoutIsSavedAndDamagedOnesAreIgnored) {
    table.view()->setColumnWidth(0, 150);
    table.view()->setColumnWidth(1, 90);
    table.view()->horizontalHeader()->moveSection(1, 0);
    EXPECT_EQ(table.saveConfigStr(), QStringLiteral("1;1:90,0:150"));
    for (const char* text : {"", "x", "2;0:10,1:20", "1;0:10,", "1;0:10,0:20", "1;-1:10", "1;0:999999"}) {
        table.loadConfigStr(QString::fromLatin1(text));
        EXPECT_EQ(table.saveConfigStr(), QStringLiteral("1;1:90,0:150")) << text;
    }
    const int least = std::max(20, table.view()->horizontalHeader()->minimumSectionSize());
    table.loadConfigStr(QStringLiteral("1;1:70,0:3,7:80"));
    EXPECT_EQ(table.saveConfigStr(), QStringLiteral("1;1:70,0:%1").arg(least));
}

TEST_F(BaseNormalTable, SavedWidthDoesNotCutNumbers) {
    table.setItemText(0, 0, QString(20, QLatin1Char('m')));
    table.setItemDouble(2, 1, 123456789012.25, 2);
    table.loadConfigStr(QStringLiteral("1;1:30,0:30"));
    EXPECT_GT(table.view()->columnWidth(1), table.fontMetrics().horizontalAdvance(table.itemText(2, 1)));
    EXPECT_LT(table.view()->columnWidth(0), 60) << "a text may be cut";
    table.loadConfigStr(QStringLiteral("1;1:250"));
    EXPECT_EQ(table.view()->columnWidth(1), 250);
}

TEST_F(BaseNormalTable, OnlyTheUserChangesTheLayout) {
    table.adjustVisibleRowsColumnWidth();
    table.loadConfigStr(QStringLiteral("1;1:90,0:150"));
    table.setColumnHidden(0, true);
    table.setColumnHidden(0, false);
    table.setRowCount(5);
    EXPECT_FALSE(table.isLayoutChanged());
    table.view()->setColumnWidth(0, 77);
    EXPECT_TRUE(table.isLayoutChanged());
}

TEST_F(BaseNormalTable, MovedColumnChangesTheLayout) {
    table.view()->horizontalHeader()->moveSection(1, 0);
    EXPECT_TRUE(table.isLayoutChanged());
}

TEST_F(BaseNormalTable, SavedColumnIsFoundByItsKey) {
    table.setColumnKey(1, QStringLiteral("amount_1"));
    table.view()->setColumnWidth(0, 70);
    table.view()->setColumnWidth(1, 90);
    EXPECT_EQ(table.saveConfigStr(), QStringLiteral("1;0:70,amount_1:90"));
    table.loadConfigStr(QStringLiteral("1;1:200,amount_1:110,0:80"));
    EXPECT_EQ(table.saveConfigStr(), QStringLiteral("1;amount_1:110,0:80"));
}

TEST_F(BaseNormalTable, EditMustMeetTheRule) {
    table.setColumnEditable(1, true);
    table.setColumnEditor(1, [](int row) { return UW::CNumberRule{1, row == 2 ? 2 : 0}; });
    int edits = 0;
    QObject::connect(&table, &UW::CBaseNormalTable::sigItemEdited, [&] { ++edits; });
    QAbstractItemModel* model = table.view()->model();
    for (const char* text : {"0", "-5", "1.5", "1.", "1,000", "1e3", "", "x", "2147483647", "5\n"})
        EXPECT_FALSE(model->setData(model->index(0, 1), QString::fromLatin1(text), Qt::EditRole)) << text;
    EXPECT_FALSE(model->setData(model->index(2, 1), QStringLiteral("1.255"), Qt::EditRole));
    EXPECT_EQ(edits, 0);
    EXPECT_TRUE(model->setData(model->index(0, 1), QStringLiteral("2147483646"), Qt::EditRole));
    EXPECT_TRUE(model->setData(model->index(2, 1), QStringLiteral("1.25"), Qt::EditRole));
    EXPECT_EQ(edits, 2);
}

TEST_F(BaseNormalTable, SumRowHasTheWidthsOfTheColumns) {
    table.setStatText(1, QStringLiteral("134"));
    EXPECT_EQ(table.statText(1), QStringLiteral("134"));
    EXPECT_EQ(table.statText(0), QString());
    table.view()->setColumnWidth(1, 77);
    const QTableView* sums = nullptr;
    for (const QTableView* view : table.findChildren<QTableView*>()) {
        if (view != table.view()) sums = view;
    }
    ASSERT_NE(sums, nullptr);
    EXPECT_EQ(sums->columnWidth(1), 77);
    table.view()->horizontalHeader()->moveSection(1, 0);
    EXPECT_EQ(sums->horizontalHeader()->logicalIndex(0), 1);
    table.setColumnHidden(0, true);
    EXPECT_TRUE(sums->isColumnHidden(0));
}

TEST_F(BaseNormalTable, WidthsFitTheTexts) {
    table.setItemText(0, 0, QString(40, QLatin1Char('m')));
    table.setItemText(2, 1, QString(20, QLatin1Char('8')));
    table.adjustVisibleRowsColumnWidth();
    EXPECT_GT(table.view()->columnWidth(1), table.fontMetrics().horizontalAdvance(table.itemText(2, 1)));
    EXPECT_GT(table.view()->columnWidth(0), table.view()->columnWidth(1));
    EXPECT_LE(table.view()->columnWidth(0), 320);
}

TEST_F(BaseNormalTable, EditIsAnnouncedAndTheCellKeepsItsText) {
    table.setColumnEditable(1, true);
    std::vector<QString> edits;
    QObject::connect(&table, &UW::CBaseNormalTable::sigItemEdited,
                     [&](int row, int column, const QString& text) {
                         edits.push_back(QStringLiteral("%1 %2 %3").arg(row).arg(column).arg(text));
                     });
    QAbstractItemModel* model = table.view()->model();
    model->setData(model->index(2, 1), QStringLiteral("7"), Qt::EditRole);
    model->setData(model->index(2, 1), QStringLiteral("100"), Qt::EditRole); // no change
    model->setData(model->index(2, 0), QStringLiteral("x"), Qt::EditRole);   // cannot be edited
    EXPECT_EQ(edits, (std::vector<QString>{QStringLiteral("2 1 7")}));
    EXPECT_EQ(table.itemText(2, 1), QStringLiteral("100"));
}

TEST_F(BaseNormalTable, HiddenRowsAreNamedBelowTheTable) {
    const auto lines = table.findChildren<UW::CSimpleTextWidget*>();
    ASSERT_EQ(lines.size(), 1);
    table.setColumnFilter(0, {table.itemText(0, 0)});
    ASSERT_EQ(table.hiddenRows(), 2);
    EXPECT_EQ(table.hiddenRowsText(), QStringLiteral("筛选隐藏了 2 行; 合计包含所有行"));
    EXPECT_EQ(lines[0]->text(), table.hiddenRowsText());
    table.setHiddenRowsText(QStringLiteral("(%1)"));
    EXPECT_EQ(lines[0]->text(), QStringLiteral("(2)"));
    EXPECT_FALSE(lines[0]->isHidden());
    table.clearFilter();
    EXPECT_EQ(table.hiddenRowsText(), QString());
    EXPECT_TRUE(lines[0]->isHidden());
}

TEST_F(BaseNormalTable, LongestNumberOfAnyRowIsSeenWhole) {
    table.setRowCount(300);
    table.beginUpdate();
    table.setItemText(200, 1, QStringLiteral("123456789012345"));
    table.endUpdate();
    const QFontMetrics metrics(table.view()->font());
    const int needed = metrics.horizontalAdvance(QStringLiteral("123456789012345"));
    EXPECT_GT(table.view()->columnWidth(1), needed);
    table.view()->setColumnWidth(1, 400);
    table.beginUpdate();
    table.setItemText(201, 1, QStringLiteral("1234567890123456"));
    table.endUpdate();
    EXPECT_EQ(table.view()->columnWidth(1), 400) << "no width is taken away";
    table.adjustVisibleRowsColumnWidth();
    EXPECT_GT(table.view()->columnWidth(1), needed);
    EXPECT_LT(table.view()->columnWidth(1), 400);
}

} // namespace
