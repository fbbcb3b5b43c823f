#include "orderservice/widgets/SimpleTextWidget.h"

#include <QPainter>
#include <QStyle>

namespace UW {

CSimpleTextWidget::CSimpleTextWidget(const QString& text, QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setText(text);
}

void CSimpleTextWidget::setElided(bool isElided) {
    m_bElided = isElided;
    updateGeometry();
    update();
}

QSize CSimpleTextWidget::minimumSizeHint() const {
    const QSize size = QLabel::minimumSizeHint();
    return m_bElided ? QSize(0, size.height()) : size;
}

void CSimpleTextWidget::paintEvent(QPaintEvent* event) {
    if (!m_bElided) return QLabel::paintEvent(event);
    QPainter painter(this);
    const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width());
    style()->drawItemText(&painter, contentsRect(), alignment(), palette(), isEnabled(), shown,
                          foregroundRole());
}

} // namespace UW
