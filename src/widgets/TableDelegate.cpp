#include "orderservice/widgets/TableDelegate.h"

#include "orderservice/widgets/TableModel.h"

#include <QDoubleValidator>
#include <QIntValidator>
#include <QLineEdit>
#include <QLocale>

#include <utility>

namespace UW {
namespace {

/// Dark texts on the light highlights, readable on a light and on a dark desktop.
const QColor kFlashColor(255, 224, 130);
const QColor kMarkColor(255, 204, 188);
const QColor kTextColor(33, 33, 33);

QValidator* makeValidator(const CNumberRule& rule, QObject* parent) {
    QValidator* validator = nullptr;
    if (rule.m_nDecimals == 0) {
        validator =
            new QIntValidator(static_cast<int>(rule.m_dMinimum), static_cast<int>(rule.maximum()), parent);
    } else {
        auto* decimal = new QDoubleValidator(rule.m_dMinimum, rule.maximum(), rule.m_nDecimals, parent);
        decimal->setNotation(QDoubleValidator::StandardNotation);
        validator = decimal;
    }
    QLocale plain = QLocale::c(); // a point, and no signs between groups of digits
    plain.setNumberOptions(QLocale::RejectGroupSeparator | QLocale::OmitGroupSeparator);
    validator->setLocale(plain);
    return validator;
}

} // namespace

CTableDelegate::CTableDelegate(CRuleOf ruleOf, QObject* parent)
    : QStyledItemDelegate(parent), m_ruleOf(std::move(ruleOf)) {}

QWidget* CTableDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                      const QModelIndex& index) const {
    auto* editor = new QLineEdit(parent);
    editor->setFrame(false);
    editor->setAlignment(static_cast<Qt::Alignment>(index.data(Qt::TextAlignmentRole).toInt()));
    if (const std::optional<CNumberRule> rule = m_ruleOf(index))
        editor->setValidator(makeValidator(*rule, editor));
    return editor;
}

void CTableDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                  const QModelIndex& index) const {
    const auto* line = qobject_cast<const QLineEdit*>(editor);
    if (line != nullptr && line->hasAcceptableInput()) model->setData(index, line->text(), Qt::EditRole);
}

void CTableDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    const bool isFlashing = index.data(CTableModel::FlashRole).toBool();
    if (!isFlashing && !index.data(CTableModel::MarkRole).toBool()) return;
    option->state &= ~QStyle::State_Selected;
    option->backgroundBrush = isFlashing ? kFlashColor : kMarkColor;
    option->palette.setColor(QPalette::Text, kTextColor);
}

} // namespace UW
