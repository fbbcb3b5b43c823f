#include "orderservice/widgets/Resources.h"

#include <QApplication>
#include <QPalette>

namespace UW {

int resourceSize(const QString& name) {
    constexpr int kBottomButtons = 36;
    return name == QLatin1String("tc_siz_setting_inner_bottom_btn_height") ? kBottomButtons : 0;
}

QColor resourceColor(const QString& name) {
    const bool isDisabled = name == QLatin1String("clr_disable_color");
    return QApplication::palette().color(isDisabled ? QPalette::Disabled : QPalette::Active, QPalette::Text);
}

QFont resourceFont(const QString&) {
    return QApplication::font(); // the only font that has a name is the normal one
}

} // namespace UW
