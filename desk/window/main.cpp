// orderdesk-window: the desk of a folder with a window.
#include "desk/commands/StopSignals.h"
#include "desk/host/Screen.h"
#include "desk/window/KeptText.h"
#include "desk/window/Language.h"
#include "desk/window/WindowProgram.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QMessageBox>
#include <QSettings>
#include <QTimer>

#include <unistd.h>

#include <chrono>
#include <clocale>
#include <iostream>
#include <string>

namespace {

/// After a signal nobody may be there to close the box. It is shown, but it closes itself.
void showFailure(const std::string& text, const desk::CStopSignals& stop) {
    QMessageBox box(QMessageBox::Critical,
                    QApplication::translate("main", "The desk has ended with a failure"),
                    QString::fromStdString(text));
    box.setTextFormat(Qt::PlainText);
    constexpr int kSecondsAfterSignal = 10;
    if (stop.hasSignal())
        QTimer::singleShot(std::chrono::seconds(kSecondsAfterSignal), &box, &QDialog::reject);
    box.exec();
}

int runWindow(const QString& folder) {
    desk::CStopSignals stop;
    desk::CScreen screen(STDOUT_FILENO);
    desk::CKeptText kept(screen.stream());
    std::ostream out(&kept);
    QSettings settings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("orderdesk"),
                       QStringLiteral("window"));
    desk::CWindowProgram program(folder, settings, [&] { return stop.keepGoing(); });
    program.setOnClosed([&] { stop.requestEnd(); }); // now Ctrl-C discards, as the desk says
    const int result = desk::runDesk(
        folder.toStdString(), out, program, [&] { return stop.keepGoing(); },
        [&] { return stop.keepWaiting(); });
    if (result != 0) showFailure(kept.text(), stop);
    return result;
}

} // namespace

int main(int argc, char** argv) {
    std::setlocale(LC_ALL, "C.UTF-8");
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    // The default would draw 150 % as 200 %, and the default layout would not fit.
    QApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    QApplication app(argc, argv);
    // The application has set the locale of the environment. Numbers must have a decimal point on every
    // machine.
    std::setlocale(LC_NUMERIC, "C");
    QApplication::setApplicationName(QStringLiteral("orderdesk-window"));
    QApplication::setApplicationVersion(QStringLiteral(ORDERDESK_VERSION));
    QCommandLineParser line;
    line.setApplicationDescription(QStringLiteral("Runs the desk of a folder with a window."));
    line.addHelpOption();
    line.addVersionOption();
    const QCommandLineOption language(
        QStringLiteral("language"),
        QStringLiteral("Language of the window: zh or en. Default: by the locale."),
        QStringLiteral("language"));
    line.addOption(language);
    line.addPositionalArgument(QStringLiteral("folder"), QStringLiteral("The desk folder."));
    line.process(app);
    if (line.positionalArguments().size() != 1) line.showHelp(2);
    desk::CLanguage translations;
    if (!translations.install(line.value(language))) {
        std::cerr << "--language " << line.value(language).toStdString()
                  << ": there is no such language, only zh and en\n";
        line.showHelp(2);
    }
    return runWindow(line.positionalArguments().first());
}
