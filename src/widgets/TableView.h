#pragma once

#include <QTableView>

namespace UW {

/// A table view that redraws only one column if only cells of this column have changed. Prices change all
/// rows of a column at once, several times a second. Main thread.
class CTableView : public QTableView {
    Q_OBJECT
public:
    using QTableView::QTableView;

protected slots:
    void dataChanged(const QModelIndex& first, const QModelIndex& last,
                     const QVector<int>& roles = QVector<int>()) override;
};

} // namespace UW
