// The size of the dialog and of its parts.
#include "orderservice/ui/RemarkLine.h"
#include "tests/ui/DialogFixture.h"

#include <QLabel>
#include <QScreen>
#include <QScrollBar>
#include <QTableView>

#include <algorithm>

namespace {

using namespace TC;

class DialogSize : public CDialogTest {};

TEST_F(DialogSize, SizeIsOfTheTable) {
    QSize size;
    int height = 0;
    show(orders, {}, [&](COrdersMessageBox& box) {
        size = box.size();
        height = box.table()->tableHeight();
        clickOk(box);
    });
    const QSize wish(1000, height + 30);
    const QSize least(462, 152), screen = QGuiApplication::primaryScreen()->availableSize();
    EXPECT_EQ(size,
              QSize(std::min(wish.width(), screen.width() - 2), std::max(wish.height(), least.height())));
}

TEST_F(DialogSize, FitsTheScreen) {
    std::map<int, CCodeOrderParam> many;
    for (int i = 0; i < 500; ++i)
        many[i] = makeRecord();
    show(many, {}, [](COrdersMessageBox& box) {
        const QSize screen = QGuiApplication::primaryScreen()->availableSize();
        EXPECT_LE(box.height(), screen.height());
        EXPECT_LE(box.width(), screen.width());
        EXPECT_TRUE(box.rect().contains(QRect(box.cancelButton()->mapTo(&box, QPoint()), QSize(80, 26))));
        clickOk(box);
    });
    EXPECT_TRUE(wasShown);
}

TEST_F(DialogSize, SizeIsTheWishWithinTheScreen) {
    const QSize frame(2, 32);
    EXPECT_EQ(COrdersMessageBox::boundedSize({1000, 300}, {1920, 1080}, frame), QSize(1000, 300));
    EXPECT_EQ(COrdersMessageBox::boundedSize({1000, 9000}, {1920, 1080}, frame), QSize(1000, 1048));
    EXPECT_EQ(COrdersMessageBox::boundedSize({1000, 9000}, {800, 600}, frame), QSize(798, 568));
    EXPECT_EQ(COrdersMessageBox::boundedSize({1000, 90}, {1920, 1080}, frame), QSize(1000, 152));
}

TEST_F(DialogSize, ButtonsFitASmallScreen) {
    show(orders, {}, [](COrdersMessageBox& box) {
        box.resize(798, 400);
        QCoreApplication::processEvents();
        EXPECT_EQ(box.width(), 798) << "the parts need more width";
        EXPECT_TRUE(box.rect().contains(QRect(box.cancelButton()->mapTo(&box, QPoint()), QSize(80, 26))));
        clickOk(box);
    });
    EXPECT_TRUE(wasShown);
}

TEST_F(DialogSize, LongSummaryLeavesTheButtonsInASmallDialog) {
    std::map<int, CCodeOrderParam> many;
    for (int i = 0; i < 5000; ++i) {
        many[i] = makeRecord(1234567890);
        if (i > 0) many[i].m_dPrice = kUnsetDouble;
    }
    show(many, {}, [](COrdersMessageBox& box) {
        EXPECT_EQ(box.summary(), QStringLiteral("共 5000 笔, 表内预估 11,728,394,955.00 (4999 笔无金额)"));
        for (const int width : {462, 600, 798}) {
            box.resize(width, 400);
            QCoreApplication::processEvents();
            EXPECT_EQ(box.width(), width) << "the parts need more width";
            EXPECT_TRUE(box.rect().contains(QRect(box.cancelButton()->mapTo(&box, QPoint()), QSize(80, 26))))
                << width;
        }
        const QLabel* summary = nullptr;
        for (const QLabel* each : box.findChildren<QLabel*>()) {
            if (each->text() == box.summary()) summary = each;
        }
        ASSERT_NE(summary, nullptr);
        EXPECT_TRUE(summary->toolTip().startsWith(box.summary()));
        EXPECT_EQ(summary->minimumSizeHint().width(), 0) << "a text that is cut ends with dots";
        EXPECT_GE(summary->width(), qMin(300, summary->sizeHint().width()))
            << "the remark line gives its width";
        EXPECT_GE(box.remarkEdit()->width(), 120);
        clickOk(box);
    });
    EXPECT_TRUE(wasShown);
}

TEST_F(DialogSize, AllRowsCanBeSeenOnALargeScreen) {
    for (const int rows : {3, 15}) {
        std::map<int, CCodeOrderParam> batch;
        for (int i = 0; i < rows; ++i)
            batch[i] = makeRecord();
        show(batch, {}, [&](COrdersMessageBox& box) {
            QCoreApplication::processEvents();
            EXPECT_EQ(box.table()->table()->view()->verticalScrollBar()->maximum(), 0) << rows;
            clickOk(box);
        });
        EXPECT_TRUE(wasShown);
    }
}

TEST_F(DialogSize, ColumnsOfALayoutGetWiderWhenQuotesCome) {
    host.quotes.quotes.clear();
    host.user.layouts[QStringLiteral("orders_confirm")] = QStringLiteral("1;7:30,8:30,10:30");
    CCodeOrderParam latest = makeRecord(100000000);
    latest.m_ePriceType = EPriceType::Latest;
    latest.m_dPrice = kUnsetDouble;
    show({{0, latest}}, {}, [&](COrdersMessageBox& box) {
        host.quotes.callbacks.at(QStringLiteral("SH600000"))(makeQuote(1000));
        box.table()->slotTimeout();
        const UW::CBaseNormalTable* table = box.table()->table();
        QFont bold = table->view()->font();
        bold.setBold(true);
        for (const int column : {7, 8, 10}) {
            EXPECT_GT(table->view()->columnWidth(column),
                      QFontMetrics(bold).horizontalAdvance(table->itemText(0, column)))
                << column;
        }
        EXPECT_FALSE(table->isLayoutChanged());
        clickOk(box);
    });
    EXPECT_TRUE(wasShown);
}

TEST_F(DialogSize, WidthIsThatOfALargeScreen) {
    EXPECT_EQ(COrdersMessageBox::sizeFor(270, {1920, 1080}, {2, 32}), QSize(1000, 300));
}

TEST_F(DialogSize, WithoutAParentItIsInTheMiddleOfTheScreen) {
    QPoint middle;
    show(orders, {}, [&](COrdersMessageBox& box) {
        middle = box.geometry().center();
        clickOk(box);
    });
    const QPoint distance = middle - QGuiApplication::primaryScreen()->availableGeometry().center();
    EXPECT_LE(distance.manhattanLength(), 4);
}

} // namespace
