#include "desk/window/TableView.h"

#include "desk/window/Theme.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QScrollBar>
#include <QSettings>
#include <QTest>

#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

namespace {

using namespace desk;

const CTableSpec kSpec{
    "view", {{"key", "Key"}, {"n", "Number", ECell::Money}, {"text", "Text", ECell::Text, 200}}, true};

CRow row(int number, const char* text = "") {
    return {QString::number(number), {QString::number(number), number * 1000.5, QString::fromUtf8(text)}, {}};
}

class TableView : public testing::Test {
protected:
    TableView() {
        view.resize(400, 200);
        view.show();
        view.setFocus();
    }
    void fill(int count) {
        std::vector<CRow> rows;
        for (int i = 1; i <= count; ++i)
            rows.push_back(row(i));
        model.apply(rows);
        QCoreApplication::processEvents();
    }
    QString topKey() const { return view.indexAt({5, 5}).data(CRowModel::KeyRole).toString(); }

    CRowModel model{kSpec};
    CTableView view{model};
};

TEST_F(TableView, TheRowsThatTheUserReadsStayWhenNewOnesCome) {
    fill(100);
    EXPECT_EQ(topKey(), "100");
    view.verticalScrollBar()->setValue(40);
    const QString before = topKey();
    EXPECT_EQ(before, "60");
    model.apply({row(101), row(102), row(103)});
    QCoreApplication::processEvents();
    EXPECT_EQ(topKey(), before);
}

TEST_F(TableView, AtTheTopTheNewestRowIsShown) {
    fill(100);
    model.apply({row(101)});
    QCoreApplication::processEvents();
    EXPECT_EQ(topKey(), "101");
}

TEST_F(TableView, CopiesTheSelectedRowsWithTabsAndTitles) {
    model.apply({row(1, "a\tb"), row(2, "买入")});
    view.selectRow(0);
    QTest::keySequence(&view, QKeySequence::Copy);
    EXPECT_EQ(QApplication::clipboard()->text(), QString::fromUtf8("Key\tNumber\tText\n2\t2001.00\t买入\n"));
}

TEST_F(TableView, WithoutASelectionAllShownRowsAreCopied) {
    model.apply({row(1, "a\tb"), row(2)});
    EXPECT_EQ(view.copyText(), "Key\tNumber\tText\n2\t2001.00\t\n1\t1000.50\ta b\n");
}

TEST_F(TableView, CsvQuotesSpecialFields) {
    model.apply({row(1, "a,\"b\"\nc")});
    EXPECT_EQ(view.csvText(), "Key,Number,Text\n1,1000.50,\"a,\"\"b\"\"\nc\"\n");
}

TEST_F(TableView, ATextOfACsvFileIsNeverAFormula) {
    CRow negative = row(-2, "=1+1");
    model.apply({negative, row(3, "+a"), row(4, "-b"), row(5, "@c"), row(6, "a=b")});
    EXPECT_EQ(view.csvText(), "Key,Number,Text\n6,6003.00,a=b\n5,5002.50,'@c\n4,4002.00,'-b\n3,3001.50,'+a\n"
                              "'-2,-2001.00,'=1+1\n");
    EXPECT_TRUE(view.copyText().contains("\t=1+1\n"));
}

TEST_F(TableView, ACsvFileIsWrittenWholeOrNotAtAll) {
    const CTempFolder folder;
    model.apply({row(1, "买入")});
    EXPECT_EQ(view.writeCsv(QString::fromStdString(folder.path("a.csv"))), "");
    EXPECT_EQ(folder.read("a.csv"), "\xEF\xBB\xBFKey,Number,Text\n1,1000.50,买入\n");
    EXPECT_NE(view.writeCsv(QString::fromStdString(folder.path("none/a.csv"))), "");
}

TEST_F(TableView, AToolTipShowsSignsOfMarkupAsTheyAre) {
    model.apply({row(1, "<b>a</b> & b")});
    EXPECT_EQ(model.index(0, 2).data(Qt::ToolTipRole).toString(), "<p>&lt;b&gt;a&lt;/b&gt; &amp; b</p>");
    model.apply({row(1, "")});
    EXPECT_FALSE(model.index(0, 2).data(Qt::ToolTipRole).isValid());
}

TEST_F(TableView, FilterFieldsHideRowsUntilEscape) {
    model.apply({row(1, "one"), row(2, "two")});
    view.filterHeader().showFilters(true);
    ASSERT_NE(view.filterHeader().field(2), nullptr);
    QTest::keyClicks(view.filterHeader().field(2), "TWO");
    EXPECT_EQ(view.filter().rowCount(), 1);
    EXPECT_EQ(view.filter().hiddenRows(), 1);
    QTest::keyClick(&view, Qt::Key_Escape);
    EXPECT_EQ(view.filter().rowCount(), 2);
    EXPECT_FALSE(view.filterHeader().areFiltersShown());
    view.filterHeader().showFilters(true);
    QTest::keyClick(&view, Qt::Key_Escape);
    EXPECT_FALSE(view.filterHeader().areFiltersShown()) << "also if all fields are empty";
}

TEST_F(TableView, AClickOnTheTitleSorts) {
    fill(3);
    QTest::mouseClick(view.horizontalHeader()->viewport(), Qt::LeftButton, {},
                      {view.horizontalHeader()->sectionViewportPosition(1) + 10, 5});
    EXPECT_EQ(topKey(), "1");
}

TEST_F(TableView, EnterActivatesTheSelectedRows) {
    fill(3);
    QStringList activated;
    QObject::connect(&view, &CTableView::sigActivated, [&](const QStringList& keys) { activated = keys; });
    view.selectRow(1);
    QTest::keyClick(&view, Qt::Key_Return);
    EXPECT_EQ(activated, QStringList{"2"});
}

TEST_F(TableView, ARowThatIsNotMarkedIsNotActivated) {
    fill(3);
    view.setCurrentIndex(view.filter().index(1, 0));
    view.clearSelection();
    QStringList activated;
    QObject::connect(&view, &CTableView::sigActivated, [&](const QStringList& keys) { activated = keys; });
    QTest::keyClick(&view, Qt::Key_Return);
    EXPECT_EQ(activated, QStringList());
    EXPECT_EQ(view.selectedKeys(), QStringList());
}

TEST_F(TableView, AColumnBecomesWideEnoughForItsNumbers) {
    fill(1);
    view.setColumnWidth(1, 40);
    model.apply({row(1000000)});
    view.grab();
    QCoreApplication::processEvents();
    const int width = view.fontMetrics().horizontalAdvance(QStringLiteral("1,000,500,000.00"));
    EXPECT_GT(view.columnWidth(1), width);
}

TEST_F(TableView, ATitleIsShownWhole) {
    for (int column = 0; column < 3; ++column) {
        const QString title = model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
        EXPECT_GT(view.columnWidth(column), view.fontMetrics().horizontalAdvance(title)) << column;
    }
}

TEST_F(TableView, ColumnWidthsAndOrderAreKept) {
    const CTempFolder folder;
    QSettings settings(QString::fromStdString(folder.path("layout.ini")), QSettings::IniFormat);
    view.setColumnWidth(0, 123);
    view.horizontalHeader()->moveSection(0, 1);
    view.saveLayout(settings);
    CTableView other(model);
    other.restoreLayout(settings);
    EXPECT_EQ(other.columnWidth(0), 123);
    EXPECT_EQ(other.horizontalHeader()->visualIndex(0), 1);
}

TEST(Theme, TextsHaveEnoughContrast) {
    constexpr double kLeast = 4.5;
    for (const bool isDark : {false, true}) {
        CTheme::apply(*qApp, CTheme(isDark, true));
        const CTheme& theme = CTheme::current();
        for (const QColor& background :
             {theme.base(), qApp->palette().color(QPalette::AlternateBase), theme.flash()})
            for (const QColor& text : {theme.text(), theme.rise(), theme.fall(), theme.warning()})
                EXPECT_GE(contrast(text, background), kLeast)
                    << text.name().toStdString() << " on " << background.name().toStdString();
        EXPECT_GE(contrast(theme.off(), theme.base()), kLeast);
    }
    for (int state = 0; state <= static_cast<int>(EDeskState::Ending); ++state)
        EXPECT_GE(contrast(Qt::white, CTheme::stateColour(static_cast<EDeskState>(state))), kLeast) << state;
    CTheme::apply(*qApp, CTheme(false, true));
}

TEST(Theme, RedIsUpUnlessTheUserChangesIt) {
    EXPECT_EQ(CTheme(false, true).rise(), CTheme(false, false).fall());
    EXPECT_GT(CTheme(false, true).rise().red(), CTheme(false, true).rise().green());
}

} // namespace
