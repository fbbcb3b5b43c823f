#pragma once

#include <QMap>
#include <QSortFilterProxyModel>
#include <QString>

namespace desk {

/// Sorts and filters the rows of a CRowModel. Without a sort column the rows are in the order of the model.
/// The row of a total is the first one in each sort order, and no filter hides it. Main thread only.
class CRowFilter : public QSortFilterProxyModel {
    Q_OBJECT
public:
    explicit CRowFilter(QObject* parent = nullptr);

    /// Shows only rows whose cell of this column contains the text, in upper or lower case. In a column of
    /// numbers ">100", "<100" and "=100" compare; a sign without a number hides nothing yet. In a column of
    /// whole numbers "1" does not find 10. Numbers may have commas: ">1,000". An empty text ends the filter.
    void setColumnFilter(int column, const QString& text);
    QString columnFilter(int column) const { return m_filters.value(column); }
    bool hasFilter() const { return !m_filters.isEmpty(); }
    void clearFilters();
    /// The number of rows that the filters hide.
    int hiddenRows() const;

signals:
    void sigFiltersChanged();

protected:
    bool filterAcceptsRow(int row, const QModelIndex& parent) const override;
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;

private:
    bool accepts(const QModelIndex& index, const QString& filter) const;

    QMap<int, QString> m_filters; ///< by column; none is empty
};

} // namespace desk
