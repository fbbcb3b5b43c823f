#include "orderservice/widgets/WidgetList.h"

#include <QHBoxLayout>

namespace UW {

CWidgetList::CWidgetList(QWidget* parent) : CBaseWidget(parent), m_pLayout(new QHBoxLayout(this)) {}

void CWidgetList::addWidget(QWidget* widget, int stretch) {
    m_pLayout->addWidget(widget, stretch);
}

void CWidgetList::addStretch() {
    m_pLayout->addStretch(1);
}

void CWidgetList::setMargins(const QMargins& margins) {
    m_pLayout->setContentsMargins(margins);
}

void CWidgetList::setSpacing(int spacing) {
    m_pLayout->setSpacing(spacing);
}

} // namespace UW
