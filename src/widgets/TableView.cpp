#include "orderservice/widgets/TableView.h"

namespace UW {

void CTableView::dataChanged(const QModelIndex& first, const QModelIndex& last, const QVector<int>& roles) {
    const bool isOneColumn = first.column() == last.column() && first.row() != last.row();
    if (!isOneColumn || state() == EditingState) return QTableView::dataChanged(first, last, roles);
    const int column = first.column();
    viewport()->update(columnViewportPosition(column), 0, columnWidth(column), viewport()->height());
}

} // namespace UW
