#pragma once

#include <QString>
#include <QVariant>
#include <QVector>

#include <vector>

namespace desk {

/// How the cells of a column are shown. Numbers are aligned to the right and have fixed decimals.
enum class ECell {
    Text,
    Count,   ///< whole number
    Money,   ///< two decimals
    Price,   ///< three decimals; four if the price needs them
    Percent, ///< two decimals
    Time,    ///< ISO 8601; the time of day is shown, and the day if it is not today
    Second,  ///< the same without the milliseconds; copies and tool tips have them
};

/// Whether the cells of the column are texts: aligned to the left, and cut off if the column is too narrow.
inline bool isTextCell(ECell cell) {
    return cell == ECell::Text || cell == ECell::Time || cell == ECell::Second;
}

struct CColumn {
    const char* m_pszId;    ///< for the saved layout; never shown
    const char* m_pszTitle; ///< in English; translated in the context "columns"
    ECell m_eCell = ECell::Text;
    int m_nWidth = 80;        ///< default width in pixels, for the font of the window
    bool m_bFlash = false;    ///< a cell flashes when its value changes
    bool m_bColoured = false; ///< the value has the colour of a rise or a fall
    /// The unit, if the title has no room for it; the tool tip of the title. Translated like the title.
    const char* m_pszUnit = nullptr;
};

/// Whether the cells of the column must not be cut off: numbers, times, codes and accounts.
bool isShownWhole(const CColumn& column);

/// The columns of one table.
struct CTableSpec {
    const char* m_pszName; ///< for the saved layout
    std::vector<CColumn> m_columns;
    bool m_bNewestFirst = false; ///< new rows are added at the top; otherwise at the end
    /// Older rows are dropped, but never a row that waits, nor one that is newer than it. 0: no limit.
    int m_nMaxRows = 0;
};

/// What a row is, if it is shown in a special way.
enum class ERowMark {
    None,
    Waiting,
    Warning, ///< such as a rejected order
    Off,     ///< such as a stopped strategy
    Total,   ///< always the first row
};

/// One row of a table. An invalid cell has no value and is shown as an empty text.
struct CRow {
    QString m_strKey; ///< unique in its table
    QVector<QVariant> m_cells;
    ERowMark m_eMark = ERowMark::None;
};

/// The number of a column by its id; -1 if the table has no such column.
int columnOf(const CTableSpec& spec, const char* id);

/// A cell as the table shows it: "1,234.50".
QString cellText(ECell cell, const QVariant& value);
/// A cell for other programs: "1234.50". A time has its day.
QString plainCellText(ECell cell, const QVariant& value);
/// The sign of a number as the table shows it: a number that is shown as 0.00 has none.
int signOf(ECell cell, const QVariant& value);

} // namespace desk
