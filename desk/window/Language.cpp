#include "desk/window/Language.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>

// The resources are in a static library, so they must be named once. The macro must be outside a namespace.
static void registerTranslations() {
    Q_INIT_RESOURCE(translations);
}

namespace desk {

bool CLanguage::install(const QString& language) {
    QString chosen = language;
    if (chosen.isEmpty()) chosen = QLocale::system().language() == QLocale::Chinese ? "zh" : "en";
    if (chosen != QLatin1String("zh") && chosen != QLatin1String("en")) return false;
    registerTranslations();
    if (!m_own.load(QStringLiteral(":/translations/window_") + chosen + QStringLiteral(".qm"))) return false;
    QCoreApplication::installTranslator(&m_own);
    // The texts of Qt are a package of their own, which may be missing.
    if (chosen == QLatin1String("zh") &&
        m_qt.load(QStringLiteral("qtbase_zh_CN"), QLibraryInfo::location(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&m_qt);
    return true;
}

} // namespace desk
