#include "orderservice/widgets/TableModel.h"

#include "orderservice/base/Clock.h"

#include <QApplication>
#include <QRegularExpression>

#include <algorithm>
#include <utility>

namespace UW {

namespace {

QFont makeBoldFont() {
    QFont font = QApplication::font("QTableView");
    font.setBold(true);
    return font;
}

} // namespace

CTableModel::CTableModel(QObject* parent) : QAbstractTableModel(parent), m_boldFont(makeBoldFont()) {}

CTableModel::CColumn& CTableModel::column(int number) {
    const auto count = static_cast<std::size_t>(number) + 1;
    if (m_columns.size() < count) {
        beginInsertColumns({}, static_cast<int>(m_columns.size()), number);
        m_columns.resize(count);
        for (std::vector<CCell>& row : m_rows)
            row.resize(count);
        endInsertColumns();
    }
    return m_columns[static_cast<std::size_t>(number)];
}

const CTableModel::CColumn* CTableModel::findColumn(int number) const {
    return number >= 0 && number < columnCount() ? &m_columns[static_cast<std::size_t>(number)] : nullptr;
}

void CTableModel::announceHeaders() {
    if (!m_columns.empty()) emit headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
}

void CTableModel::setRows(int rows) {
    beginResetModel();
    m_flashing.clear();
    m_nFirstRow = -1;
    for (CColumn& each : m_columns) {
        each.m_strLongest.clear();
        each.m_nLongest = 0;
    }
    m_rows.assign(static_cast<std::size_t>(std::max(rows, 0)), std::vector<CCell>(m_columns.size()));
    endResetModel();
}

void CTableModel::setText(int row, int column, const QString& text, std::optional<double> number) {
    CCell* cell = find(row, column);
    if (cell == nullptr) return;
    const bool isChange = cell->m_strText != text;
    const bool isFirst = !std::exchange(cell->m_bFilled, true);
    cell->m_number = number;
    if (!isChange) return;
    cell->m_strText = text;
    keepLongest(column, text);
    if (!isFirst && m_columns[static_cast<std::size_t>(column)].m_bFlashing) flash(*cell, row, column);
    touch(row, column);
}

/// All digits have one width, so the longest number is the widest. Chinese characters are wider.
void CTableModel::keepLongest(int number, const QString& text) {
    CColumn& longest = column(number);
    constexpr ushort kFirstWide = 0x1100;
    const auto wide =
        std::count_if(text.begin(), text.end(), [](QChar c) { return c.unicode() >= kFirstWide; });
    const int length = text.size() + static_cast<int>(wide);
    if (length <= longest.m_nLongest) return;
    longest.m_nLongest = length;
    longest.m_strLongest = text;
    m_bLonger = true;
}

void CTableModel::setToolTip(int row, int column, const QString& text) {
    if (CCell* cell = find(row, column)) cell->m_strToolTip = text;
}

void CTableModel::setMark(int row, int column, bool isMarked) {
    CCell* cell = find(row, column);
    if (cell == nullptr || cell->m_bMarked == isMarked) return;
    cell->m_bMarked = isMarked;
    touch(row, column);
}

void CTableModel::endUpdate() {
    if (--m_nUpdates > 0 || m_nFirstRow < 0) return;
    const QModelIndex first = index(std::exchange(m_nFirstRow, -1), m_nFirstColumn);
    emit dataChanged(first, index(m_nLastRow, m_nLastColumn));
}

void CTableModel::flash(CCell& cell, int row, int column) {
    const double now = utils::getTime();
    if (cell.m_dFlashBegin >= 0 && now - cell.m_dFlashBegin < kFlashPauseSeconds) return;
    cell.m_dFlashBegin = now;
    if (std::exchange(cell.m_bFlashing, true)) return;
    m_flashing.emplace_back(row, column);
    if (m_flashing.size() == 1) emit sigFlashBegun();
}

bool CTableModel::endFlashes() {
    const double end = utils::getTime() - kFlashMs / 1000.0;
    const auto isOver = [&](const std::pair<int, int>& place) {
        CCell* cell = find(place.first, place.second);
        if (cell == nullptr) return true;
        if (cell->m_dFlashBegin > end) return false;
        cell->m_bFlashing = false;
        touch(place.first, place.second);
        return true;
    };
    beginUpdate();
    m_flashing.erase(std::remove_if(m_flashing.begin(), m_flashing.end(), isOver), m_flashing.end());
    endUpdate();
    return !m_flashing.empty();
}

void CTableModel::touch(int row, int column) {
    if (m_nFirstRow < 0) {
        m_nFirstRow = m_nLastRow = row;
        m_nFirstColumn = m_nLastColumn = column;
    }
    m_nFirstRow = std::min(m_nFirstRow, row);
    m_nLastRow = std::max(m_nLastRow, row);
    m_nFirstColumn = std::min(m_nFirstColumn, column);
    m_nLastColumn = std::max(m_nLastColumn, column);
    if (m_nUpdates > 0) return;
    beginUpdate();
    endUpdate();
}

CTableModel::CCell* CTableModel::find(int row, int column) {
    if (row < 0 || row >= rowCount() || column < 0 || column >= columnCount()) return nullptr;
    return &m_rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
}

const CTableModel::CCell* CTableModel::find(const QModelIndex& index) const {
    return const_cast<CTableModel*>(this)->find(index.row(), index.column());
}

int CTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int CTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_columns.size());
}

QVariant CTableModel::data(const QModelIndex& index, int role) const {
    const CCell* cell = find(index);
    if (cell == nullptr) return {};
    const CColumn& column = m_columns[static_cast<std::size_t>(index.column())];
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return cell->m_strText;
    case Qt::TextAlignmentRole:
        return static_cast<int>(column.m_alignment);
    case Qt::ToolTipRole:
        return cell->m_strToolTip.isEmpty() ? column.m_strToolTip : cell->m_strToolTip;
    case SortRole:
        return cell->m_number ? QVariant(*cell->m_number) : QVariant(cell->m_strText);
    case FlashRole:
        return cell->m_bFlashing;
    case MarkRole:
        return cell->m_bMarked;
    case Qt::FontRole:
        return column.m_bBold ? QVariant(m_boldFont) : QVariant();
    default:
        return {};
    }
}

QVariant CTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    const CColumn* column = findColumn(section);
    if (orientation != Qt::Horizontal || column == nullptr) return {};
    if (role == Qt::DisplayRole) return column->m_strHeader;
    if (role == Qt::TextAlignmentRole) return static_cast<int>(column->m_alignment);
    if (role == Qt::ToolTipRole) return column->m_strToolTip;
    return {};
}

Qt::ItemFlags CTableModel::flags(const QModelIndex& index) const {
    const CCell* cell = find(index);
    if (cell == nullptr) return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    // A cell without a number has nothing to edit.
    if (m_columns[static_cast<std::size_t>(index.column())].m_bEditable && cell->m_number)
        flags |= Qt::ItemIsEditable;
    return flags;
}

bool CNumberRule::accepts(const QString& text) const {
    static const QRegularExpression kForm(QStringLiteral("^[0-9]+(\\.([0-9]*))?\\z"));
    const QRegularExpressionMatch match = kForm.match(text);
    if (!match.hasMatch() || match.capturedLength(2) > m_nDecimals) return false;
    if (m_nDecimals == 0 && match.capturedLength(1) > 0) return false;
    const double number = text.toDouble();
    return number >= m_dMinimum && number <= maximum();
}

bool CTableModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    const CCell* cell = find(index);
    if (cell == nullptr || role != Qt::EditRole || !(flags(index) & Qt::ItemIsEditable)) return false;
    const std::function<CNumberRule(int row)>& rule =
        m_columns[static_cast<std::size_t>(index.column())].m_rule;
    if (rule && !rule(index.row()).accepts(value.toString())) return false;
    if (cell->m_strText != value.toString()) emit sigEdited(index.row(), index.column(), value.toString());
    return true;
}

} // namespace UW
