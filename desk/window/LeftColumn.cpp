#include "desk/window/LeftColumn.h"

#include <QApplication>
#include <QDockWidget>
#include <QMainWindow>
#include <QResizeEvent>
#include <QTimer>

namespace desk {

CLeftColumn::CLeftColumn(QMainWindow& window, QDockWidget& left, QDockWidget& right)
    : QObject(&window), m_window(window), m_left(left), m_right(right) {
    // Not installed on the window: then it would be called after the window's layout has changed.
    qApp->installEventFilter(this);
}

bool CLeftColumn::isKept() const {
    const auto isAt = [this](QDockWidget& panel, Qt::DockWidgetArea area) {
        return !panel.isFloating() && m_window.dockWidgetArea(&panel) == area;
    };
    return m_window.isVisible() && m_left.isVisible() && isAt(m_left, Qt::LeftDockWidgetArea) &&
           isAt(m_right, Qt::RightDockWidgetArea);
}

bool CLeftColumn::eventFilter(QObject* object, QEvent* event) {
    if (object != &m_window || event->type() != QEvent::Resize || m_nWidth > 0) return false;
    const auto* const resize = static_cast<const QResizeEvent*>(event);
    if (resize->oldSize().width() == resize->size().width() || !isKept()) return false;
    m_nWidth = m_left.width();
    QTimer::singleShot(0, this, &CLeftColumn::restoreWidth); // by then the layout has changed
    return false;
}

void CLeftColumn::restoreWidth() {
    const int width = m_nWidth;
    m_nWidth = 0;
    if (!isKept()) return;
    const int both = m_left.width() + m_right.width();
    m_window.resizeDocks({&m_left, &m_right}, {width, both - width}, Qt::Horizontal);
}

} // namespace desk
