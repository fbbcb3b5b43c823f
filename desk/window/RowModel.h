#pragma once

#include "desk/window/Column.h"

#include <QAbstractTableModel>
#include <QHash>
#include <QStringList>

#include <deque>
#include <utility>
#include <vector>

namespace desk {

/// The rows of one table. A row is added or changed by its key in constant time; rows are never rebuilt. Main
/// thread only.
class CRowModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum ERole {
        SortRole = Qt::UserRole + 1, ///< the value of the cell
        FlashRole,                   ///< 1: just rose, -1: just fell, 2: just changed, 0: nothing
        MarkRole,                    ///< ERowMark as int
        PlainRole,                   ///< the cell as plainCellText
        KeyRole,                     ///< the key of the row
        TrendRole,                   ///< sign of the value of a coloured column: 1, 0 or -1
    };
    static constexpr double kFlashSeconds = 0.4;
    static constexpr double kFlashGapSeconds = 0.2; ///< a cell starts to flash at most five times a second

    /// The spec must outlive the model.
    explicit CRowModel(const CTableSpec& spec, QObject* parent = nullptr);

    /// Adds new rows and changes known ones, in their order. If the rows have a key twice, the last one is
    /// used.
    void apply(const std::vector<CRow>& rows);
    /// Removes all rows whose keys are not in the list. Not in constant time: for small tables.
    void retain(const QStringList& keys);
    void clear();

    /// The row with this key, or null. Valid until the next change.
    const CRow* find(const QString& key) const;
    const CRow& at(int row) const { return m_rows[position(row)]; }
    const CTableSpec& spec() const { return m_spec; }

    /// Ends flashes that are over. Returns whether others go on.
    bool expireFlashes();
    bool hasFlashes() const { return !m_flashes.isEmpty(); }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    struct CFlash {
        double m_dStart = 0;
        int m_nKind = 0;
    };
    using CFlashKey = std::pair<qint64, int>; ///< number of the row, column

    std::size_t position(int row) const;
    int rowOf(std::size_t position) const;
    void change(std::size_t position, const CRow& row);
    void flash(std::size_t position, int column, const QVariant& before, const QVariant& after);
    void append(std::vector<CRow> rows);
    void dropOldest();

    const CTableSpec& m_spec;
    std::deque<CRow> m_rows;        ///< oldest first
    qint64 m_nFirst = 0;            ///< number of the first row in m_rows
    QHash<QString, qint64> m_index; ///< numbers of rows by key
    QHash<CFlashKey, CFlash> m_flashes;
};

} // namespace desk
