#include "desk/window/StrategyDialog.h"

#include "desk/config/Words.h"
#include "orderservice/base/Unset.h"
#include "orderservice/records/Families.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>

#include <cmath>
#include <limits>
#include <map>
#include <string>
#include <utility>

namespace desk {
namespace {

constexpr double kHalfCent = 0.005;  ///< the field has two decimals
constexpr double kMostAmount = 1e12; ///< currency units

void fill(QComboBox& box, const std::map<std::string, int>& words, int chosen) {
    for (const auto& [word, number] : words)
        box.addItem(QCoreApplication::translate("words", word.c_str()), number);
    // A number without a word must not be changed to another one when the user changes something else.
    if (box.findData(chosen) < 0) box.addItem(QString::number(chosen), chosen);
    box.setCurrentIndex(box.findData(chosen));
}

template<typename E>
E chosen(const QComboBox& box) {
    return static_cast<E>(box.currentData().toInt());
}

} // namespace

CStrategyDialog::CStrategyDialog(const CDeskConfig& config, TC::COrderStrategyParam strategy, bool isNew,
                                 CApply apply, QWidget* parent)
    : QDialog(parent), m_config(config), m_strategy(std::move(strategy)), m_apply(std::move(apply)),
      m_name(new QLineEdit(m_strategy.m_strName, this)), m_source(new QComboBox(this)),
      m_path(new QLineEdit(m_strategy.m_strSignalSource, this)),
      m_user(new QLineEdit(m_strategy.m_strUser, this)), m_pass(new QLineEdit(m_strategy.m_strPass, this)),
      m_family(new QComboBox(this)), m_accounts(new QComboBox(this)),
      m_code(new QLineEdit(m_strategy.m_strCode, this)), m_volume(new QSpinBox(this)),
      m_useAmount(new QCheckBox(tr("calculate the volume from an amount"), this)),
      m_amount(new QDoubleSpinBox(this)), m_priceType(new QComboBox(this)), m_refusal(new QLabel(this)) {
    setWindowTitle(isNew ? tr("Add a strategy") : tr("Change strategy %1").arg(m_strategy.m_nChannel));
    fill(*m_source, sourceWords(), static_cast<int>(m_strategy.m_eStrategyType));
    m_source->removeItem(m_source->findData(static_cast<int>(TC::EOrderStrategyType::Interface)));
    m_source->setEnabled(isNew);
    fill(*m_family, familyWords(), static_cast<int>(m_strategy.m_eTradeType));
    fill(*m_priceType, priceTypeWords(), static_cast<int>(TC::settingOfFamily(m_strategy).m_ePriceType));
    m_pass->setEchoMode(QLineEdit::Password);
    m_volume->setRange(1, std::numeric_limits<int>::max() - 1);
    m_volume->setValue(m_strategy.m_nVolume);
    m_amount->setRange(0, kMostAmount);
    m_amount->setValue(TC::isInvalidPrice(m_strategy.m_dAmount) ? 0 : m_strategy.m_dAmount);
    m_useAmount->setChecked(m_strategy.m_bUseAmount);
    m_refusal->setWordWrap(true);
    m_refusal->hide();

    auto* form = new QFormLayout(this);
    form->addRow(tr("&Name"), m_name);
    form->addRow(tr("&Source"), m_source);
    form->addRow(tr("File or &address"), m_path);
    form->addRow(tr("Login &user"), m_user);
    form->addRow(tr("&Password"), m_pass);
    form->addRow(tr("&Family"), m_family);
    form->addRow(tr("Group or a&ccount"), m_accounts);
    form->addRow(tr("&Instrument"), m_code);
    form->addRow(tr("Price &type"), m_priceType);
    form->addRow(tr("&Volume (shares or lots)"), m_volume);
    form->addRow(QString(), m_useAmount);
    form->addRow(tr("A&mount (CNY)"), m_amount);
    form->addRow(m_refusal);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    form->addRow(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_source, qOverload<int>(&QComboBox::currentIndexChanged), this, [this] { showSource(); });
    connect(m_family, qOverload<int>(&QComboBox::currentIndexChanged), this, [this] { fillAccounts(); });
    connect(m_useAmount, &QCheckBox::toggled, m_amount, &QWidget::setEnabled);
    m_amount->setEnabled(m_useAmount->isChecked());
    fillAccounts();
    showSource();
}

/// The groups and accounts that the family trades on.
void CStrategyDialog::fillAccounts() {
    const bool isFirst = m_accounts->count() == 0;
    const QString before = !isFirst ? m_accounts->currentText() : m_strategy.m_strSelectedAccount;
    m_accounts->clear();
    const TC::CFamily* family = TC::findFamily(chosen<TC::EOrderStrategyTradeType>(*m_family));
    for (const CGroupEntry& group : m_config.groups) {
        if (family != nullptr && family->tradesOn(group.broker))
            m_accounts->addItem(QString::fromStdString(group.name),
                                static_cast<int>(TC::ESelectedAccountType::Group));
    }
    for (const CAccountEntry& account : m_config.accounts) {
        if (family != nullptr && family->tradesOn(account.broker))
            m_accounts->addItem(QString::fromStdString(account.key),
                                static_cast<int>(TC::ESelectedAccountType::Account));
    }
    if (isFirst && m_accounts->findText(before) < 0) // it must not be changed unless the user does it
        m_accounts->addItem(before, static_cast<int>(m_strategy.m_eSelectedAccountType));
    const int known = m_accounts->findText(before);
    if (known >= 0) m_accounts->setCurrentIndex(known);
}

void CStrategyDialog::showSource() {
    const bool isSocket = chosen<TC::EOrderStrategyType>(*m_source) == TC::EOrderStrategyType::Signal;
    m_user->setEnabled(isSocket);
    m_pass->setEnabled(isSocket);
    m_path->setPlaceholderText(isSocket ? QStringLiteral("127.0.0.1:15150")
                                        : tr("absolute path of the file"));
}

TC::COrderStrategyParam CStrategyDialog::strategy() const {
    TC::COrderStrategyParam result = m_strategy;
    result.m_strName = m_name->text().trimmed();
    result.m_eStrategyType = chosen<TC::EOrderStrategyType>(*m_source);
    result.m_strSignalSource = m_path->text().trimmed();
    result.m_strUser = m_user->text();
    result.m_strPass = m_pass->text();
    result.m_eTradeType = chosen<TC::EOrderStrategyTradeType>(*m_family);
    result.m_eSelectedAccountType = chosen<TC::ESelectedAccountType>(*m_accounts);
    result.m_strSelectedAccount = m_accounts->currentText();
    result.m_strCode = m_code->text().trimmed();
    result.m_nVolume = m_volume->value();
    result.m_bUseAmount = m_useAmount->isChecked();
    const bool isAmountChanged =
        TC::isInvalidPrice(result.m_dAmount) || std::fabs(m_amount->value() - result.m_dAmount) > kHalfCent;
    if (result.m_bUseAmount && isAmountChanged) result.m_dAmount = m_amount->value();
    result.setting(TC::settingSlotOf(result.m_eTradeType)).m_ePriceType =
        chosen<TC::EPriceType>(*m_priceType);
    return result;
}

void CStrategyDialog::accept() {
    const QString refusal = m_apply(strategy());
    m_refusal->setText(refusal);
    m_refusal->setVisible(!refusal.isEmpty());
    if (refusal.isEmpty()) QDialog::accept();
}

QString CStrategyDialog::refusal() const {
    return m_refusal->text();
}

} // namespace desk
