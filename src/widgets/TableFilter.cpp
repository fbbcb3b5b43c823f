#include "orderservice/widgets/TableFilter.h"

#include "orderservice/widgets/TableModel.h"

namespace UW {

CTableFilter::CTableFilter(QObject* parent) : QSortFilterProxyModel(parent) {
    setDynamicSortFilter(false);
}

void CTableFilter::setAccepted(int column, const std::set<QString>& texts) {
    if (texts.empty()) {
        m_accepted.erase(column);
    } else {
        m_accepted[column] = texts;
    }
    invalidateFilter();
}

void CTableFilter::clear() {
    if (m_accepted.empty()) return;
    m_accepted.clear();
    invalidateFilter();
}

const std::set<QString>* CTableFilter::accepted(int column) const {
    const auto found = m_accepted.find(column);
    return found != m_accepted.end() ? &found->second : nullptr;
}

bool CTableFilter::filterAcceptsRow(int row, const QModelIndex&) const {
    for (const auto& [column, texts] : m_accepted) {
        if (texts.count(sourceModel()->index(row, column).data().toString()) == 0) return false;
    }
    return true;
}

bool CTableFilter::lessThan(const QModelIndex& left, const QModelIndex& right) const {
    const QVariant first = left.data(CTableModel::SortRole), second = right.data(CTableModel::SortRole);
    const bool isNumber = first.type() == QVariant::Double, isOtherNumber = second.type() == QVariant::Double;
    if (isNumber && isOtherNumber) return first.toDouble() < second.toDouble();
    if (isNumber != isOtherNumber) return isOtherNumber; // cells without a number come first
    return first.toString() < second.toString();
}

} // namespace UW
