#pragma once

#include <QSortFilterProxyModel>
#include <QString>

#include <map>
#include <set>

namespace UW {

/// Sorts the rows of a CTableModel and hides those that a filter does not accept. It does so when the user
/// sorts or filters, and not when a cell changes, so that rows never move by themselves. Main thread.
class CTableFilter : public QSortFilterProxyModel {
    Q_OBJECT
public:
    explicit CTableFilter(QObject* parent = nullptr);

    /// An empty set ends the column's filter.
    void setAccepted(int column, const std::set<QString>& texts);
    void clear();
    /// The texts that the column's filter accepts, or null if it has no filter.
    const std::set<QString>* accepted(int column) const;

protected:
    bool filterAcceptsRow(int row, const QModelIndex& parent) const override;
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;

private:
    std::map<int, std::set<QString>> m_accepted;
};

} // namespace UW
