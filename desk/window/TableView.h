#pragma once

#include "desk/window/RowFilter.h"
#include "desk/window/RowModel.h"

#include <QHeaderView>
#include <QStringList>
#include <QTableView>
#include <QTimer>

#include <map>

class QLineEdit;
class QSettings;

namespace desk {

/// A header that sorts by a click, with a line of filter fields below the titles.
class CFilterHeader : public QHeaderView {
    Q_OBJECT
public:
    CFilterHeader(CRowFilter& filter, QWidget* parent);

    /// Shows or hides the filter fields. Hiding ends all filters.
    void showFilters(bool isShown);
    bool areFiltersShown() const { return m_bFilters; }
    /// The field of a column; null if the column does not exist.
    QLineEdit* field(int column) const;
    QSize sizeHint() const override;
    /// Enter in a field goes to the table and does nothing else.
    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void updateGeometries() override;

private:
    int titleHeight() const;
    void placeFields();

    CRowFilter& m_filter;
    bool m_bFilters = false;
    std::map<int, QLineEdit*> m_fields; ///< the header owns them
};

/// The table that all panels use. One row height; cells flash when they change; the selected rows are copied
/// as text with tabs and the titles. If rows are added above the rows that the user reads, those stay where
/// they are. Main thread only.
class CTableView : public QTableView {
    Q_OBJECT
public:
    /// The model must outlive the view.
    explicit CTableView(CRowModel& model, QWidget* parent = nullptr);

    CRowModel& rows() const { return m_model; }
    CRowFilter& filter() const { return *m_filter; }
    CFilterHeader& filterHeader() const { return *m_header; }
    /// A width of the default layout in pixels, for the font of the table. `specified`: pixels for the font
    /// that the default widths are for.
    int scaledWidth(int specified) const;
    void setEmptyText(const QString& text);
    const QString& emptyText() const { return m_strEmpty; }

    /// The keys of the selected rows, in the order of the view. The current row is not one of them if it is
    /// not selected: nothing on the screen would mark it.
    QStringList selectedKeys() const;
    /// The selected rows, or all shown rows if none is selected, with a line of titles.
    QString copyText() const;
    /// All shown rows, as CSV with a line of titles. Ends with a newline. A text that a spreadsheet would
    /// read as a formula begins with an apostrophe.
    QString csvText() const;
    /// Writes csvText to the file, whole or not at all. Returns the reason of a failure, or an empty text.
    QString writeCsv(const QString& path) const;
    void saveLayout(QSettings& settings) const;
    void restoreLayout(QSettings& settings);

    /// The commands of the table, with a submenu that sorts. Returns when the menu is closed.
    void showMenu(const QPoint& place);
    /// Sorts by the column. If it is sorted by it upwards already, sorts downwards.
    void sortBy(int column);

    void rowsInserted(const QModelIndex& parent, int start, int end) override;

    /// Makes a column at least this wide in the next round of the event loop. For a cell that is being
    /// painted and does not fit.
    void widenLater(int column, int width);

signals:
    void sigActivated(const QStringList& keys); ///< Enter or a double click; a held key gives one signal
    void sigSpace(const QStringList& keys);     ///< a held key gives one signal

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    void rememberTop();
    void widenColumns();
    QString rowsText(const QList<int>& rows, QChar separator) const;
    void exportCsv();

    CRowModel& m_model;
    CRowFilter* m_filter;
    CFilterHeader* m_header;
    QTimer m_flashTimer;
    QString m_strEmpty;
    std::map<int, int> m_wideColumns; ///< columns that are too narrow, and the width that they need
    int m_nTop = 0;                   ///< first visible row
};

} // namespace desk
