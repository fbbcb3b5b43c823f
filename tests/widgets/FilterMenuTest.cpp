#include "orderservice/widgets/FilterMenu.h"

#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace {

using CTexts = std::set<QString>;

class FilterMenu : public testing::Test {
protected:
    void open(const CTexts* chosen = nullptr) {
        menu = new UW::CFilterMenu({QStringLiteral("A1"), QStringLiteral("A2"), QStringLiteral("B1")}, chosen,
                                   &parent);
        QObject::connect(menu, &UW::CFilterMenu::sigChosen, [this](const CTexts& texts) { result = texts; });
    }
    void uncheck(int item) { menu->list()->item(item)->setCheckState(Qt::Unchecked); }

    QWidget parent;
    UW::CFilterMenu* menu = nullptr; ///< the parent owns it
    std::optional<CTexts> result;
};

TEST_F(FilterMenu, CheckedTextsAreChosen) {
    open();
    uncheck(0);
    menu->slotApply();
    EXPECT_EQ(result, (CTexts{QStringLiteral("A2"), QStringLiteral("B1")}));
}

TEST_F(FilterMenu, AllTextsEndTheFilter) {
    open();
    menu->slotApply();
    EXPECT_EQ(result, CTexts());
}

TEST_F(FilterMenu, ShowsThePresentChoice) {
    const CTexts chosen{QStringLiteral("A2")};
    open(&chosen);
    EXPECT_EQ(menu->list()->item(0)->checkState(), Qt::Unchecked);
    EXPECT_EQ(menu->list()->item(1)->checkState(), Qt::Checked);
    menu->slotClear();
    EXPECT_EQ(result, CTexts());
}

TEST_F(FilterMenu, SearchedTextsAreChosenByEnter) {
    open();
    QTest::keyClicks(menu->searchLine(), QStringLiteral("a"));
    EXPECT_TRUE(menu->list()->item(2)->isHidden());
    QTest::keyClick(menu->searchLine(), Qt::Key_Return);
    EXPECT_EQ(result, (CTexts{QStringLiteral("A1"), QStringLiteral("A2")}));
}

TEST_F(FilterMenu, EnterInTheListChooses) {
    open();
    uncheck(0);
    QTest::keyClick(menu->list(), Qt::Key_Return);
    EXPECT_EQ(result, (CTexts{QStringLiteral("A2"), QStringLiteral("B1")}));
}

TEST_F(FilterMenu, ActivationOfATextDoesNotChoose) {
    open();
    uncheck(0);
    emit menu->list()->itemActivated(menu->list()->item(1)); // a single click on some desktops
    EXPECT_FALSE(result.has_value());
}

TEST_F(FilterMenu, ItsEndDoesNotEndTheApplication) {
    open();
    EXPECT_FALSE(menu->testAttribute(Qt::WA_QuitOnClose));
}

TEST_F(FilterMenu, NothingCannotBeChosen) {
    open();
    for (int i = 0; i < 3; ++i)
        uncheck(i);
    menu->slotApply();
    EXPECT_FALSE(result.has_value());
}

TEST_F(FilterMenu, ApplyIsDisabledWhileNothingIsChosen) {
    open();
    const QPushButton* apply = nullptr;
    for (const QPushButton* each : menu->findChildren<QPushButton*>()) {
        if (each->text() == QStringLiteral("应用")) apply = each;
    }
    ASSERT_NE(apply, nullptr);
    EXPECT_TRUE(apply->isEnabled());
    QTest::keyClicks(menu->searchLine(), QStringLiteral("x"));
    EXPECT_FALSE(apply->isEnabled());
    menu->searchLine()->clear();
    EXPECT_TRUE(apply->isEnabled());
    for (int i = 0; i < 3; ++i)
        uncheck(i);
    EXPECT_FALSE(apply->isEnabled());
}

} // namespace
