#include "desk/window/RowFilter.h"

#include "desk/window/RowModel.h"

namespace desk {
namespace {

bool isTotal(const QModelIndex& index) {
    return index.data(CRowModel::MarkRole).toInt() == static_cast<int>(ERowMark::Total);
}

bool isText(const QVariant& value) {
    return value.type() == QVariant::String;
}

} // namespace

CRowFilter::CRowFilter(QObject* parent) : QSortFilterProxyModel(parent) {
    setSortRole(CRowModel::SortRole);
}

void CRowFilter::setColumnFilter(int column, const QString& text) {
    const QString trimmed = text.trimmed();
    if (trimmed == columnFilter(column)) return;
    if (trimmed.isEmpty())
        m_filters.remove(column);
    else
        m_filters.insert(column, trimmed);
    invalidateFilter();
    emit sigFiltersChanged();
}

void CRowFilter::clearFilters() {
    if (m_filters.isEmpty()) return;
    m_filters.clear();
    invalidateFilter();
    emit sigFiltersChanged();
}

int CRowFilter::hiddenRows() const {
    return sourceModel() == nullptr ? 0 : sourceModel()->rowCount() - rowCount();
}

bool CRowFilter::filterAcceptsRow(int row, const QModelIndex& parent) const {
    for (auto filter = m_filters.begin(); filter != m_filters.end(); ++filter) {
        const QModelIndex index = sourceModel()->index(row, filter.key(), parent);
        if (!accepts(index, filter.value()) && !isTotal(index)) return false;
    }
    return true;
}

bool CRowFilter::accepts(const QModelIndex& index, const QString& filter) const {
    const QVariant value = index.data(CRowModel::SortRole);
    if (value.isValid() && !isText(value)) {
        QString number = filter;
        number.remove(QLatin1Char(','));
        const QChar sign = number.at(0);
        const bool hasSign = sign == QLatin1Char('>') || sign == QLatin1Char('<') || sign == QLatin1Char('=');
        bool isNumber = false;
        const double limit = number.mid(hasSign ? 1 : 0).toDouble(&isNumber);
        if (hasSign && !isNumber) return true;
        if (sign == QLatin1Char('>')) return value.toDouble() > limit;
        if (sign == QLatin1Char('<')) return value.toDouble() < limit;
        const bool isWhole = value.type() != QVariant::Double;
        if (hasSign || (isNumber && isWhole)) return qFuzzyCompare(1 + value.toDouble(), 1 + limit);
    }
    return index.data(Qt::DisplayRole).toString().contains(filter, Qt::CaseInsensitive) ||
           index.data(CRowModel::PlainRole).toString().contains(filter, Qt::CaseInsensitive);
}

bool CRowFilter::lessThan(const QModelIndex& left, const QModelIndex& right) const {
    if (isTotal(left) != isTotal(right)) return isTotal(left) == (sortOrder() == Qt::AscendingOrder);
    const QVariant a = left.data(CRowModel::SortRole);
    const QVariant b = right.data(CRowModel::SortRole);
    if (!a.isValid() || !b.isValid()) return !a.isValid() && b.isValid();
    if (isText(a) || isText(b)) return QString::localeAwareCompare(a.toString(), b.toString()) < 0;
    return a.toDouble() < b.toDouble();
}

} // namespace desk
