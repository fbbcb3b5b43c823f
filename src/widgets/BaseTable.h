#pragma once

#include "orderservice/base/Export.h"

#include <QString>
#include <QtGlobal>

#include <functional>
#include <set>

class QAction;

namespace UW {

/// What the user may enter into a cell: numbers from `m_dMinimum` on, with at most `m_nDecimals` digits after
/// the point.
struct ORDERSERVICE_EXPORT CNumberRule {
    /// The greatest int means "not set" in the records.
    static constexpr double kMostWhole = 0x7ffffffe;
    static constexpr double kMostWithDecimals = 1e12;

    double m_dMinimum = 1;
    int m_nDecimals = 0;

    double maximum() const { return m_nDecimals == 0 ? kMostWhole : kMostWithDecimals; }
    /// Whether the text is such a number, with digits and at most one point.
    bool accepts(const QString& text) const;
};

/// A table of texts and numbers. A row number always is the number of the record, whatever the table sorts or
/// filters. Main thread.
class ORDERSERVICE_EXPORT IBaseTable {
public:
    virtual ~IBaseTable() = default;

    virtual void setColumnHeader(int column, const QString& header) = 0;
    virtual void setColumnEditable(int column, bool isEditable) = 0;
    /// Called for a cell when the user begins to edit it.
    virtual void setColumnEditor(int column, const std::function<CNumberRule(int row)>& rule) = 0;
    virtual void setColumnFilterable(int column, bool isFilterable) = 0;
    virtual void setColumnBoldFont(int column, bool isBold) = 0;
    virtual void setStatColumnBoldFont(int column, bool isBold) = 0;
    /// A cell of the column is highlighted for a short time if its text changes.
    virtual void setColumnFlashChange(int column, bool isFlashing) = 0;

    virtual void setRowCount(int rows) = 0;
    virtual int rowCount() const = 0;
    virtual void setItemText(int row, int column, const QString& text) = 0;
    virtual void setItemDouble(int row, int column, double value, int decimals) = 0;
    virtual void setItemLonglong(int row, int column, qlonglong value) = 0;
    /// A text of the sum row.
    virtual void setStatText(int column, const QString& text) = 0;

    /// The row that is shown at this position from the top, or -1.
    virtual int rowID(int position) const = 0;
    /// The row that the keyboard is in, or -1.
    virtual int selectedRow() const = 0;
    virtual void setSelectedRow(int row) = 0;

    /// Hides the rows whose text in this column is not in the set. An empty set ends the filter.
    virtual void setColumnFilter(int column, const std::set<QString>& texts) = 0;
    virtual void clearFilter() = 0;

    /// Gives each column the width of its header and of the rows that can be seen.
    virtual void adjustVisibleRowsColumnWidth() = 0;
    /// The order and the widths of the columns, as one line of text.
    virtual QString saveConfigStr() const = 0;

    /// Appends to the context menu. The table owns the action.
    virtual QAction* addMenuAction(const QString& text) = 0;
    virtual void addMenuSeparator() = 0;
};

} // namespace UW
