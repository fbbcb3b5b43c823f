#pragma once

#include <QString>
#include <QTranslator>

namespace desk {

/// The language of the window's texts. English is in the code, Chinese is a translation that is built into
/// the program. Main thread; must live as long as the application shows texts.
class CLanguage {
public:
    /// "zh" or "en"; an empty text chooses by the locale of the system. False if the language is unknown or
    /// its translation is missing. Call it before windows are made, and only once.
    bool install(const QString& language);

private:
    QTranslator m_own;
    QTranslator m_qt; ///< texts of Qt itself, such as "Cancel"
};

} // namespace desk
