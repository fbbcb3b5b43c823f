// Makes pictures of the window in a running copy of the demo folder: desk_window_pictures FOLDER LANGUAGE.
// They show what a user sees; nothing is compared.
#include "desk/commands/NewFolder.h"
#include "desk/window/Language.h"
#include "desk/window/WindowProgram.h"
#include "tests/support/TempFolder.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QDockWidget>
#include <QSettings>
#include <QTimer>

#include <functional>
#include <iostream>
#include <sstream>
#include <vector>

namespace {

constexpr int kStepMs = 1500;

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    setlocale(LC_NUMERIC, "C");
    const QDir target(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("."));
    const QString language = argc > 2 ? QString::fromLocal8Bit(argv[2]) : QStringLiteral("en");
    desk::CLanguage translations;
    if (!translations.install(language)) return 2;
    CTempFolder folder;
    std::ostringstream out;
    if (desk::runNew(folder.path("desk"), false, out, out) != 0) return 1;
    QSettings settings(QString::fromStdString(folder.path("layout.ini")), QSettings::IniFormat);
    bool keepGoing = true;
    desk::CWindowProgram program(QString::fromStdString(folder.path("desk")), settings,
                                 [&] { return keepGoing; });
    std::vector<std::function<void()>> steps;
    std::size_t next = 0;
    QTimer timer;
    program.setOnWindow([&](desk::CMainWindow& window) {
        window.setAsk([](const QString&, const QString&, const QString&) { return true; });
        const auto grab = [&, language](const char* name) {
            window.grab().save(
                target.filePath(QString::fromLatin1(name) + '-' + language + QStringLiteral(".png")));
        };
        window.resize(1366, 730);
        steps = {[&] {
                     folder.handOver("desk/orders/group.txt",
                                     "23,0,8.02,600104,1000\n23,0,7.50,600104,2000\n23,0,8.02,600104,150\n"
                                     "23,0,11.02,600101,600\n24,0,9.50,600102,100\n");
                     folder.handOver("desk/orders/future.txt", "0,0,4000,IF2609,1\n");
                 },
                 [&, grab] { grab("small-light"); },
                 [&, grab] {
                     window.table("quotes").setCurrentIndex(window.table("quotes").filter().index(0, 0));
                     emit window.table("quotes").sigActivated(window.table("quotes").selectedKeys());
                     window.action("dark").trigger();
                 },
                 [&, grab] {
                     grab("small-dark");
                     window.panel("plots").raise();
                     window.resize(1920, 1040);
                 },
                 [&, grab] {
                     grab("large-dark");
                     window.action("dark").trigger();
                     window.action("halt").trigger();
                 },
                 [&, grab] {
                     grab("large-light-halted");
                     keepGoing = false;
                 }};
        QObject::connect(&timer, &QTimer::timeout, &window, [&] {
            if (next < steps.size()) steps[next++]();
        });
        timer.start(kStepMs);
    });
    const int result = desk::runDesk(folder.path("desk"), out, program, [&] { return keepGoing; });
    std::cout << out.str();
    return result;
}
