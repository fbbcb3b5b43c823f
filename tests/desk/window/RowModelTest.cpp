#include "desk/window/RowModel.h"

#include "desk/window/RowFilter.h"
#include "tests/support/FakeClock.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace {

using namespace desk;

const CTableSpec kNewest{"newest", {{"key", "Key"}, {"n", "Number", ECell::Money, 80, true, true}}, true, 3};
const CTableSpec kPlain{"plain", {{"key", "Key"}, {"n", "Number", ECell::Money, 80, true, true}}};

CRow row(const char* key, double number, ERowMark mark = ERowMark::None) {
    return {QString::fromLatin1(key), {QString::fromLatin1(key), number}, mark};
}

QString keys(const QAbstractItemModel& model) {
    QStringList all;
    for (int i = 0; i < model.rowCount(); ++i)
        all.append(model.index(i, 0).data(CRowModel::KeyRole).toString());
    return all.join(QLatin1Char(' '));
}

TEST(RowModel, NewestRowsAreAtTheTop) {
    CRowModel model(kNewest);
    model.apply({row("a", 1), row("b", 2)});
    model.apply({row("c", 3)});
    EXPECT_EQ(keys(model), "c b a");
}

TEST(RowModel, AKnownKeyChangesItsRowOnly) {
    CRowModel model(kNewest);
    model.apply({row("a", 1), row("b", 2)});
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    model.apply({row("a", 5)});
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(inserted.count(), 0);
    EXPECT_EQ(changed[0][0].toModelIndex().row(), 1);
    EXPECT_EQ(model.find("a")->m_cells[1].toDouble(), 5);
}

TEST(RowModel, AnUnchangedRowChangesNothing) {
    CRowModel model(kPlain);
    model.apply({row("a", 1)});
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    model.apply({row("a", 1)});
    EXPECT_EQ(changed.count(), 0);
}

TEST(RowModel, OfAKeyThatIsTwiceInABatchTheLastIsUsed) {
    CRowModel model(kPlain);
    model.apply({row("a", 1), row("a", 2)});
    ASSERT_EQ(model.rowCount(), 1);
    EXPECT_EQ(model.find("a")->m_cells[1].toDouble(), 2);
}

TEST(RowModel, OldestRowsAreDroppedAndTheOthersAreStillFound) {
    CRowModel model(kNewest);
    model.apply({row("a", 1), row("b", 2), row("c", 3)});
    model.apply({row("d", 4)});
    EXPECT_EQ(keys(model), "d c b");
    EXPECT_EQ(model.find("a"), nullptr);
    model.apply({row("b", 9)});
    EXPECT_EQ(model.find("b")->m_cells[1].toDouble(), 9);
    EXPECT_EQ(model.rowCount(), 3);
}

TEST(RowModel, ARowThatWaitsIsNotDropped) {
    CRowModel model(kNewest);
    model.apply({row("a", 1), row("b", 2, ERowMark::Waiting), row("c", 3)});
    model.apply({row("d", 4), row("e", 5)});
    EXPECT_EQ(keys(model), "e d c b");
    model.apply({row("b", 9)});
    EXPECT_EQ(keys(model), "e d c");
    EXPECT_EQ(model.find("c")->m_cells[1].toDouble(), 3);
}

TEST(RowModel, RetainRemovesOtherRows) {
    CRowModel model(kPlain);
    model.apply({row("a", 1), row("b", 2), row("c", 3)});
    model.retain({"a", "c"});
    EXPECT_EQ(keys(model), "a c");
    model.apply({row("c", 7)});
    EXPECT_EQ(model.find("c")->m_cells[1].toDouble(), 7);
}

TEST(RowModel, ACellFlashesForFourHundredMilliseconds) {
    CFakeClock clock;
    CRowModel model(kPlain);
    model.apply({row("a", 1)});
    EXPECT_EQ(model.index(0, 1).data(CRowModel::FlashRole).toInt(), 0);
    model.apply({row("a", 2)});
    EXPECT_EQ(model.index(0, 1).data(CRowModel::FlashRole).toInt(), 1);
    clock.sleep(0.35);
    EXPECT_TRUE(model.expireFlashes());
    clock.sleep(0.1);
    EXPECT_FALSE(model.expireFlashes());
    EXPECT_EQ(model.index(0, 1).data(CRowModel::FlashRole).toInt(), 0);
}

TEST(RowModel, ACellStartsToFlashAtMostFiveTimesASecond) {
    CFakeClock clock;
    CRowModel model(kPlain);
    model.apply({row("a", 1)});
    model.apply({row("a", 2)});
    clock.sleep(0.1);
    model.apply({row("a", 1)});
    EXPECT_EQ(model.index(0, 1).data(CRowModel::FlashRole).toInt(), 1);
    clock.sleep(0.31);
    EXPECT_FALSE(model.expireFlashes()); // the second change has not started the flash again
}

TEST(RowModel, NumbersHaveFixedDecimalsAndGroups) {
    EXPECT_EQ(cellText(ECell::Money, 1234567.5), "1,234,567.50");
    EXPECT_EQ(plainCellText(ECell::Money, 1234567.5), "1234567.50");
    EXPECT_EQ(cellText(ECell::Price, 9.5), "9.500");
    EXPECT_EQ(cellText(ECell::Price, 0.1234), "0.1234");
    EXPECT_EQ(cellText(ECell::Count, 12000), "12,000");
    EXPECT_EQ(cellText(ECell::Price, QVariant()), "");
}

TEST(RowFilter, WithoutASortColumnTheOrderIsThatOfTheModel) {
    CRowModel model(kNewest);
    CRowFilter filter;
    filter.setSourceModel(&model);
    model.apply({row("a", 3), row("b", 1)});
    model.apply({row("c", 2)});
    EXPECT_EQ(keys(filter), "c b a");
    filter.sort(1);
    EXPECT_EQ(keys(filter), "b c a");
    filter.sort(-1);
    EXPECT_EQ(keys(filter), "c b a");
}

TEST(RowFilter, TheTotalIsFirstInEachOrderAndNeverHidden) {
    CRowModel model(kPlain);
    CRowFilter filter;
    filter.setSourceModel(&model);
    model.apply({row("a", 3), row("total", 4, ERowMark::Total), row("b", 1)});
    filter.sort(1, Qt::AscendingOrder);
    EXPECT_EQ(keys(filter), "total b a");
    filter.sort(1, Qt::DescendingOrder);
    EXPECT_EQ(keys(filter), "total a b");
    filter.setColumnFilter(0, "b");
    EXPECT_EQ(keys(filter), "total b");
    EXPECT_EQ(filter.hiddenRows(), 1);
}

TEST(RowFilter, NumbersAreCompared) {
    CRowModel model(kPlain);
    CRowFilter filter;
    filter.setSourceModel(&model);
    model.apply({row("a", 3), row("b", 10), row("c", 1000)});
    filter.setColumnFilter(1, ">3");
    EXPECT_EQ(keys(filter), "b c");
    filter.setColumnFilter(1, "<10");
    EXPECT_EQ(keys(filter), "a");
    filter.setColumnFilter(1, "=10");
    EXPECT_EQ(keys(filter), "b");
    filter.setColumnFilter(1, "1000.0");
    EXPECT_EQ(keys(filter), "c");
    filter.clearFilters();
    EXPECT_EQ(filter.hiddenRows(), 0);
}

} // namespace
