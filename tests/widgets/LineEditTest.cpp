#include "orderservice/widgets/LineEdit.h"
#include "orderservice/widgets/CommonDialog.h"
#include "orderservice/widgets/Resources.h"
#include "orderservice/widgets/SimpleTextWidget.h"
#include "orderservice/widgets/WidgetList.h"

#include <QApplication>
#include <QPointer>
#include <QTest>

#include <gtest/gtest.h>

namespace {

TEST(LineEdit, HintHasItsTextColourAndFont) {
    UW::CLineEdit line;
    QFont hint = line.font();
    hint.setItalic(true);
    line.setEmptyHintText(QStringLiteral("hint"));
    line.setEmptyHintColor(Qt::red);
    line.setEmptyHintFont(hint);
    EXPECT_EQ(line.placeholderText(), QStringLiteral("hint"));
    EXPECT_EQ(line.palette().color(QPalette::PlaceholderText), QColor(Qt::red));
    EXPECT_TRUE(line.font().italic());
    line.setText(QStringLiteral("text"));
    EXPECT_FALSE(line.font().italic());
    line.clear();
    EXPECT_TRUE(line.font().italic());
}

TEST(LineEdit, OnlyChangesOfTheUserAreAnnounced) {
    UW::CLineEdit line;
    int edits = 0;
    QObject::connect(&line, &QLineEdit::textEdited, [&] { ++edits; });
    line.setText(QStringLiteral("text"));
    EXPECT_EQ(edits, 0);
    QTest::keyClicks(&line, QStringLiteral("x"));
    EXPECT_EQ(edits, 1);
}

TEST(SimpleTextWidget, TextIsNeverMarkup) {
    const UW::CSimpleTextWidget text(QStringLiteral("<b>x</b>"));
    EXPECT_EQ(text.textFormat(), Qt::PlainText);
    EXPECT_EQ(text.text(), QStringLiteral("<b>x</b>"));
}

TEST(WidgetList, WidgetsAreInARow) {
    UW::CWidgetList list;
    auto* first = new QWidget;
    auto* second = new QWidget;
    for (QWidget* widget : {first, second})
        widget->setFixedSize(30, 10);
    list.setMargins({15, 10, 15, 5});
    list.setSpacing(15);
    list.addWidget(first);
    list.addStretch();
    list.addWidget(second);
    list.resize(300, 25);
    list.show();
    EXPECT_EQ(first->x(), 15);
    EXPECT_EQ(second->x(), 300 - 15 - 30);
    EXPECT_EQ(first->y(), 10);
}

TEST(CommonDialog, LaterInnerWidgetReplacesTheFirst) {
    UW::CCommonDialog dialog;
    dialog.setTitle(QStringLiteral("title"));
    const QPointer<QWidget> first = new QWidget;
    dialog.setInnerWidget(first);
    dialog.setInnerWidget(new QWidget);
    EXPECT_TRUE(first.isNull());
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("title"));
}

TEST(Resources, NamesHaveTheirValues) {
    EXPECT_EQ(UW::resourceSize(QStringLiteral("tc_siz_setting_inner_bottom_btn_height")), 36);
    EXPECT_EQ(UW::resourceSize(QStringLiteral("unknown")), 0);
    EXPECT_EQ(UW::resourceColor(QStringLiteral("clr_disable_color")),
              QApplication::palette().color(QPalette::Disabled, QPalette::Text));
    EXPECT_EQ(UW::resourceFont(QStringLiteral("fnt_default_normal_fix")), QApplication::font());
}

} // namespace
