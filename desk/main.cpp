// orderdesk: runs one command of the desk.
#include "desk/commands/CallDesk.h"
#include "desk/commands/CheckFolder.h"
#include "desk/commands/CommandLine.h"
#include "desk/commands/NewFolder.h"
#include "desk/commands/RunDesk.h"
#include "desk/commands/ShowJournal.h"
#include "desk/commands/StopSignals.h"
#include "desk/host/Screen.h"

#include <QCoreApplication>

#include <fcntl.h>
#include <unistd.h>

#include <clocale>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <string>
#include <variant>

namespace {

/// Opens /dev/null on each closed standard descriptor. Otherwise the next opened file, such as the journal,
/// would get that descriptor, and the output of the process would be written into it.
void occupyStandardDescriptors() {
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        // open returns the lowest free number. The lower standard descriptors are already open.
        if (::fcntl(standard, F_GETFD) < 0) (void)::open("/dev/null", O_RDWR);
    }
}

int runOnScreen(const std::string& folder, std::optional<double> exitWhenIdle) {
    desk::CStopSignals stop;
    desk::CScreen screen(STDOUT_FILENO);
    return desk::runDesk(
        folder, exitWhenIdle, screen.stream(), [&] { return stop.keepGoing(); },
        [&] { return stop.keepWaiting(); });
}

volatile std::sig_atomic_t s_isJournalEnded = 0;

int showJournal(const std::string& folder, bool follow) {
    const auto end = [](int) { s_isJournalEnded = 1; };
    if (follow) {
        std::signal(SIGINT, end);
        std::signal(SIGTERM, end);
    }
    return desk::runJournal(folder, follow, std::cout, std::cerr, [] { return s_isJournalEnded == 0; });
}

int runCommand(const desk::CCommandLine& line) {
    switch (line.m_eCommand) {
    case desk::ECommand::New:
        return desk::runNew(line.m_strFolder, line.m_bConfirm, std::cout, std::cerr);
    case desk::ECommand::Check:
        return desk::runCheck(line.m_strFolder, std::cout);
    case desk::ECommand::Run:
        return runOnScreen(line.m_strFolder, line.m_exitWhenIdle);
    case desk::ECommand::Journal:
        return showJournal(line.m_strFolder, line.m_bFollow);
    case desk::ECommand::Call:
        return desk::runCall(line.m_strFolder, line.m_call, std::cout, std::cerr);
    }
    return EXIT_FAILURE;
}

int endWith(const desk::CLineEnd& end) {
    (end.m_bToError ? std::cerr : std::cout) << end.m_strText;
    return end.m_nExitCode;
}

} // namespace

int main(int argc, char** argv) {
    occupyStandardDescriptors();
    std::setlocale(LC_ALL, "C.UTF-8");
    const QCoreApplication app(argc, argv);
    // The application has set the locale of the environment. Numbers must have a decimal point on every
    // machine.
    std::setlocale(LC_NUMERIC, "C");
    const auto line = desk::readCommandLine(argc, argv);
    if (const auto* end = std::get_if<desk::CLineEnd>(&line)) return endWith(*end);
    return runCommand(std::get<desk::CCommandLine>(line));
}
