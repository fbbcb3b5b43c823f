#include "orderservice/widgets/LineEdit.h"

#include <QPalette>

namespace UW {

CLineEdit::CLineEdit(QWidget* parent) : QLineEdit(parent), m_textFont(font()), m_hintFont(font()) {
    connect(this, &QLineEdit::textChanged, this, [this] { showFont(); });
}

void CLineEdit::setEmptyHintText(const QString& text) {
    setPlaceholderText(text);
}

void CLineEdit::setEmptyHintColor(const QColor& color) {
    QPalette colors = palette();
    colors.setColor(QPalette::PlaceholderText, color);
    setPalette(colors);
}

void CLineEdit::setEmptyHintFont(const QFont& hintFont) {
    m_hintFont = hintFont;
    showFont();
}

void CLineEdit::showFont() {
    setFont(text().isEmpty() ? m_hintFont : m_textFont);
}

} // namespace UW
