#include "orderservice/widgets/SimpleTextWidget.h"

namespace UW {

CSimpleTextWidget::CSimpleTextWidget(const QString& text, QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setText(text);
}

} // namespace UW
