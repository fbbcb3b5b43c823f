#include "orderservice/widgets/CommonDialog.h"

#include <QVBoxLayout>

namespace UW {

CCommonDialog::CCommonDialog(QWidget* parent) : QDialog(parent), m_pLayout(new QVBoxLayout(this)) {
    m_pLayout->setContentsMargins(kFrameWidth, kFrameWidth, kFrameWidth, kFrameWidth);
}

void CCommonDialog::setTitle(const QString& title) {
    setWindowTitle(title);
}

void CCommonDialog::setInnerWidget(QWidget* widget) {
    delete m_pInner;
    m_pInner = widget;
    m_pLayout->addWidget(widget);
}

void CCommonDialog::handleEvent(int, int) {}

} // namespace UW
