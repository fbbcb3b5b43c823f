#include "desk/window/CellTexts.h"

#include <QFontMetrics>
#include <QPainter>
#include <QRect>
#include <QStyle>
#include <QTransform>

#include <cmath>
#include <memory>

namespace desk {
namespace {

QString onOneLine(QString text) {
    for (const QChar breakSign : {QChar(QChar::LineSeparator), QChar(QChar::ParagraphSeparator), QChar('\n')})
        text.replace(breakSign, QLatin1Char(' '));
    return text;
}

int widthOf(const QStaticText& text) {
    return static_cast<int>(std::ceil(text.size().width()));
}

} // namespace

void CCellTexts::setFont(const QFont& font) {
    if (font == m_font) return;
    m_texts.clear();
    m_font = font;
}

const QStaticText& CCellTexts::shaped(const CKey& key) {
    if (const QStaticText* const known = m_texts.object(key)) return *known;
    QString text = onOneLine(key.m_strText);
    if (key.m_nWidth > 0) text = QFontMetrics(m_font).elidedText(text, Qt::ElideRight, key.m_nWidth);
    auto made = std::make_unique<QStaticText>(text);
    made->setTextFormat(Qt::PlainText);
    made->prepare(QTransform(), m_font);
    QStaticText* const kept = made.get();
    m_texts.insert(key, made.release());
    return *kept;
}

int CCellTexts::width(const QString& text, const QFont& font) {
    setFont(font);
    return widthOf(shaped({text, 0}));
}

void CCellTexts::draw(QPainter& painter, const QRect& rect, Qt::Alignment alignment, const QString& text,
                      const QFont& font) {
    if (text.isEmpty() || rect.isEmpty()) return;
    setFont(font);
    const QStaticText* shown = &shaped({text, 0});
    if (widthOf(*shown) > rect.width()) shown = &shaped({text, rect.width()});
    const QSize size(widthOf(*shown), static_cast<int>(std::ceil(shown->size().height())));
    painter.setFont(font);
    painter.drawStaticText(QStyle::alignedRect(Qt::LeftToRight, alignment, size, rect).topLeft(), *shown);
}

} // namespace desk
