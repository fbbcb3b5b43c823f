#include "desk/window/RowModel.h"

#include "orderservice/base/Clock.h"

#include <QCoreApplication>
#include <QSet>
#include <QTextDocument>

#include <algorithm>

namespace desk {

CRowModel::CRowModel(const CTableSpec& spec, QObject* parent) : QAbstractTableModel(parent), m_spec(spec) {}

int CRowModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int CRowModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_spec.m_columns.size());
}

std::size_t CRowModel::position(int row) const {
    const auto place = static_cast<std::size_t>(row);
    return m_spec.m_bNewestFirst ? m_rows.size() - 1 - place : place;
}

int CRowModel::rowOf(std::size_t position) const {
    return static_cast<int>(m_spec.m_bNewestFirst ? m_rows.size() - 1 - position : position);
}

const CRow* CRowModel::find(const QString& key) const {
    const auto found = m_index.find(key);
    return found == m_index.end() ? nullptr : &m_rows[static_cast<std::size_t>(*found - m_nFirst)];
}

void CRowModel::apply(const std::vector<CRow>& rows) {
    std::vector<CRow> added;
    QHash<QString, std::size_t> places; // of the added rows
    for (const CRow& row : rows) {
        const auto known = m_index.find(row.m_strKey);
        if (known != m_index.end()) {
            change(static_cast<std::size_t>(*known - m_nFirst), row);
            continue;
        }
        const auto again = places.find(row.m_strKey);
        if (again != places.end()) {
            added[*again] = row;
            continue;
        }
        places.insert(row.m_strKey, added.size());
        added.push_back(row);
    }
    if (!added.empty()) append(std::move(added));
    dropOldest();
}

void CRowModel::change(std::size_t position, const CRow& row) {
    CRow& known = m_rows[position];
    const bool isMarkChanged = known.m_eMark != row.m_eMark;
    int first = -1;
    int last = -1;
    for (int column = 0; column < row.m_cells.size(); ++column) {
        if (known.m_cells[column] == row.m_cells[column]) continue;
        flash(position, column, known.m_cells[column], row.m_cells[column]);
        if (first < 0) first = column;
        last = column;
    }
    if (first < 0 && !isMarkChanged) return;
    known = row;
    if (isMarkChanged) {
        first = 0;
        last = columnCount() - 1;
    }
    const int shown = rowOf(position);
    emit dataChanged(index(shown, first), index(shown, last));
}

void CRowModel::flash(std::size_t position, int column, const QVariant& before, const QVariant& after) {
    const CColumn& spec = m_spec.m_columns[static_cast<std::size_t>(column)];
    if (!spec.m_bFlash) return;
    const double now = utils::getTime();
    CFlash& flash = m_flashes[{m_nFirst + static_cast<qint64>(position), column}];
    if (flash.m_nKind != 0 && now - flash.m_dStart < kFlashGapSeconds) return;
    flash.m_dStart = now;
    flash.m_nKind = 2;
    if (!isTextCell(spec.m_eCell) && before.isValid() && after.isValid())
        flash.m_nKind = after.toDouble() > before.toDouble() ? 1 : -1;
}

bool CRowModel::expireFlashes() {
    const double now = utils::getTime();
    for (auto flash = m_flashes.begin(); flash != m_flashes.end();) {
        const bool isOver = now - flash->m_dStart >= kFlashSeconds || flash.key().first < m_nFirst;
        flash = isOver ? m_flashes.erase(flash) : std::next(flash);
    }
    return hasFlashes();
}

void CRowModel::append(std::vector<CRow> rows) {
    const int count = static_cast<int>(rows.size());
    const int first = m_spec.m_bNewestFirst ? 0 : rowCount();
    beginInsertRows({}, first, first + count - 1);
    for (CRow& row : rows) {
        m_index.insert(row.m_strKey, m_nFirst + static_cast<qint64>(m_rows.size()));
        m_rows.push_back(std::move(row));
    }
    endInsertRows();
}

void CRowModel::dropOldest() {
    int excess = m_spec.m_nMaxRows == 0 ? 0 : rowCount() - m_spec.m_nMaxRows;
    for (int i = 0; i < excess; ++i) {
        if (m_rows[static_cast<std::size_t>(i)].m_eMark == ERowMark::Waiting) excess = i;
    }
    if (excess <= 0) return;
    const int first = m_spec.m_bNewestFirst ? rowCount() - excess : 0;
    beginRemoveRows({}, first, first + excess - 1);
    for (int i = 0; i < excess; ++i) {
        m_index.remove(m_rows.front().m_strKey);
        m_rows.pop_front();
    }
    m_nFirst += excess;
    endRemoveRows();
}

void CRowModel::retain(const QStringList& keys) {
    const QSet<QString> kept(keys.begin(), keys.end());
    for (int row = rowCount() - 1; row >= 0; --row) {
        const std::size_t place = position(row);
        if (kept.contains(m_rows[place].m_strKey)) continue;
        beginRemoveRows({}, row, row);
        m_rows.erase(m_rows.begin() + static_cast<std::ptrdiff_t>(place));
        m_index.clear();
        m_flashes.clear(); // the numbers of the rows behind it have changed
        for (std::size_t i = 0; i < m_rows.size(); ++i)
            m_index.insert(m_rows[i].m_strKey, m_nFirst + static_cast<qint64>(i));
        endRemoveRows();
    }
}

void CRowModel::clear() {
    retain({});
}

QVariant CRowModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const std::size_t place = position(index.row());
    const CRow& row = m_rows[place];
    const CColumn& column = m_spec.m_columns[static_cast<std::size_t>(index.column())];
    const QVariant value = row.m_cells.value(index.column());
    switch (role) {
    case Qt::DisplayRole:
        return cellText(column.m_eCell, value);
    case Qt::ToolTipRole: // a long text may be cut off in its column
        // Texts come from files and sockets. A tool tip would read their signs as markup.
        return isTextCell(column.m_eCell) && !value.toString().isEmpty()
                   ? Qt::convertFromPlainText(plainCellText(column.m_eCell, value), Qt::WhiteSpaceNormal)
                   : QVariant();
    case Qt::TextAlignmentRole:
        return QVariant(isTextCell(column.m_eCell) ? Qt::AlignLeft | Qt::AlignVCenter
                                                   : Qt::AlignRight | Qt::AlignVCenter);
    case PlainRole:
        return plainCellText(column.m_eCell, value);
    case SortRole:
        return value;
    case KeyRole:
        return row.m_strKey;
    case MarkRole:
        return static_cast<int>(row.m_eMark);
    case FlashRole:
        return m_flashes.value({m_nFirst + static_cast<qint64>(place), index.column()}).m_nKind;
    case TrendRole:
        if (!column.m_bColoured || !value.isValid()) return 0;
        return signOf(column.m_eCell, value);
    default:
        return {};
    }
}

QVariant CRowModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) return {};
    const CColumn& column = m_spec.m_columns[static_cast<std::size_t>(section)];
    if (role == Qt::DisplayRole) return QCoreApplication::translate("columns", column.m_pszTitle);
    if (role == Qt::ToolTipRole && column.m_pszUnit != nullptr)
        return QCoreApplication::translate("columns", column.m_pszUnit);
    if (role == Qt::TextAlignmentRole)
        return QVariant(isTextCell(column.m_eCell) ? Qt::AlignLeft | Qt::AlignVCenter
                                                   : Qt::AlignRight | Qt::AlignVCenter);
    return {};
}

} // namespace desk
