#pragma once

#include <QStandardItemModel>
#include <QString>
#include <QTableView>

namespace UW {

/// The sum row below a table. Its columns follow the columns of the table. Main thread.
class CTableStat : public QTableView {
    Q_OBJECT
public:
    /// `table` is the table above, with its header. It must outlive this row.
    CTableStat(QTableView& table, QWidget* parent);

    void setText(int column, const QString& text, Qt::Alignment alignment);
    QString text(int column) const;
    void setBold(int column, bool isBold);
    bool isBold(int column) const;
    /// Takes over order, widths and visibility of all columns.
    void follow();

private:
    QStandardItem& item(int column);
    void followScrollBar();

    QTableView& m_table;
    QStandardItemModel* const m_pModel;
};

} // namespace UW
