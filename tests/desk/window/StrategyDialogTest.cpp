#include "desk/window/StrategyDialog.h"

#include "desk/config/StrategyKeys.h"
#include "orderservice/base/Unset.h"
#include "orderservice/records/Families.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

namespace {

using namespace desk;
using TC::EOrderStrategyTradeType;
using TC::ESelectedAccountType;

QString agree(const TC::COrderStrategyParam&) {
    return {};
}

class StrategyFields : public testing::Test {
protected:
    StrategyFields() {
        addAccount("A1", TC::EQDBrokerType::Stock);
        addAccount("A2", TC::EQDBrokerType::Stock);
        addAccount("F1", TC::EQDBrokerType::Future);
        config.groups = {{"A1", TC::EQDBrokerType::Stock, {}}, {"futures", TC::EQDBrokerType::Future, {}}};
        strategy.m_nChannel = 7;
        strategy.m_strName = "one";
        strategy.m_strSelectedAccount = "A2";
        strategy.m_eSelectedAccountType = ESelectedAccountType::Account;
    }
    void addAccount(const char* key, TC::EQDBrokerType broker) {
        CAccountEntry account;
        account.key = key;
        account.broker = broker;
        config.accounts.push_back(account);
    }
    void open(bool isNew = false) {
        dialog = std::make_unique<CStrategyDialog>(config, "/desk", strategy, isNew, agree);
    }
    /// The field beside the label that begins like this, without its "&".
    template<typename W>
    W& field(const char* label) const {
        auto* form = qobject_cast<QFormLayout*>(dialog->layout());
        for (int row = 0; row < form->rowCount(); ++row) {
            auto* item = form->itemAt(row, QFormLayout::FieldRole);
            if (item == nullptr || form->labelForField(item->widget()) == nullptr) continue;
            auto* text = qobject_cast<QLabel*>(form->labelForField(item->widget()));
            if (text->text().remove('&').startsWith(label)) return *qobject_cast<W*>(item->widget());
        }
        throw std::runtime_error(label);
    }
    void choose(const char* label, int data) const {
        auto& box = field<QComboBox>(label);
        box.setCurrentIndex(box.findData(data));
    }
    void chooseFamily(EOrderStrategyTradeType family) const { choose("Family", static_cast<int>(family)); }

    CDeskConfig config;
    TC::COrderStrategyParam strategy;
    std::unique_ptr<CStrategyDialog> dialog;
};

TEST_F(StrategyFields, AVolumeThatIsNotSetStaysNotSet) {
    strategy.m_nVolume = TC::kUnsetInt;
    open();
    field<QLineEdit>("Name").setText("two");
    EXPECT_EQ(dialog->strategy().m_nVolume, TC::kUnsetInt);
    EXPECT_EQ(dialog->strategy().m_strName, "two");
}

TEST_F(StrategyFields, AVolumeOfZeroStaysZero) {
    strategy.m_nVolume = 0;
    open();
    EXPECT_EQ(dialog->strategy().m_nVolume, 0);
}

TEST_F(StrategyFields, TheVolumeIsWhatTheUserWrites) {
    open();
    field<QLineEdit>("Volume").setText("300");
    EXPECT_EQ(dialog->strategy().m_nVolume, 300);
    field<QLineEdit>("Volume").clear();
    EXPECT_EQ(dialog->strategy().m_nVolume, TC::kUnsetInt);
}

TEST_F(StrategyFields, AnAmountThatIsNotSetStaysNotSet) {
    strategy.m_bUseAmount = true;
    open();
    EXPECT_TRUE(TC::isInvalidPrice(dialog->strategy().m_dAmount));
}

TEST_F(StrategyFields, TheSourceInterfaceStays) {
    strategy.m_eStrategyType = TC::EOrderStrategyType::Interface;
    open();
    EXPECT_EQ(dialog->strategy().m_eStrategyType, TC::EOrderStrategyType::Interface);
    EXPECT_EQ(field<QComboBox>("Source").currentText(), "interface");
}

TEST_F(StrategyFields, ANewStrategyCannotHaveTheSourceInterface) {
    open(true);
    EXPECT_LT(field<QComboBox>("Source").findData(static_cast<int>(TC::EOrderStrategyType::Interface)), 0);
}

TEST_F(StrategyFields, AnotherFamilyAndBackKeepsTheAccount) {
    open();
    chooseFamily(EOrderStrategyTradeType::Future);
    EXPECT_EQ(field<QComboBox>("Group or account").currentText(), "(choose)");
    dialog->accept();
    EXPECT_FALSE(dialog->refusal().isEmpty());
    EXPECT_NE(dialog->result(), QDialog::Accepted);
    chooseFamily(EOrderStrategyTradeType::Stock);
    EXPECT_EQ(dialog->strategy().m_strSelectedAccount, "A2");
    EXPECT_EQ(dialog->strategy().m_eSelectedAccountType, ESelectedAccountType::Account);
}

TEST_F(StrategyFields, AGroupAndAnAccountMayHaveTheSameName) {
    strategy.m_strSelectedAccount = "A1";
    open();
    EXPECT_EQ(dialog->strategy().m_eSelectedAccountType, ESelectedAccountType::Account);
    EXPECT_EQ(field<QComboBox>("Group or account").currentText(), "A1 (account)");
    field<QComboBox>("Group or account").setCurrentIndex(1);
    EXPECT_EQ(dialog->strategy().m_eSelectedAccountType, ESelectedAccountType::Group);
    EXPECT_EQ(dialog->strategy().m_strSelectedAccount, "A1");
}

TEST_F(StrategyFields, AFamilyWithoutAccountsChoosesNone) {
    config.accounts.clear();
    config.groups.clear();
    open();
    chooseFamily(EOrderStrategyTradeType::Future);
    EXPECT_EQ(field<QComboBox>("Group or account").currentText(), "(choose)");
    chooseFamily(EOrderStrategyTradeType::Stock);
    EXPECT_EQ(dialog->strategy().m_strSelectedAccount, "A2"); // its own
}

TEST_F(StrategyFields, ANewStrategyNeedsAnAccount) {
    strategy.m_strSelectedAccount.clear();
    open(true);
    dialog->accept();
    EXPECT_EQ(dialog->refusal(), "Choose the group or the account that trades.");
    field<QComboBox>("Group or account").setCurrentIndex(2);
    dialog->accept();
    EXPECT_EQ(dialog->refusal(), "");
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
}

TEST_F(StrategyFields, ThePriceTypeIsThatOfTheFamily) {
    const TC::ESettingSlot future = TC::settingSlotOf(EOrderStrategyTradeType::Future);
    strategy.m_stockSetting.m_ePriceType = TC::EPriceType::Specified;
    strategy.setting(future).m_ePriceType = TC::EPriceType::NoQuote;
    open();
    chooseFamily(EOrderStrategyTradeType::Future);
    EXPECT_EQ(dialog->strategy().setting(future).m_ePriceType, TC::EPriceType::NoQuote);
}

TEST_F(StrategyFields, ARelativePathIsBelowTheFolderOfTheDesk) {
    open(true);
    field<QLineEdit>("File").setText("orders/../orders/one.txt");
    choose("Source", static_cast<int>(TC::EOrderStrategyType::File));
    EXPECT_EQ(dialog->strategy().m_strSignalSource, "/desk/orders/one.txt");
    field<QLineEdit>("File").setText("127.0.0.1:15150");
    choose("Source", static_cast<int>(TC::EOrderStrategyType::Signal));
    EXPECT_EQ(dialog->strategy().m_strSignalSource, "127.0.0.1:15150");
    field<QLineEdit>("File").clear();
    choose("Source", static_cast<int>(TC::EOrderStrategyType::File));
    EXPECT_EQ(dialog->strategy().m_strSignalSource, "");
}

TEST_F(StrategyFields, TheButtonsHaveTextsOfTheirOwn) {
    open();
    auto* buttons = dialog->findChild<QDialogButtonBox*>();
    ASSERT_NE(buttons, nullptr);
    EXPECT_EQ(buttons->button(QDialogButtonBox::Ok)->text(), "OK");
    EXPECT_EQ(buttons->button(QDialogButtonBox::Cancel)->text(), "Cancel");
}

TEST(StrategyDialog, KeepsWhatItDoesNotShow) {
    CDeskConfig config;
    TC::COrderStrategyParam strategy;
    strategy.m_nChannel = 7;
    strategy.m_strSelectedAccount = "gone";
    strategy.m_eSelectedAccountType = TC::ESelectedAccountType::Account;
    strategy.m_stockSetting.m_ePriceType = TC::EPriceType::NoQuote; // has no word
    strategy.m_bUseAmount = true;
    strategy.m_dAmount = 100.001;
    strategy.m_nStartCount = 5;
    CStrategyDialog dialog(config, ".", strategy, false, [](const auto&) { return QString(); });
    const TC::COrderStrategyParam result = dialog.strategy();
    EXPECT_EQ(result.m_strSelectedAccount, "gone");
    EXPECT_EQ(result.m_eSelectedAccountType, TC::ESelectedAccountType::Account);
    EXPECT_EQ(result.m_stockSetting.m_ePriceType, TC::EPriceType::NoQuote);
    EXPECT_EQ(result.m_dAmount, 100.001);
    EXPECT_EQ(result.m_nStartCount, 5);
}

TEST(StrategyDialog, StaysOpenWithTheReasonOfARefusal) {
    CDeskConfig config;
    TC::COrderStrategyParam strategy;
    strategy.m_strSelectedAccount = "A1";
    CStrategyDialog dialog(config, ".", strategy, true,
                           [](const auto&) { return QStringLiteral("路径已被使用"); });
    dialog.accept();
    EXPECT_NE(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(dialog.refusal(), "路径已被使用");
}

} // namespace
