#pragma once

#include <QColor>
#include <QPalette>

class QApplication;

namespace desk {

enum class EDeskState { Active, Halting, Halted, Paused, JournalBroken, Ending };

/// The colours of the window. Each text has a contrast of at least 4.5 to 1 to its background. Main thread.
class CTheme {
public:
    CTheme(bool isDark, bool isRedUp);

    /// The theme that all views use.
    static const CTheme& current();
    /// Sets the theme and applies it to the application.
    static void apply(QApplication& app, CTheme theme);

    bool isDark() const { return m_bDark; }
    const QColor& rise() const { return m_bRedUp ? m_red : m_green; }
    const QColor& fall() const { return m_bRedUp ? m_green : m_red; }
    const QColor& warning() const { return m_warning; }
    const QColor& off() const { return m_off; }
    const QColor& flash() const { return m_flash; }
    const QColor& danger() const { return m_danger; } ///< background of white text
    const QColor& grid() const { return m_grid; }
    QColor text() const { return m_palette.color(QPalette::Text); }
    QColor base() const { return m_palette.color(QPalette::Base); }
    /// Background of a state; its text is white.
    static QColor stateColour(EDeskState state);

private:
    bool m_bDark;
    bool m_bRedUp;
    QPalette m_palette;
    QColor m_red, m_green, m_warning, m_off, m_flash, m_danger, m_grid;
};

/// The contrast of two colours, 1 to 21, as the accessibility guidelines define it.
double contrast(const QColor& a, const QColor& b);

} // namespace desk
