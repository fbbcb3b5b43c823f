#include "orderservice/widgets/FilterMenu.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace UW {

CFilterMenu::CFilterMenu(const std::set<QString>& texts, const std::set<QString>* chosen, QWidget* parent)
    : QFrame(parent, Qt::Popup), m_pSearch(new QLineEdit(this)), m_pList(new QListWidget(this)) {
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_QuitOnClose, false); // a closed menu must not end the application
    setFrameShape(QFrame::StyledPanel);
    m_pSearch->setPlaceholderText(QStringLiteral("搜索"));
    auto* all = new QPushButton(QStringLiteral("全选"), this);
    auto* none = new QPushButton(QStringLiteral("全不选"), this);
    auto* clear = new QPushButton(QStringLiteral("清除筛选"), this);
    auto* apply = new QPushButton(QStringLiteral("应用"), this);
    auto* buttons = new QHBoxLayout;
    for (QPushButton* button : {all, none, clear, apply})
        buttons->addWidget(button);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_pSearch);
    layout->addWidget(m_pList);
    layout->addLayout(buttons);
    connect(m_pSearch, &QLineEdit::textChanged, this, &CFilterMenu::search);
    connect(m_pSearch, &QLineEdit::returnPressed, this, &CFilterMenu::slotApply);
    m_pList->installEventFilter(this);
    connect(all, &QPushButton::clicked, this, [this] { checkVisible(true); });
    connect(none, &QPushButton::clicked, this, [this] { checkVisible(false); });
    connect(clear, &QPushButton::clicked, this, &CFilterMenu::slotClear);
    connect(apply, &QPushButton::clicked, this, &CFilterMenu::slotApply);
    fill(texts, chosen);
    const auto showApply = [this, apply] { apply->setEnabled(!checkedTexts().empty()); };
    connect(m_pList, &QListWidget::itemChanged, apply, showApply);
    connect(m_pSearch, &QLineEdit::textChanged, apply, showApply); // after search
    showApply();
    m_pSearch->setFocus();
}

void CFilterMenu::fill(const std::set<QString>& texts, const std::set<QString>* chosen) {
    for (const QString& text : texts) {
        auto* item = new QListWidgetItem(text, m_pList);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        const bool isChosen = chosen == nullptr || chosen->count(text) > 0;
        item->setCheckState(isChosen ? Qt::Checked : Qt::Unchecked);
    }
}

void CFilterMenu::search(const QString& text) {
    for (int i = 0; i < m_pList->count(); ++i) {
        QListWidgetItem* item = m_pList->item(i);
        item->setHidden(!item->text().contains(text, Qt::CaseInsensitive));
    }
}

void CFilterMenu::checkVisible(bool isChecked) {
    for (int i = 0; i < m_pList->count(); ++i) {
        if (!m_pList->item(i)->isHidden())
            m_pList->item(i)->setCheckState(isChecked ? Qt::Checked : Qt::Unchecked);
    }
}

/// Qt's signal itemActivated would also come for a single click on some desktops.
bool CFilterMenu::eventFilter(QObject* watched, QEvent* event) {
    if (watched != m_pList || event->type() != QEvent::KeyPress) return QFrame::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key != Qt::Key_Return && key != Qt::Key_Enter) return QFrame::eventFilter(watched, event);
    slotApply();
    return true;
}

std::set<QString> CFilterMenu::checkedTexts() const {
    std::set<QString> texts;
    for (int i = 0; i < m_pList->count(); ++i) {
        const QListWidgetItem* item = m_pList->item(i);
        if (!item->isHidden() && item->checkState() == Qt::Checked) texts.insert(item->text());
    }
    return texts;
}

void CFilterMenu::slotApply() {
    const std::set<QString> texts = checkedTexts();
    if (texts.empty()) return; // nothing would be left to see
    const bool isAll = static_cast<int>(texts.size()) == m_pList->count();
    emit sigChosen(isAll ? std::set<QString>{} : texts);
    close();
}

void CFilterMenu::slotClear() {
    emit sigChosen({});
    close();
}

} // namespace UW
