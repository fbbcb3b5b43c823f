#pragma once

#include "orderservice/widgets/BaseTable.h"

#include <QAbstractTableModel>
#include <QFont>
#include <QString>

#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace UW {

/// The cells of a table. A change of many cells is announced once, at the end of the update. Main thread.
class CTableModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum ERole {
        SortRole = Qt::UserRole, ///< the number of a cell, or its text
        FlashRole,               ///< true while the cell is highlighted
        MarkRole,                ///< true if the cell is marked as edited
    };
    static constexpr int kFlashMs = 400;
    /// At most five flashes a second in one cell.
    static constexpr double kFlashPauseSeconds = 0.2;

    struct CColumn {
        QString m_strHeader;
        QString m_strKey; ///< name in a saved layout; empty: the number of the column
        QString m_strToolTip;
        Qt::Alignment m_alignment = Qt::AlignLeft | Qt::AlignVCenter;
        bool m_bEditable = false;
        bool m_bFilterable = false;
        bool m_bBold = false;
        bool m_bFlashing = false;
        std::function<CNumberRule(int row)> m_rule;
        QString m_strLongest; ///< the longest text of its cells and of its sum since setRows
        int m_nLongest = 0;   ///< its length
    };

    explicit CTableModel(QObject* parent = nullptr);

    /// Appends columns if there are fewer.
    CColumn& column(int number);
    const CColumn* findColumn(int number) const;
    void announceHeaders();
    void setRows(int rows);

    void setText(int row, int column, const QString& text, std::optional<double> number = std::nullopt);
    /// Keeps the text as the longest one of the column if it is longer than all before.
    void keepLongest(int column, const QString& text);
    /// Whether a longest text has changed since the last call.
    bool takeLonger() { return std::exchange(m_bLonger, false); }
    void setToolTip(int row, int column, const QString& text);
    void setMark(int row, int column, bool isMarked);

    /// Changes between the two calls are announced together. May be nested.
    void beginUpdate() { ++m_nUpdates; }
    void endUpdate();
    /// Ends the highlights that are over. Returns whether cells are still highlighted.
    bool endFlashes();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    /// Does not change the cell, but emits sigEdited: the owner decides what an edit means.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

signals:
    void sigEdited(int row, int column, QString text);
    void sigFlashBegun();

private:
    struct CCell {
        QString m_strText = QStringLiteral("-");
        std::optional<double> m_number;
        QString m_strToolTip;
        double m_dFlashBegin = -1; ///< seconds of the clock; below 0: never
        bool m_bFlashing = false;
        bool m_bMarked = false;
        bool m_bFilled = false; ///< the first text of a cell is not a change
    };

    CCell* find(int row, int column);
    const CCell* find(const QModelIndex& index) const;
    void flash(CCell& cell, int row, int column);
    void touch(int row, int column);

    const QFont m_boldFont; ///< made once, because each cell that is drawn asks for it
    std::vector<CColumn> m_columns;
    std::vector<std::vector<CCell>> m_rows;
    std::vector<std::pair<int, int>> m_flashing;
    bool m_bLonger = false;
    int m_nUpdates = 0;
    int m_nFirstRow = -1, m_nLastRow = -1, m_nFirstColumn = -1, m_nLastColumn = -1; ///< changed cells
};

} // namespace UW
