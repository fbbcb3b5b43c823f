#pragma once

#include <QCache>
#include <QFont>
#include <QStaticText>
#include <QString>

class QPainter;
class QRect;

namespace desk {

/// Draws the texts of a table's cells. Keeps up to 8,192 laid-out texts: a new row moves the other rows, so
/// nearly all texts are drawn again. For one font: a call with another one discards what is kept. Main thread
/// only.
class CCellTexts {
public:
    /// The width of the text on one line, in pixels, rounded up.
    int width(const QString& text, const QFont& font);
    /// Draws the text on one line with the pen of the painter. The end of a text that is wider than the
    /// rectangle is replaced by an ellipsis.
    void draw(QPainter& painter, const QRect& rect, Qt::Alignment alignment, const QString& text,
              const QFont& font);

private:
    struct CKey {
        QString m_strText;
        int m_nWidth = 0; ///< pixels to which the text is cut; 0: not cut
        bool operator==(const CKey& other) const {
            return m_nWidth == other.m_nWidth && m_strText == other.m_strText;
        }
        friend uint qHash(const CKey& key, uint seed = 0) {
            return ::qHash(key.m_strText, seed) ^ ::qHash(key.m_nWidth, seed);
        }
    };

    void setFont(const QFont& font);
    const QStaticText& shaped(const CKey& key);

    static constexpr int kMaxTexts = 8192; ///< several screens full of cells
    QCache<CKey, QStaticText> m_texts{kMaxTexts};
    QFont m_font;
};

} // namespace desk
