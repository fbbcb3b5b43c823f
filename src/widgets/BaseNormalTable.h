#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/widgets/BaseTable.h"
#include "orderservice/widgets/BaseWidget.h"

#include <QPoint>
#include <QString>

#include <functional>
#include <set>

class QMenu;
class QTableView;
class QTimer;

namespace UW {

class CFilterHeader;
class CSimpleTextWidget;
class CTableFilter;
class CTableModel;
class CTableStat;

/// A table with one height for all rows, a sum row, and filters in its header. The user can sort by a click
/// on a header (upwards, downwards, order of the records), move and resize columns, copy the selected rows
/// with Ctrl+C as text with tabs and the headers, filter the current column with Ctrl+F, and edit with F2.
///
/// Rows are cells of a model: a row costs no widget. Main thread.
class ORDERSERVICE_EXPORT CBaseNormalTable : public CBaseWidget, public IBaseTable {
    Q_OBJECT
public:
    explicit CBaseNormalTable(QWidget* parent = nullptr);
    ~CBaseNormalTable() override;

    void setColumnHeader(int column, const QString& header) override;
    void setColumnEditable(int column, bool isEditable) override;
    void setColumnEditor(int column, const std::function<CNumberRule(int row)>& rule) override;
    void setColumnFilterable(int column, bool isFilterable) override;
    void setColumnBoldFont(int column, bool isBold) override;
    void setStatColumnBoldFont(int column, bool isBold) override;
    void setColumnFlashChange(int column, bool isFlashing) override;
    /// Numbers are right-aligned, texts left-aligned.
    void setColumnIsNumber(int column, bool isNumber);
    /// The column's name in a saved layout, for columns whose number is not always the same. ASCII letters,
    /// digits and underscores.
    void setColumnKey(int column, const QString& key);
    void setColumnToolTip(int column, const QString& text);
    void setColumnHidden(int column, bool isHidden);
    bool isColumnHidden(int column) const;
    int columnCount() const;
    QString columnHeader(int column) const;
    /// All different texts of a column, also those of hidden rows.
    std::set<QString> columnTexts(int column) const;

    /// All cells become "-".
    void setRowCount(int rows) override;
    int rowCount() const override;
    void setItemText(int row, int column, const QString& text) override;
    void setItemDouble(int row, int column, double value, int decimals) override;
    void setItemLonglong(int row, int column, qlonglong value) override;
    /// Replaces the tool tip of the column in one cell. An empty text restores it.
    void setItemToolTip(int row, int column, const QString& text);
    /// Shows that the user has changed the cell.
    void setItemMarked(int row, int column, bool isMarked);
    QString itemText(int row, int column) const;
    /// Changes between the two calls are drawn together. May be nested.
    void beginUpdate();
    void endUpdate();
    void setStatText(int column, const QString& text) override;
    QString statText(int column) const;
    bool isStatBold(int column) const;

    int rowID(int position) const override;
    int selectedRow() const override;
    void setSelectedRow(int row) override;
    void setColumnFilter(int column, const std::set<QString>& texts) override;
    void clearFilter() override;
    int hiddenRows() const;
    /// The line below the table that is shown while a filter hides rows. "%1" is replaced by their number.
    void setHiddenRowsText(const QString& text);
    /// The text of this line, or an empty text if no row is hidden.
    QString hiddenRowsText() const;

    void adjustVisibleRowsColumnWidth() override;
    QString saveConfigStr() const override;
    /// Applies a text of saveConfigStr. A damaged text does nothing. A column of numbers gets more width if
    /// its numbers would be cut: the user must see them whole.
    void loadConfigStr(const QString& layout);
    /// Whether the user has moved or resized a column.
    bool isLayoutChanged() const { return m_bLayoutChanged; }
    /// The height in pixels that header, rows and sum row need.
    int neededHeight() const;

    QAction* addMenuAction(const QString& text) override;
    void addMenuSeparator() override;
    /// Header and selected rows as lines, with tabs between the visible columns in their shown order.
    QString selectedText() const;

    QTableView* view() const { return m_pView; }

public slots:
    void slotCopy();
    /// Ends the highlights that are over.
    void slotFlashEnd();

signals:
    void sigSelectionChanged();
    /// The user has entered another text. The cell still has its old text.
    void sigItemEdited(int row, int column, QString text);

protected:
    /// The user asks for the filter of a column. `below`: where a menu may open, in global coordinates. The
    /// base does nothing.
    virtual void showFilterMenu(int column, const QPoint& below);
    /// The texts that the column's filter accepts, or null if it has no filter.
    const std::set<QString>* acceptedTexts(int column) const;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void makeView();
    void connectParts();
    void sortBy(int column);
    QString columnKey(int column) const;
    bool isNumberColumn(int column) const;
    /// The width in pixels that the texts of the column need, without its header: all texts of a column of
    /// numbers, and those of the first rows that can be seen of another one.
    int textWidth(int column) const;
    /// Gives each column of numbers the width of its longest number. It never takes width away.
    void widenNumberColumns();
    void showHiddenRows();
    void showFilterOfCurrentColumn();

    CTableModel* const m_pModel;
    CTableFilter* const m_pFilter;
    QTableView* const m_pView;
    CFilterHeader* const m_pHeader;
    CTableStat* m_pStat = nullptr;
    CSimpleTextWidget* const m_pHidden;
    QMenu* const m_pMenu;
    QTimer* const m_pFlashTimer;
    QString m_strHiddenRows = QStringLiteral("筛选隐藏了 %1 行; 合计包含所有行");
    bool m_bLayoutChanged = false;
    int m_nOwnChanges = 0; ///< above 0: the table itself changes its columns
    int m_nSortColumn = -1;
    Qt::SortOrder m_eSortOrder = Qt::AscendingOrder;
};

} // namespace UW
