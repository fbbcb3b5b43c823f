#include "orderservice/widgets/FilterHeader.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPolygon>

#include <utility>

namespace UW {
namespace {

constexpr int kButtonWidth = 16;
/// The mouse resizes a column at its edge, so the button keeps this distance.
constexpr int kEdge = 4;

} // namespace

CFilterHeader::CFilterHeader(CSignOf signOf, QWidget* parent)
    : QHeaderView(Qt::Horizontal, parent), m_signOf(std::move(signOf)) {
    setSectionsClickable(true);
    setSectionsMovable(true);
    setHighlightSections(false);
}

void CFilterHeader::paintSection(QPainter* painter, const QRect& rect, int section) const {
    const EFilterSign sign = m_signOf(section);
    if (sign == EFilterSign::None) return QHeaderView::paintSection(painter, rect, section);
    painter->save();
    QHeaderView::paintSection(painter, rect, section);
    painter->restore();
    painter->save();
    const int x = isSignLeft(section) ? rect.left() + kEdge : rect.right() - kEdge - 9;
    const int y = rect.center().y() - 3;
    const QPolygon funnel(
        {{x, y}, {x + 8, y}, {x + 5, y + 4}, {x + 5, y + 8}, {x + 3, y + 6}, {x + 3, y + 4}});
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(palette().color(sign == EFilterSign::On ? QPalette::Highlight : QPalette::Mid));
    painter->setBrush(sign == EFilterSign::On ? palette().brush(QPalette::Highlight) : QBrush(Qt::NoBrush));
    painter->drawPolygon(funnel);
    painter->restore();
}

QSize CFilterHeader::sectionSizeFromContents(int section) const {
    QSize size = QHeaderView::sectionSizeFromContents(section);
    if (m_signOf(section) != EFilterSign::None) size.rwidth() += 2 * kButtonWidth;
    return size;
}

bool CFilterHeader::isSignLeft(int section) const {
    const QVariant alignment = model()->headerData(section, orientation(), Qt::TextAlignmentRole);
    return (alignment.toInt() & Qt::AlignRight) != 0;
}

int CFilterHeader::filterAt(const QPoint& point) const {
    const int column = logicalIndexAt(point);
    if (column < 0 || m_signOf(column) == EFilterSign::None) return -1;
    const int left = sectionViewportPosition(column);
    const int distance = isSignLeft(column) ? point.x() - left : left + sectionSize(column) - point.x();
    return distance > kEdge && distance <= kEdge + kButtonWidth ? column : -1;
}

void CFilterHeader::mousePressEvent(QMouseEvent* event) {
    m_nPressed = event->button() == Qt::LeftButton ? filterAt(event->pos()) : -1;
    if (m_nPressed < 0) QHeaderView::mousePressEvent(event);
}

void CFilterHeader::mouseReleaseEvent(QMouseEvent* event) {
    const int pressed = std::exchange(m_nPressed, -1);
    if (pressed < 0) return QHeaderView::mouseReleaseEvent(event);
    if (filterAt(event->pos()) != pressed) return;
    const QPoint below(sectionViewportPosition(pressed), height());
    emit sigFilterClicked(pressed, viewport()->mapToGlobal(below));
}

} // namespace UW
