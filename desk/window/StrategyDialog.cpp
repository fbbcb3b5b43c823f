#include "desk/window/StrategyDialog.h"

#include "desk/config/Words.h"
#include "orderservice/base/Unset.h"
#include "orderservice/records/Families.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>

#include <algorithm>
#include <cmath>
#include <map>
#include <string>
#include <utility>

namespace desk {
namespace {

constexpr double kHalfCent = 0.005;  ///< the field has two decimals
constexpr double kMostAmount = 1e12; ///< currency units
constexpr int kNameRole = Qt::UserRole + 1;

void fill(QComboBox& box, const std::map<std::string, int>& words, int chosen) {
    for (const auto& [word, number] : words)
        box.addItem(QCoreApplication::translate("words", word.c_str()), number);
    // strategies.toml may have a number for which there is no word. It must not change when the user changes
    // another field.
    if (box.findData(chosen) < 0) box.addItem(QString::number(chosen), chosen);
    box.setCurrentIndex(box.findData(chosen));
}

/// The volume as the field shows it.
QString volumeText(int volume) {
    return TC::isUnset(volume) ? QString() : QString::number(volume);
}

bool isFileSource(TC::EOrderStrategyType type) {
    TC::COrderStrategyParam strategy;
    strategy.m_eStrategyType = type;
    return strategy.comesFromFile();
}

template<typename E>
E chosen(const QComboBox& box) {
    return static_cast<E>(box.currentData().toInt());
}

} // namespace

CStrategyDialog::CStrategyDialog(const CDeskConfig& config, QString folder, TC::COrderStrategyParam strategy,
                                 bool isNew, CApply apply, QWidget* parent)
    : QDialog(parent), m_config(config), m_strFolder(QDir(folder).absolutePath()),
      m_strategy(std::move(strategy)), m_bNew(isNew),
      m_apply(std::move(apply)), m_choice{m_strategy.m_eSelectedAccountType, m_strategy.m_strSelectedAccount},
      m_name(new QLineEdit(m_strategy.m_strName, this)), m_source(new QComboBox(this)),
      m_path(new QLineEdit(m_strategy.m_strSignalSource, this)),
      m_user(new QLineEdit(m_strategy.m_strUser, this)), m_pass(new QLineEdit(m_strategy.m_strPass, this)),
      m_family(new QComboBox(this)), m_accounts(new QComboBox(this)),
      m_code(new QLineEdit(m_strategy.m_strCode, this)),
      m_volume(new QLineEdit(volumeText(m_strategy.m_nVolume), this)),
      m_useAmount(new QCheckBox(tr("calculate the volume from an amount"), this)),
      m_amount(new QDoubleSpinBox(this)), m_priceType(new QComboBox(this)), m_refusal(new QLabel(this)) {
    setWindowTitle(isNew ? tr("Add a strategy") : tr("Change strategy %1").arg(m_strategy.m_nChannel));
    fillFields();
    makeForm();
    connect(m_source, qOverload<int>(&QComboBox::currentIndexChanged), this, [this] { showSource(); });
    connect(m_family, qOverload<int>(&QComboBox::currentIndexChanged), this, [this] {
        fillAccounts();
        fillPriceType();
    });
    connect(m_accounts, qOverload<int>(&QComboBox::currentIndexChanged), this, [this] {
        m_choice = {chosen<TC::ESelectedAccountType>(*m_accounts),
                    m_accounts->currentData(kNameRole).toString()};
    });
    connect(m_useAmount, &QCheckBox::toggled, m_amount, &QWidget::setEnabled);
    m_amount->setEnabled(m_useAmount->isChecked());
    fillAccounts();
    fillPriceType();
    showSource();
}

void CStrategyDialog::fillFields() {
    fill(*m_source, sourceWords(), static_cast<int>(m_strategy.m_eStrategyType));
    if (m_bNew) m_source->removeItem(m_source->findData(static_cast<int>(TC::EOrderStrategyType::Interface)));
    m_source->setEnabled(m_bNew);
    fill(*m_family, familyWords(), static_cast<int>(m_strategy.m_eTradeType));
    m_pass->setEchoMode(QLineEdit::Password);
    m_volume->setValidator(new QIntValidator(0, TC::kUnsetInt - 1, m_volume));
    m_volume->setPlaceholderText(tr("not set"));
    m_amount->setRange(0, kMostAmount);
    m_amount->setValue(TC::isInvalidPrice(m_strategy.m_dAmount) ? 0 : m_strategy.m_dAmount);
    m_dShownAmount = m_amount->value();
    m_useAmount->setChecked(m_strategy.m_bUseAmount);
    m_refusal->setTextFormat(Qt::PlainText);
    m_refusal->setWordWrap(true);
    m_refusal->hide();
}

void CStrategyDialog::makeForm() {
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
    form->addRow(tr("A&mount ¥"), m_amount);
    form->addRow(m_refusal);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setText(tr("OK"));
    buttons->button(QDialogButtonBox::Cancel)->setText(tr("Cancel"));
    form->addRow(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

void CStrategyDialog::addAccount(const CChoice& choice) {
    const QString kind =
        choice.m_eType == TC::ESelectedAccountType::Group ? tr("%1 (group)") : tr("%1 (account)");
    m_accounts->addItem(kind.arg(choice.m_strName), static_cast<int>(choice.m_eType));
    m_accounts->setItemData(m_accounts->count() - 1, choice.m_strName, kNameRole);
}

/// The item of a group or an account; -1 if the box has no such item. Both may have the same name.
int CStrategyDialog::findAccount(const CChoice& choice) const {
    for (int item = 0; item < m_accounts->count(); ++item) {
        if (m_accounts->itemData(item).toInt() == static_cast<int>(choice.m_eType) &&
            m_accounts->itemData(item, kNameRole).toString() == choice.m_strName)
            return item;
    }
    return -1;
}

/// The groups and accounts that the family trades on. If the one that was chosen is not among them, none is
/// chosen: the program must not choose an account for the user.
void CStrategyDialog::fillAccounts() {
    const QSignalBlocker blocker(m_accounts);
    m_accounts->clear();
    m_accounts->addItem(tr("(choose)"), static_cast<int>(TC::ESelectedAccountType::Group));
    const auto number = chosen<TC::EOrderStrategyTradeType>(*m_family);
    const TC::CFamily* family = TC::findFamily(number);
    for (const CGroupEntry& group : m_config.groups) {
        if (family != nullptr && family->tradesOn(group.broker))
            addAccount({TC::ESelectedAccountType::Group, QString::fromStdString(group.name)});
    }
    for (const CAccountEntry& account : m_config.accounts) {
        if (family != nullptr && family->tradesOn(account.broker))
            addAccount({TC::ESelectedAccountType::Account, QString::fromStdString(account.key)});
    }
    const CChoice own{m_strategy.m_eSelectedAccountType, m_strategy.m_strSelectedAccount};
    // The folder may not have the strategy's own one any more. Only the user may change it.
    const bool isOwnFamily = number == m_strategy.m_eTradeType;
    if (isOwnFamily && !own.m_strName.isEmpty() && findAccount(own) < 0) addAccount(own);
    m_accounts->setCurrentIndex(m_choice.m_strName.isEmpty() ? 0 : std::max(findAccount(m_choice), 0));
}

/// Each family has its own setting.
void CStrategyDialog::fillPriceType() {
    m_priceType->clear();
    const TC::ESettingSlot slot = TC::settingSlotOf(chosen<TC::EOrderStrategyTradeType>(*m_family));
    fill(*m_priceType, priceTypeWords(), static_cast<int>(m_strategy.setting(slot).m_ePriceType));
}

void CStrategyDialog::showSource() {
    const bool isSocket = chosen<TC::EOrderStrategyType>(*m_source) == TC::EOrderStrategyType::Signal;
    m_user->setEnabled(isSocket);
    m_pass->setEnabled(isSocket);
    m_path->setPlaceholderText(isSocket ? QStringLiteral("127.0.0.1:15150")
                                        : tr("path of the file, from the folder of the desk"));
}

bool CStrategyDialog::isAccountMissing() const {
    const bool isOwn = !m_bNew && m_strategy.m_strSelectedAccount.isEmpty(); // rows of a table name accounts
    return m_accounts->currentIndex() <= 0 && !isOwn;
}

/// A file's path is absolute, so that it is the same file after the next start.
QString CStrategyDialog::signalSource(TC::EOrderStrategyType type) const {
    const QString text = m_path->text().trimmed();
    if (!m_bNew && text == m_strategy.m_strSignalSource.trimmed()) return m_strategy.m_strSignalSource;
    if (text.isEmpty() || !isFileSource(type)) return text;
    return QDir::cleanPath(QDir(m_strFolder).absoluteFilePath(text));
}

TC::COrderStrategyParam CStrategyDialog::strategy() const {
    TC::COrderStrategyParam result = m_strategy;
    result.m_strName = m_name->text().trimmed();
    result.m_eStrategyType = chosen<TC::EOrderStrategyType>(*m_source);
    result.m_strSignalSource = signalSource(result.m_eStrategyType);
    result.m_strUser = m_user->text();
    result.m_strPass = m_pass->text();
    result.m_eTradeType = chosen<TC::EOrderStrategyTradeType>(*m_family);
    if (m_accounts->currentIndex() > 0) {
        result.m_eSelectedAccountType = chosen<TC::ESelectedAccountType>(*m_accounts);
        result.m_strSelectedAccount = m_accounts->currentData(kNameRole).toString();
    }
    result.m_strCode = m_code->text().trimmed();
    if (m_volume->text() != volumeText(m_strategy.m_nVolume))
        result.m_nVolume = m_volume->text().isEmpty() ? TC::kUnsetInt : m_volume->text().toInt();
    result.m_bUseAmount = m_useAmount->isChecked();
    const bool isAmountChanged = std::fabs(m_amount->value() - m_dShownAmount) > kHalfCent;
    if (result.m_bUseAmount && isAmountChanged) result.m_dAmount = m_amount->value();
    result.setting(TC::settingSlotOf(result.m_eTradeType)).m_ePriceType =
        chosen<TC::EPriceType>(*m_priceType);
    return result;
}

void CStrategyDialog::accept() {
    const QString refusal =
        isAccountMissing() ? tr("Choose the group or the account that trades.") : m_apply(strategy());
    m_refusal->setText(refusal);
    m_refusal->setVisible(!refusal.isEmpty());
    if (refusal.isEmpty()) QDialog::accept();
}

QString CStrategyDialog::refusal() const {
    return m_refusal->text();
}

} // namespace desk
