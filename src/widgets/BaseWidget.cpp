#include "orderservice/widgets/BaseWidget.h"

namespace UW {

CBaseWidget::CBaseWidget(QWidget* parent) : QWidget(parent) {}

} // namespace UW
