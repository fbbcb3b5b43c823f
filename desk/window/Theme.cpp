#include "desk/window/Theme.h"

#include <QApplication>
#include <QFont>
#include <QProxyStyle>
#include <QWidget>

#include <algorithm>
#include <cmath>
#include <memory>

namespace desk {
namespace {

constexpr double kFontPoints = 9; ///< the default layout fits a small screen with it

std::unique_ptr<CTheme> s_theme;

/// Narrow scroll bars, so that the columns of all tables fit a small screen.
class CNarrowStyle : public QProxyStyle {
public:
    CNarrowStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
        constexpr int kScrollBar = 10;
        return metric == PM_ScrollBarExtent ? kScrollBar : QProxyStyle::pixelMetric(metric, option, widget);
    }
};

double linear(double channel) {
    return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& colour) {
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

QPalette lightPalette() {
    QPalette palette(QColor(0xf1, 0xf2, 0xf4));
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::AlternateBase, QColor(0xf7, 0xf8, 0xfa));
    palette.setColor(QPalette::Text, QColor(0x1b, 0x1f, 0x24));
    palette.setColor(QPalette::WindowText, QColor(0x1b, 0x1f, 0x24));
    palette.setColor(QPalette::ButtonText, QColor(0x1b, 0x1f, 0x24));
    palette.setColor(QPalette::Highlight, QColor(0xcf, 0xe1, 0xf7));
    palette.setColor(QPalette::HighlightedText, QColor(0x1b, 0x1f, 0x24));
    palette.setColor(QPalette::PlaceholderText, QColor(0x6a, 0x70, 0x78));
    return palette;
}

QPalette darkPalette() {
    QPalette palette(QColor(0x25, 0x29, 0x2f));
    const QColor text(0xe3, 0xe6, 0xea);
    palette.setColor(QPalette::Base, QColor(0x17, 0x1a, 0x1e));
    palette.setColor(QPalette::AlternateBase, QColor(0x1c, 0x20, 0x25));
    palette.setColor(QPalette::Button, QColor(0x31, 0x36, 0x3d));
    for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText, QPalette::ToolTipText,
                            QPalette::HighlightedText})
        palette.setColor(role, text);
    palette.setColor(QPalette::ToolTipBase, QColor(0x31, 0x36, 0x3d));
    palette.setColor(QPalette::Highlight, QColor(0x2d, 0x4a, 0x6b));
    palette.setColor(QPalette::Link, QColor(0x7c, 0xb3, 0xf2));
    palette.setColor(QPalette::PlaceholderText, QColor(0x9a, 0xa1, 0xaa));
    for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(0x80, 0x87, 0x90));
    return palette;
}

} // namespace

double contrast(const QColor& a, const QColor& b) {
    const double first = luminance(a) + 0.05;
    const double second = luminance(b) + 0.05;
    return std::max(first, second) / std::min(first, second);
}

CTheme::CTheme(bool isDark, bool isRedUp)
    : m_bDark(isDark), m_bRedUp(isRedUp), m_palette(isDark ? darkPalette() : lightPalette()),
      m_red(isDark ? QColor(0xff, 0x7b, 0x72) : QColor(0xc4, 0x1e, 0x1e)),
      m_green(isDark ? QColor(0x56, 0xc9, 0x7d) : QColor(0x0b, 0x74, 0x3a)),
      m_warning(isDark ? QColor(0xf0, 0xb4, 0x4c) : QColor(0x8f, 0x4e, 0x00)),
      m_off(isDark ? QColor(0x9a, 0xa1, 0xaa) : QColor(0x62, 0x68, 0x70)),
      m_flash(isDark ? QColor(0x38, 0x34, 0x10) : QColor(0xff, 0xf1, 0xb8)),
      m_danger(QColor(0xb3, 0x12, 0x12)),
      m_grid(isDark ? QColor(0x2b, 0x30, 0x36) : QColor(0xe4, 0xe7, 0xeb)) {}

const CTheme& CTheme::current() {
    if (!s_theme) s_theme = std::make_unique<CTheme>(false, true);
    return *s_theme;
}

void CTheme::apply(QApplication& app, CTheme theme) {
    s_theme = std::make_unique<CTheme>(theme);
    app.setStyle(new CNarrowStyle); // the application owns it
    app.setPalette(theme.m_palette);
    QFont font = app.font();
    font.setPointSizeF(kFontPoints);
    app.setFont(font);
    for (QWidget* widget : app.topLevelWidgets())
        widget->update();
}

QColor CTheme::stateColour(EDeskState state) {
    switch (state) {
    case EDeskState::Active:
        return {0x0b, 0x5f, 0xa5}; // blue: red and green are the colours of prices
    case EDeskState::Halting:
    case EDeskState::Halted:
    case EDeskState::JournalBroken:
        return {0xb3, 0x12, 0x12};
    case EDeskState::Paused:
        return {0x8f, 0x4e, 0x00};
    case EDeskState::Ending:
        break;
    }
    return {0x55, 0x5b, 0x63};
}

} // namespace desk
