#include "desk/window/TableView.h"

#include "desk/window/CellTexts.h"
#include "desk/window/Theme.h"
#include "orderservice/gates/OrderConfirmer.h"

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPainter>
#include <QSaveFile>
#include <QScrollBar>
#include <QSettings>
#include <QStyledItemDelegate>

#include <algorithm>
#include <utility>

namespace desk {
namespace {

constexpr int kFlashTickMs = 100;
constexpr int kPadding = 6;
constexpr int kCellMargins = 8;  ///< of the style, left and right together
constexpr int kTitleMargins = 8; ///< the same for a title
constexpr int kSpecDigits = 83;  ///< pixels of ten digits of the font that the default widths are for

/// The colours of a cell, by its mark, its trend and its flash, and its text. A cell is drawn without the
/// text layout of the style, which needs more than half of the time of a table.
class CCellDelegate : public QStyledItemDelegate {
public:
    explicit CCellDelegate(CTableView& view) : QStyledItemDelegate(&view), m_view(view) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        QStyleOptionViewItem cell = option;
        initStyleOption(&cell, index);
        const QStyle& style = *m_view.style();
        style.drawPrimitive(QStyle::PE_PanelItemViewItem, &cell, painter, &m_view);
        const bool isSelected = (cell.state & QStyle::State_Selected) != 0;
        const bool isActive = (cell.state & QStyle::State_Active) != 0;
        painter->setPen(cell.palette.color(isActive ? QPalette::Active : QPalette::Inactive,
                                           isSelected ? QPalette::HighlightedText : QPalette::Text));
        const int margin = kCellMargins / 2;
        textsOf(cell.font).draw(*painter, cell.rect.adjusted(margin, 0, -margin, 0), cell.displayAlignment,
                                cell.text, cell.font);
    }

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        const CTheme& theme = CTheme::current();
        const auto mark = static_cast<ERowMark>(index.data(CRowModel::MarkRole).toInt());
        const int trend = index.data(CRowModel::TrendRole).toInt();
        QColor colour = theme.text();
        if (mark == ERowMark::Warning) colour = theme.warning();
        if (mark == ERowMark::Off) colour = theme.off();
        if (trend > 0) colour = theme.rise();
        if (trend < 0) colour = theme.fall();
        option->palette.setColor(QPalette::Text, colour);
        option->palette.setColor(QPalette::HighlightedText, mark == ERowMark::Off ? theme.text() : colour);
        // Bold numbers would need wider columns.
        if (mark == ERowMark::Total && isTextCell(columnAt(index).m_eCell)) option->font.setBold(true);
        if (index.data(CRowModel::FlashRole).toInt() != 0) option->backgroundBrush = theme.flash();
        fitText(*option, columnAt(index));
        option->state &= ~QStyle::State_HasFocus; // rows are selected, not cells
    }

private:
    const CColumn& columnAt(const QModelIndex& index) const {
        return m_view.rows().spec().m_columns[static_cast<std::size_t>(index.column())];
    }

    /// A number, a time or a code that is cut off would be read as another one. Its column becomes wider.
    void fitText(QStyleOptionViewItem& option, const CColumn& column) const {
        if (!isShownWhole(column)) return;
        const int needed = textsOf(option.font).width(option.text, option.font) + kCellMargins;
        if (needed <= option.rect.width()) return;
        m_view.widenLater(option.index.column(), needed);
        if (!isTextCell(column.m_eCell)) option.text = QStringLiteral("###");
    }

    CCellTexts& textsOf(const QFont& font) const { return font.bold() ? m_boldTexts : m_texts; }

    CTableView& m_view;
    mutable CCellTexts m_texts;
    mutable CCellTexts m_boldTexts; ///< of rows with totals
};

bool isEnter(int key) {
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

/// A text that a spreadsheet shows as a text, even if it looks like a formula.
QString withoutFormula(const QString& text) {
    static const QString kFormula = QStringLiteral("=+-@\t\r");
    return !text.isEmpty() && kFormula.contains(text[0]) ? QLatin1Char('\'') + text : text;
}

QString csvField(const QString& text) {
    static const QString kSpecial = QStringLiteral(",\"\r\n");
    const bool isPlain = std::none_of(text.begin(), text.end(), [](QChar c) { return kSpecial.contains(c); });
    if (isPlain) return text;
    QString quoted = text;
    return QLatin1Char('"') + quoted.replace(QLatin1Char('"'), QStringLiteral("\"\"")) + QLatin1Char('"');
}

} // namespace

CFilterHeader::CFilterHeader(CRowFilter& filter, QWidget* parent)
    : QHeaderView(Qt::Horizontal, parent), m_filter(filter) {
    setSectionsClickable(true);
    setSectionsMovable(true);
    setHighlightSections(false);
    setMinimumSectionSize(24);
    connect(this, &QHeaderView::sectionResized, this, [this] { placeFields(); });
    connect(this, &QHeaderView::sectionMoved, this, [this] { placeFields(); });
}

int CFilterHeader::titleHeight() const {
    return QHeaderView::sizeHint().height();
}

QSize CFilterHeader::sizeHint() const {
    QSize size = QHeaderView::sizeHint();
    if (m_bFilters && !m_fields.empty()) size.rheight() += m_fields.begin()->second->sizeHint().height();
    return size;
}

void CFilterHeader::showFilters(bool isShown) {
    m_bFilters = isShown;
    for (int column = 0; isShown && column < count(); ++column) {
        if (m_fields.count(column) > 0) continue;
        auto* field = new QLineEdit(this);
        field->setPlaceholderText(tr("filter"));
        field->setToolTip(tr("Shows only rows that contain this text. Numbers: >100, <100, =100; a whole "
                             "number finds only itself"));
        field->installEventFilter(this);
        connect(field, &QLineEdit::textChanged, this,
                [this, column](const QString& text) { m_filter.setColumnFilter(column, text); });
        m_fields[column] = field;
    }
    for (const auto& [column, field] : m_fields) {
        if (!isShown) field->clear();
        field->setVisible(isShown && !isSectionHidden(column));
    }
    updateGeometries();
    emit geometriesChanged();
    placeFields();
}

bool CFilterHeader::eventFilter(QObject* watched, QEvent* event) {
    const bool isKey = event->type() == QEvent::KeyPress;
    if (!isKey || !isEnter(static_cast<QKeyEvent*>(event)->key()))
        return QHeaderView::eventFilter(watched, event);
    parentWidget()->setFocus();
    return true;
}

QLineEdit* CFilterHeader::field(int column) const {
    const auto found = m_fields.find(column);
    return found == m_fields.end() ? nullptr : found->second;
}

void CFilterHeader::updateGeometries() {
    setViewportMargins(0, 0, 0,
                       m_bFilters && !m_fields.empty() ? m_fields.begin()->second->sizeHint().height() : 0);
    QHeaderView::updateGeometries();
    placeFields();
}

void CFilterHeader::placeFields() {
    if (!m_bFilters) return;
    for (const auto& [column, field] : m_fields)
        field->setGeometry(sectionViewportPosition(column), titleHeight(), sectionSize(column),
                           field->sizeHint().height());
}

CTableView::CTableView(CRowModel& model, QWidget* parent)
    : QTableView(parent), m_model(model), m_filter(new CRowFilter(this)),
      m_header(new CFilterHeader(*m_filter, this)) {
    m_filter->setSourceModel(&model);
    setHorizontalHeader(m_header);
    setModel(m_filter);
    setItemDelegate(new CCellDelegate(*this));
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setShowGrid(false);
    setAlternatingRowColors(true);
    setWordWrap(false);
    setTabKeyNavigation(false);
    setVerticalScrollMode(ScrollPerItem);
    setHorizontalScrollMode(ScrollPerPixel);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setMinimumSectionSize(1);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 5);
    m_header->setSortIndicator(-1, Qt::AscendingOrder);
    setSortingEnabled(true);
    m_filter->sort(-1);
    for (int column = 0; column < model.columnCount(); ++column) {
        const int specified = scaledWidth(model.spec().m_columns[static_cast<std::size_t>(column)].m_nWidth);
        const QString title = model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
        setColumnWidth(column, std::max(specified, fontMetrics().horizontalAdvance(title) + kTitleMargins));
    }
    // A number at the far right edge is hard to read, so only a text uses the room that is left.
    m_header->setStretchLastSection(isTextCell(model.spec().m_columns.back().m_eCell));
    setContextMenuPolicy(Qt::CustomContextMenu);
    connect(this, &QWidget::customContextMenuRequested, this, &CTableView::showMenu);
    m_flashTimer.setInterval(kFlashTickMs);
    connect(&m_flashTimer, &QTimer::timeout, this, [this] {
        if (!m_model.expireFlashes()) m_flashTimer.stop();
        viewport()->update();
    });
    connect(&model, &QAbstractItemModel::dataChanged, this, [this] {
        if (m_model.hasFlashes() && !m_flashTimer.isActive()) m_flashTimer.start();
    });
}

int CTableView::scaledWidth(int specified) const {
    return specified * fontMetrics().horizontalAdvance(QStringLiteral("0123456789")) / kSpecDigits;
}

void CTableView::setEmptyText(const QString& text) {
    m_strEmpty = text;
    viewport()->update();
}

void CTableView::rememberTop() {
    m_nTop = verticalScrollBar()->value();
}

void CTableView::widenLater(int column, int width) {
    if (m_wideColumns.empty()) QTimer::singleShot(0, this, &CTableView::widenColumns);
    int& widest = m_wideColumns[column];
    widest = std::max(widest, width);
}

void CTableView::widenColumns() {
    for (const auto& [column, width] : std::exchange(m_wideColumns, {}))
        setColumnWidth(column, std::max(width, columnWidth(column)));
}

void CTableView::scrollContentsBy(int dx, int dy) {
    QTableView::scrollContentsBy(dx, dy);
    rememberTop();
}

void CTableView::rowsInserted(const QModelIndex& parent, int start, int end) {
    const int top = m_nTop;
    QTableView::rowsInserted(parent, start, end);
    if (top == 0 || start > top) return; // the user looks at the newest rows, or the new rows are below
    updateGeometries();                  // the scroll bar must have its new range first
    verticalScrollBar()->setValue(top + end - start + 1);
}

QStringList CTableView::selectedKeys() const {
    QModelIndexList rows = selectionModel()->selectedRows();
    std::sort(rows.begin(), rows.end());
    QStringList keys;
    for (const QModelIndex& row : rows)
        keys.append(row.data(CRowModel::KeyRole).toString());
    return keys;
}

QString CTableView::rowsText(const QList<int>& rows, QChar separator) const {
    const bool isCsv = separator == QLatin1Char(',');
    QStringList lines;
    const auto addLine = [&](const auto& textOf) {
        QStringList fields;
        for (int place = 0; place < m_header->count(); ++place) {
            const int column = m_header->logicalIndex(place);
            if (m_header->isSectionHidden(column)) continue;
            QString text = textOf(column);
            if (!isCsv)
                text.replace(QLatin1Char('\t'), QLatin1Char(' '))
                    .replace(QLatin1Char('\n'), QLatin1Char(' '));
            const bool isText =
                m_model.spec().m_columns[static_cast<std::size_t>(column)].m_eCell == ECell::Text;
            fields.append(!isCsv ? text : csvField(isText ? withoutFormula(text) : text));
        }
        lines.append(fields.join(separator));
    };
    addLine(
        [&](int column) { return m_filter->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString(); });
    for (const int row : rows)
        addLine(
            [&](int column) { return m_filter->index(row, column).data(CRowModel::PlainRole).toString(); });
    return lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

QString CTableView::copyText() const {
    QList<int> rows;
    for (const QModelIndex& row : selectionModel()->selectedRows())
        rows.append(row.row());
    std::sort(rows.begin(), rows.end());
    for (int row = 0; selectionModel()->selectedRows().isEmpty() && row < m_filter->rowCount(); ++row)
        rows.append(row);
    return rowsText(rows, QLatin1Char('\t'));
}

QString CTableView::csvText() const {
    QList<int> rows;
    for (int row = 0; row < m_filter->rowCount(); ++row)
        rows.append(row);
    return rowsText(rows, QLatin1Char(','));
}

void CTableView::keyPressEvent(QKeyEvent* event) {
    const bool isEnterKey = isEnter(event->key());
    if (event->matches(QKeySequence::Copy)) {
        QApplication::clipboard()->setText(copyText());
    } else if ((isEnterKey || event->key() == Qt::Key_Space) && !selectedKeys().isEmpty()) {
        if (event->isAutoRepeat()) return; // a held key must not start a strategy again and again
        isEnterKey ? emit sigActivated(selectedKeys()) : emit sigSpace(selectedKeys());
    } else if (event->key() == Qt::Key_Escape && m_header->areFiltersShown()) {
        m_header->showFilters(false);
    } else {
        QTableView::keyPressEvent(event);
    }
}

void CTableView::mouseDoubleClickEvent(QMouseEvent* event) {
    QTableView::mouseDoubleClickEvent(event);
    const bool isLeft = event->button() == Qt::LeftButton;
    if (isLeft && indexAt(event->pos()).isValid()) emit sigActivated(selectedKeys());
}

void CTableView::paintEvent(QPaintEvent* event) {
    QTableView::paintEvent(event);
    if (m_filter->rowCount() > 0) return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    const QString text =
        m_model.rowCount() > 0 ? tr("The filter hides all rows. Escape ends it.") : m_strEmpty;
    painter.drawText(viewport()->rect().adjusted(kPadding, kPadding, -kPadding, -kPadding),
                     Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, text);
}

void CTableView::showMenu(const QPoint& place) {
    QMenu menu(this);
    menu.addActions(actions());
    if (!actions().isEmpty()) menu.addSeparator();
    menu.addAction(
        tr("Copy"), this, [this] { QApplication::clipboard()->setText(copyText()); }, QKeySequence::Copy);
    menu.addAction(tr("Export as CSV..."), this, &CTableView::exportCsv);
    QMenu& titles = *menu.addMenu(tr("Sort by"));
    for (int shown = 0; shown < m_header->count(); ++shown) {
        const int column = m_header->logicalIndex(shown);
        if (m_header->isSectionHidden(column)) continue;
        QString title = m_filter->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
        title.replace(QLatin1Char('&'), QStringLiteral("&&")); // a single one marks a key
        titles.addAction(title, this, [this, column] { sortBy(column); });
    }
    menu.addAction(tr("Order of arrival"), this, [this] {
        m_header->setSortIndicator(-1, Qt::AscendingOrder);
        m_filter->sort(-1);
    });
    menu.exec(viewport()->mapToGlobal(place));
}

void CTableView::sortBy(int column) {
    const bool isUp =
        m_header->sortIndicatorSection() == column && m_header->sortIndicatorOrder() == Qt::AscendingOrder;
    sortByColumn(column, isUp ? Qt::DescendingOrder : Qt::AscendingOrder);
}

void CTableView::exportCsv() {
    const TC::CConfirmationHold hold; // no confirmation opens above the dialogs
    const QString path = QFileDialog::getSaveFileName(
        this, tr("Export as CSV"), QLatin1String(m_model.spec().m_pszName) + QStringLiteral(".csv"),
        tr("CSV files (*.csv)"));
    if (path.isEmpty()) return;
    const QString failure = writeCsv(path);
    if (!failure.isEmpty())
        QMessageBox::warning(this, tr("Export as CSV"), tr("The file cannot be written: %1").arg(failure));
}

QString CTableView::writeCsv(const QString& path) const {
    QSaveFile file(path);
    const QByteArray text = "\xEF\xBB\xBF" + csvText().toUtf8(); // spreadsheets need the mark to read Chinese
    const bool isWritten =
        file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit();
    return isWritten ? QString() : file.errorString();
}

void CTableView::saveLayout(QSettings& settings) const {
    settings.setValue(QStringLiteral("tables/") + QLatin1String(m_model.spec().m_pszName),
                      m_header->saveState());
}

void CTableView::restoreLayout(QSettings& settings) {
    const QByteArray state =
        settings.value(QStringLiteral("tables/") + QLatin1String(m_model.spec().m_pszName)).toByteArray();
    if (state.isEmpty() || !m_header->restoreState(state)) return;
    m_filter->sort(m_header->sortIndicatorSection(), m_header->sortIndicatorOrder());
}

} // namespace desk
