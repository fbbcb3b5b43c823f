#pragma once

#include "orderservice/widgets/BaseTable.h"

#include <QStyledItemDelegate>

#include <functional>
#include <optional>

namespace UW {

/// Paints changed and edited cells, and edits numbers. Main thread.
class CTableDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    /// The rule of a cell of the view, or nothing if any text is allowed.
    using CRuleOf = std::function<std::optional<CNumberRule>(const QModelIndex&)>;

    CTableDelegate(CRuleOf ruleOf, QObject* parent);

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    /// An input that the rule does not accept is discarded.
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

private:
    CRuleOf m_ruleOf;
};

} // namespace UW
