#include "orderservice/widgets/BaseNormalTable.h"

#include "orderservice/widgets/FilterHeader.h"
#include "orderservice/widgets/SimpleTextWidget.h"
#include "orderservice/widgets/TableDelegate.h"
#include "orderservice/widgets/TableFilter.h"
#include "orderservice/widgets/TableLayout.h"
#include "orderservice/widgets/TableModel.h"
#include "orderservice/widgets/TableStat.h"
#include "orderservice/widgets/TableView.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QMenu>
#include <QScrollBar>
#include <QStringList>
#include <QTableView>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>

namespace UW {
namespace {

constexpr int kRowHeight = 24;
constexpr int kCellMargin = 14; ///< pixels beside the text of a cell
constexpr int kMostColumnWidth = 320;
constexpr int kLeastMeasuredRows = 50; ///< before the table is shown, no row can be seen

/// A change of the columns that the user has not made.
class COwnChange {
public:
    explicit COwnChange(int& changes) : m_changes(changes) { ++m_changes; }
    ~COwnChange() { --m_changes; }
    COwnChange(const COwnChange&) = delete;
    COwnChange& operator=(const COwnChange&) = delete;

private:
    int& m_changes;
};

/// The sign of each column's header. It uses only the parts: the header asks once more while the table is
/// destroyed, when the parts still exist and the table itself does not.
std::function<EFilterSign(int)> filterSigns(const CTableModel& model, const CTableFilter& filter) {
    return [&model, &filter](int column) {
        const auto* found = model.findColumn(column);
        if (found == nullptr || !found->m_bFilterable) return EFilterSign::None;
        return filter.accepted(column) != nullptr ? EFilterSign::On : EFilterSign::Off;
    };
}

} // namespace

CBaseNormalTable::CBaseNormalTable(QWidget* parent)
    : CBaseWidget(parent), m_pModel(new CTableModel(this)), m_pFilter(new CTableFilter(this)),
      m_pView(new CTableView(this)),
      m_pHeader(new CFilterHeader(filterSigns(*m_pModel, *m_pFilter), m_pView)),
      m_pHidden(new CSimpleTextWidget(QString(), this)), m_pMenu(new QMenu(this)),
      m_pFlashTimer(new QTimer(this)) {
    makeView();
    m_pStat = new CTableStat(*m_pView, this);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_pView, 1);
    layout->addWidget(m_pStat);
    layout->addWidget(m_pHidden);
    m_pHidden->setContentsMargins(kCellMargin / 2, 2, 0, 2);
    m_pHidden->hide();
    m_pMenu->addAction(QStringLiteral("复制"), this, &CBaseNormalTable::slotCopy, QKeySequence::Copy);
    m_pMenu->addAction(
        QStringLiteral("筛选"), this, [this] { showFilterOfCurrentColumn(); }, QKeySequence::Find);
    m_pMenu->addAction(QStringLiteral("清除筛选"), this, [this] { clearFilter(); });
    connectParts();
}

CBaseNormalTable::~CBaseNormalTable() = default;

void CBaseNormalTable::makeView() {
    m_pFilter->setSourceModel(m_pModel);
    m_pView->setModel(m_pFilter);
    m_pView->setHorizontalHeader(m_pHeader);
    m_pView->verticalHeader()->hide();
    m_pView->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_pView->verticalHeader()->setMinimumSectionSize(1);
    m_pView->verticalHeader()->setDefaultSectionSize(std::max(kRowHeight, fontMetrics().height() + 6));
    m_pView->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_pView->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_pView->setAlternatingRowColors(true);
    m_pView->setWordWrap(false);
    m_pView->setTabKeyNavigation(false); // Tab leaves the table
    m_pView->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                             QAbstractItemView::AnyKeyPressed);
    m_pView->setContextMenuPolicy(Qt::CustomContextMenu);
    m_pView->setItemDelegate(new CTableDelegate(
        [this](const QModelIndex& index) -> std::optional<CNumberRule> {
            const QModelIndex cell = m_pFilter->mapToSource(index);
            const auto* column = m_pModel->findColumn(cell.column());
            if (column == nullptr || !column->m_rule) return std::nullopt;
            return column->m_rule(cell.row());
        },
        this));
    m_pView->installEventFilter(this);
}

void CBaseNormalTable::connectParts() {
    connect(m_pModel, &CTableModel::sigEdited, this, &CBaseNormalTable::sigItemEdited);
    connect(m_pModel, &CTableModel::sigFlashBegun, m_pFlashTimer, QOverload<>::of(&QTimer::start));
    m_pFlashTimer->setSingleShot(true);
    m_pFlashTimer->setInterval(CTableModel::kFlashMs);
    connect(m_pFlashTimer, &QTimer::timeout, this, &CBaseNormalTable::slotFlashEnd);
    connect(m_pHeader, &CFilterHeader::sigFilterClicked, this,
            [this](int column, const QPoint& below) { showFilterMenu(column, below); });
    connect(m_pHeader, &QHeaderView::sectionClicked, this, &CBaseNormalTable::sortBy);
    const auto keepChange = [this] { m_bLayoutChanged = m_bLayoutChanged || m_nOwnChanges == 0; };
    connect(m_pHeader, &QHeaderView::sectionMoved, this, keepChange);
    connect(m_pHeader, &QHeaderView::sectionResized, this, keepChange);
    connect(m_pView, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& point) { m_pMenu->popup(m_pView->viewport()->mapToGlobal(point)); });
    connect(m_pView->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this] { emit sigSelectionChanged(); });
}

void CBaseNormalTable::setColumnHeader(int column, const QString& header) {
    m_pModel->column(column).m_strHeader = header;
    m_pModel->announceHeaders();
}

void CBaseNormalTable::setColumnEditable(int column, bool isEditable) {
    m_pModel->column(column).m_bEditable = isEditable;
}

void CBaseNormalTable::setColumnEditor(int column, const std::function<CNumberRule(int row)>& rule) {
    m_pModel->column(column).m_rule = rule;
}

void CBaseNormalTable::setColumnFilterable(int column, bool isFilterable) {
    m_pModel->column(column).m_bFilterable = isFilterable;
}

void CBaseNormalTable::setColumnBoldFont(int column, bool isBold) {
    m_pModel->column(column).m_bBold = isBold;
}

void CBaseNormalTable::setStatColumnBoldFont(int column, bool isBold) {
    m_pStat->setBold(column, isBold);
}

void CBaseNormalTable::setColumnFlashChange(int column, bool isFlashing) {
    m_pModel->column(column).m_bFlashing = isFlashing;
}

void CBaseNormalTable::setColumnIsNumber(int column, bool isNumber) {
    m_pModel->column(column).m_alignment = (isNumber ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter;
}

void CBaseNormalTable::setColumnKey(int column, const QString& key) {
    m_pModel->column(column).m_strKey = key;
}

QString CBaseNormalTable::columnKey(int column) const {
    const auto* found = m_pModel->findColumn(column);
    return found != nullptr && !found->m_strKey.isEmpty() ? found->m_strKey : QString::number(column);
}

bool CBaseNormalTable::isNumberColumn(int column) const {
    return (m_pModel->findColumn(column)->m_alignment & Qt::AlignRight) != 0;
}

void CBaseNormalTable::setColumnToolTip(int column, const QString& text) {
    m_pModel->column(column).m_strToolTip = text;
}

void CBaseNormalTable::setColumnHidden(int column, bool isHidden) {
    const COwnChange change(m_nOwnChanges);
    m_pView->setColumnHidden(column, isHidden);
    m_pStat->follow();
}

bool CBaseNormalTable::isColumnHidden(int column) const {
    return m_pView->isColumnHidden(column);
}

int CBaseNormalTable::columnCount() const {
    return m_pModel->columnCount();
}

QString CBaseNormalTable::columnHeader(int column) const {
    return m_pModel->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
}

std::set<QString> CBaseNormalTable::columnTexts(int column) const {
    std::set<QString> texts;
    for (int row = 0; row < rowCount(); ++row)
        texts.insert(itemText(row, column));
    return texts;
}

void CBaseNormalTable::setRowCount(int rows) {
    m_pModel->setRows(rows);
    showHiddenRows();
}

int CBaseNormalTable::rowCount() const {
    return m_pModel->rowCount();
}

void CBaseNormalTable::setItemText(int row, int column, const QString& text) {
    m_pModel->setText(row, column, text);
}

void CBaseNormalTable::setItemDouble(int row, int column, double value, int decimals) {
    m_pModel->setText(row, column, QString::number(value, 'f', decimals), value);
}

void CBaseNormalTable::setItemLonglong(int row, int column, qlonglong value) {
    m_pModel->setText(row, column, QString::number(value), static_cast<double>(value));
}

void CBaseNormalTable::setItemToolTip(int row, int column, const QString& text) {
    m_pModel->setToolTip(row, column, text);
}

void CBaseNormalTable::setItemMarked(int row, int column, bool isMarked) {
    m_pModel->setMark(row, column, isMarked);
}

QString CBaseNormalTable::itemText(int row, int column) const {
    return m_pModel->data(m_pModel->index(row, column), Qt::DisplayRole).toString();
}

void CBaseNormalTable::beginUpdate() {
    m_pModel->beginUpdate();
}

void CBaseNormalTable::endUpdate() {
    m_pModel->endUpdate();
    if (m_pModel->takeLonger()) widenNumberColumns();
}

void CBaseNormalTable::setStatText(int column, const QString& text) {
    const auto* found = m_pModel->findColumn(column);
    if (found == nullptr) return;
    m_pStat->setText(column, text, found->m_alignment);
    m_pModel->keepLongest(column, text);
}

QString CBaseNormalTable::statText(int column) const {
    return m_pStat->text(column);
}

bool CBaseNormalTable::isStatBold(int column) const {
    return m_pStat->isBold(column);
}

int CBaseNormalTable::rowID(int position) const {
    return m_pFilter->mapToSource(m_pFilter->index(position, 0)).row();
}

int CBaseNormalTable::selectedRow() const {
    return m_pFilter->mapToSource(m_pView->currentIndex()).row();
}

void CBaseNormalTable::setSelectedRow(int row) {
    const QModelIndex shown = m_pFilter->mapFromSource(m_pModel->index(row, 0));
    if (shown.isValid()) m_pView->setCurrentIndex(shown);
}

void CBaseNormalTable::setColumnFilter(int column, const std::set<QString>& texts) {
    m_pFilter->setAccepted(column, texts);
    showHiddenRows();
}

void CBaseNormalTable::clearFilter() {
    m_pFilter->clear();
    showHiddenRows();
}

int CBaseNormalTable::hiddenRows() const {
    return m_pModel->rowCount() - m_pFilter->rowCount();
}

void CBaseNormalTable::setHiddenRowsText(const QString& text) {
    m_strHiddenRows = text;
    showHiddenRows();
}

QString CBaseNormalTable::hiddenRowsText() const {
    return hiddenRows() > 0
               ? QString(m_strHiddenRows).replace(QLatin1String("%1"), QString::number(hiddenRows()))
               : QString();
}

void CBaseNormalTable::showHiddenRows() {
    m_pHidden->setText(hiddenRowsText());
    m_pHidden->setVisible(hiddenRows() > 0);
    m_pHeader->viewport()->update();
}

int CBaseNormalTable::textWidth(int column) const {
    QFont font = m_pView->font();
    font.setBold(m_pModel->findColumn(column)->m_bBold);
    const QFontMetrics metrics(font);
    const int height = m_pView->verticalHeader()->defaultSectionSize();
    const int first = std::max(0, m_pView->rowAt(0));
    const int seen = std::max(kLeastMeasuredRows, m_pView->viewport()->height() / height + 1);
    const int rows = std::min(m_pFilter->rowCount(), first + seen);
    int width = metrics.horizontalAdvance(m_pStat->text(column));
    if (isNumberColumn(column))
        width = std::max(width, metrics.horizontalAdvance(m_pModel->findColumn(column)->m_strLongest));
    for (int row = first; row < rows; ++row)
        width = std::max(width, metrics.horizontalAdvance(m_pFilter->index(row, column).data().toString()));
    return std::min(width + kCellMargin, kMostColumnWidth);
}

void CBaseNormalTable::adjustVisibleRowsColumnWidth() {
    const COwnChange change(m_nOwnChanges);
    for (int column = 0; column < columnCount(); ++column) {
        if (isColumnHidden(column)) continue;
        const int width = std::max(textWidth(column), m_pHeader->sectionSizeHint(column));
        m_pView->setColumnWidth(column, std::min(width, kMostColumnWidth));
    }
    m_pStat->follow();
}

QString CBaseNormalTable::saveConfigStr() const {
    return saveLayout(*m_pHeader, [this](int column) { return columnKey(column); });
}

void CBaseNormalTable::loadConfigStr(const QString& layout) {
    const COwnChange change(m_nOwnChanges);
    loadLayout(*m_pHeader, layout, [this](int column) { return columnKey(column); });
    widenNumberColumns();
}

void CBaseNormalTable::widenNumberColumns() {
    const COwnChange change(m_nOwnChanges);
    for (int column = 0; column < columnCount(); ++column) {
        if (!isColumnHidden(column) && isNumberColumn(column))
            m_pView->setColumnWidth(column, std::max(m_pView->columnWidth(column), textWidth(column)));
    }
    m_pStat->follow();
}

int CBaseNormalTable::neededHeight() const {
    const int rows = rowCount() * m_pView->verticalHeader()->defaultSectionSize();
    const int scrollBar = m_pView->horizontalScrollBar()->sizeHint().height();
    return m_pHeader->sizeHint().height() + rows + scrollBar + 2 * m_pView->frameWidth() + m_pStat->height();
}

QAction* CBaseNormalTable::addMenuAction(const QString& text) {
    return m_pMenu->addAction(text);
}

void CBaseNormalTable::addMenuSeparator() {
    m_pMenu->addSeparator();
}

QString CBaseNormalTable::selectedText() const {
    QVector<int> columns;
    for (int place = 0; place < columnCount(); ++place) {
        if (!isColumnHidden(m_pHeader->logicalIndex(place))) columns.append(m_pHeader->logicalIndex(place));
    }
    QStringList heads, lines;
    for (const int column : columns)
        heads.append(columnHeader(column));
    lines.append(heads.join(QLatin1Char('\t')));
    for (int row = 0; row < m_pFilter->rowCount(); ++row) {
        if (!m_pView->selectionModel()->isRowSelected(row, {})) continue;
        QStringList cells;
        for (const int column : columns)
            cells.append(m_pFilter->index(row, column).data().toString());
        lines.append(cells.join(QLatin1Char('\t')));
    }
    return lines.join(QLatin1Char('\n'));
}

void CBaseNormalTable::slotCopy() {
    QApplication::clipboard()->setText(selectedText());
}

void CBaseNormalTable::slotFlashEnd() {
    if (m_pModel->endFlashes()) m_pFlashTimer->start();
}

void CBaseNormalTable::showFilterMenu(int, const QPoint&) {}

const std::set<QString>* CBaseNormalTable::acceptedTexts(int column) const {
    return m_pFilter->accepted(column);
}

void CBaseNormalTable::showFilterOfCurrentColumn() {
    const int column = m_pView->currentIndex().column();
    const auto* found = m_pModel->findColumn(column);
    if (found == nullptr || !found->m_bFilterable) return;
    const QPoint below(m_pHeader->sectionViewportPosition(column), m_pHeader->height());
    showFilterMenu(column, m_pHeader->viewport()->mapToGlobal(below));
}

bool CBaseNormalTable::eventFilter(QObject* watched, QEvent* event) {
    if (watched != m_pView || event->type() != QEvent::KeyPress)
        return CBaseWidget::eventFilter(watched, event);
    const auto* key = static_cast<QKeyEvent*>(event);
    if (key->matches(QKeySequence::Copy)) {
        slotCopy();
        return true;
    }
    if (key->matches(QKeySequence::Find)) {
        showFilterOfCurrentColumn();
        return true;
    }
    return CBaseWidget::eventFilter(watched, event);
}

void CBaseNormalTable::sortBy(int column) {
    if (m_nSortColumn != column) {
        m_nSortColumn = column;
        m_eSortOrder = Qt::AscendingOrder;
    } else if (m_eSortOrder == Qt::AscendingOrder) {
        m_eSortOrder = Qt::DescendingOrder;
    } else {
        m_nSortColumn = -1;
        m_eSortOrder = Qt::AscendingOrder;
    }
    m_pFilter->sort(m_nSortColumn, m_eSortOrder);
    m_pHeader->setSortIndicatorShown(m_nSortColumn >= 0);
    if (m_nSortColumn >= 0) m_pHeader->setSortIndicator(m_nSortColumn, m_eSortOrder);
}

} // namespace UW
