#include "orderservice/widgets/TableStat.h"

#include <QHeaderView>
#include <QScrollBar>

namespace UW {

CTableStat::CTableStat(QTableView& table, QWidget* parent)
    : QTableView(parent), m_table(table), m_pModel(new QStandardItemModel(1, 0, this)) {
    setModel(m_pModel);
    horizontalHeader()->hide();
    verticalHeader()->hide();
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setSelectionMode(QAbstractItemView::NoSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setFocusPolicy(Qt::NoFocus);
    const int height = m_table.verticalHeader()->defaultSectionSize();
    verticalHeader()->setMinimumSectionSize(1);
    verticalHeader()->setDefaultSectionSize(height);
    setFixedHeight(height + 2 * frameWidth());
    QHeaderView* header = m_table.horizontalHeader();
    connect(header, &QHeaderView::sectionResized, this, [this](int column, int, int width) {
        setColumnHidden(column, width == 0);
        if (width > 0) setColumnWidth(column, width);
    });
    connect(header, &QHeaderView::sectionMoved, this,
            [this](int, int from, int to) { horizontalHeader()->moveSection(from, to); });
    connect(m_table.horizontalScrollBar(), &QScrollBar::valueChanged, horizontalScrollBar(),
            &QScrollBar::setValue);
    connect(m_table.verticalScrollBar(), &QScrollBar::rangeChanged, this, [this] { followScrollBar(); });
}

QStandardItem& CTableStat::item(int column) {
    while (m_pModel->columnCount() <= column)
        m_pModel->appendColumn({new QStandardItem});
    return *m_pModel->item(0, column);
}

void CTableStat::setText(int column, const QString& text, Qt::Alignment alignment) {
    QStandardItem& cell = item(column);
    if (cell.text() == text) return;
    cell.setText(text);
    cell.setTextAlignment(alignment);
}

QString CTableStat::text(int column) const {
    const QStandardItem* cell = m_pModel->item(0, column);
    return cell != nullptr ? cell->text() : QString();
}

void CTableStat::setBold(int column, bool isBold) {
    QFont bold = item(column).font();
    bold.setBold(isBold);
    item(column).setFont(bold);
}

bool CTableStat::isBold(int column) const {
    const QStandardItem* cell = m_pModel->item(0, column);
    return cell != nullptr && cell->font().bold();
}

void CTableStat::follow() {
    QHeaderView* header = m_table.horizontalHeader();
    if (header->count() > 0) item(header->count() - 1);
    for (int place = 0; place < header->count(); ++place) {
        const int column = header->logicalIndex(place);
        horizontalHeader()->moveSection(horizontalHeader()->visualIndex(column), place);
        setColumnHidden(column, header->isSectionHidden(column));
        if (!header->isSectionHidden(column)) setColumnWidth(column, header->sectionSize(column));
    }
    followScrollBar();
}

void CTableStat::followScrollBar() {
    // Without this margin the two views would scroll by different widths.
    const QScrollBar* bar = m_table.verticalScrollBar();
    setViewportMargins(0, 0, bar->maximum() > 0 ? bar->sizeHint().width() : 0, 0);
}

} // namespace UW
