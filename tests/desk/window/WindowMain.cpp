// The tests of the window need an application with widgets, but no screen.
#include "desk/window/Language.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <clocale>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication app(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    desk::CLanguage language;
    if (!language.install(QStringLiteral("en"))) return 1;
    return RUN_ALL_TESTS();
}
