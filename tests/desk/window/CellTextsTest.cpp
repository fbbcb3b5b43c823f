// How the texts of a table's cells are drawn.
#include "desk/window/CellTexts.h"

#include <QApplication>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace {

constexpr int kWidth = 200;
constexpr int kHeight = 60;

/// What `draw` paints in red on white.
QImage drawn(desk::CCellTexts& texts, const QString& text, const QRect& rect,
             Qt::Alignment alignment = Qt::AlignLeft | Qt::AlignVCenter) {
    QImage image(kWidth, kHeight, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setPen(Qt::red);
    texts.draw(painter, rect, alignment, text, QApplication::font());
    return image;
}

/// The smallest rectangle that has all painted pixels.
QRect inkOf(const QImage& image) {
    QRect ink;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) != QColor(Qt::white)) ink |= QRect(x, y, 1, 1);
        }
    }
    return ink;
}

TEST(CellTexts, DrawsATextInsideItsRectangle) {
    desk::CCellTexts texts;
    const QRect rect(20, 10, 150, 30);
    const QRect ink = inkOf(drawn(texts, QStringLiteral("SH600104"), rect));
    EXPECT_FALSE(ink.isEmpty());
    EXPECT_TRUE(rect.contains(ink));
    EXPECT_LT(ink.left(), rect.left() + 5);
}

TEST(CellTexts, ANumberEndsAtTheRightEdge) {
    desk::CCellTexts texts;
    const QRect rect(20, 10, 150, 30);
    const QRect ink =
        inkOf(drawn(texts, QStringLiteral("31,890.00"), rect, Qt::AlignRight | Qt::AlignVCenter));
    EXPECT_TRUE(rect.contains(ink));
    EXPECT_GT(ink.right(), rect.right() - 5);
}

TEST(CellTexts, ATextThatIsTooWideEndsWithAnEllipsisInsideTheRectangle) {
    desk::CCellTexts texts;
    const QRect rect(20, 10, 60, 30);
    const QString text = QStringLiteral("not enough money for this order");
    ASSERT_GT(texts.width(text, QApplication::font()), rect.width());
    const QImage image = drawn(texts, text, rect);
    EXPECT_TRUE(rect.contains(inkOf(image)));
    const QString shown = QFontMetrics(QApplication::font()).elidedText(text, Qt::ElideRight, rect.width());
    EXPECT_EQ(image, drawn(texts, shown, rect));
}

TEST(CellTexts, TheSameTextIsShownWholeInAWiderRectangle) {
    desk::CCellTexts texts;
    const QString text = QStringLiteral("not enough money");
    const QImage narrow = drawn(texts, text, {0, 0, 40, 30});
    const QImage wide = drawn(texts, text, {0, 0, kWidth, 30});
    EXPECT_GT(inkOf(wide).width(), inkOf(narrow).width());
    EXPECT_EQ(narrow, drawn(texts, text, {0, 0, 40, 30})); // kept texts do not change
}

TEST(CellTexts, LinesAreDrawnOnOneLine) {
    desk::CCellTexts texts;
    const QRect rect(0, 0, kWidth, kHeight);
    const QImage lines =
        drawn(texts, QStringLiteral("first") + QChar(QChar::LineSeparator) + QStringLiteral("second"), rect);
    EXPECT_EQ(lines, drawn(texts, QStringLiteral("first second"), rect));
}

TEST(CellTexts, AnotherFontIsUsedAtOnce) {
    desk::CCellTexts texts;
    QFont large = QApplication::font();
    large.setPixelSize(QFontMetrics(large).height() * 2);
    const QString text = QStringLiteral("600104");
    const int before = texts.width(text, QApplication::font());
    EXPECT_GT(texts.width(text, large), before);
    EXPECT_EQ(texts.width(text, QApplication::font()), before);
}

TEST(CellTexts, NothingIsDrawnForAnEmptyTextOrRectangle) {
    desk::CCellTexts texts;
    EXPECT_TRUE(inkOf(drawn(texts, QString(), {0, 0, kWidth, kHeight})).isEmpty());
    EXPECT_TRUE(inkOf(drawn(texts, QStringLiteral("text"), QRect())).isEmpty());
}

} // namespace
