// orderdesk: the desk's commands.
#include "desk/commands/CheckFolder.h"
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
#include <vector>

namespace {

constexpr int kUsageError = 2;

constexpr const char* kUsage =
    "usage: orderdesk new FOLDER                              write a desk folder that works as it is\n"
    "       orderdesk check FOLDER                            name every mistake in it, and warnings\n"
    "       orderdesk run FOLDER [--exit-when-idle SECONDS]   run it until SIGINT, SIGTERM or SIGHUP\n"
    "       orderdesk journal FOLDER [--follow]               print what happened\n";

/// Closed standard descriptors lead to nowhere afterwards. Otherwise the next file that is opened, such as
/// the journal, would take their place, and what the process prints would be written into it.
void occupyStandardDescriptors() {
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        // The lowest free number is given: those below are in use by now.
        if (::fcntl(standard, F_GETFD) < 0) (void)::open("/dev/null", O_RDWR);
    }
}

int usageError() {
    std::cerr << kUsage;
    return kUsageError;
}

std::optional<double> readSeconds(const std::string& text) {
    char* end = nullptr;
    const double seconds = std::strtod(text.c_str(), &end);
    const bool isNumber = !text.empty() && *end == '\0' && seconds >= 0;
    return isNumber ? std::optional(seconds) : std::nullopt;
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

int runCommand(const std::vector<std::string>& words) {
    const std::string& command = words[0];
    const std::string& folder = words[1];
    const bool isPlain = words.size() == 2;
    if (command == "new" && isPlain) return desk::runNew(folder, std::cout, std::cerr);
    if (command == "check" && isPlain) return desk::runCheck(folder, std::cout);
    if (command == "run" && isPlain) return runOnScreen(folder, std::nullopt);
    if (command == "run" && words.size() == 4 && words[2] == "--exit-when-idle") {
        const auto seconds = readSeconds(words[3]);
        return seconds ? runOnScreen(folder, seconds) : usageError();
    }
    const bool follow = words.size() == 3 && words[2] == "--follow";
    if (command == "journal" && (isPlain || follow)) return showJournal(folder, follow);
    return usageError();
}

} // namespace

int main(int argc, char** argv) {
    occupyStandardDescriptors();
    std::setlocale(LC_ALL, "C.UTF-8");
    const QCoreApplication app(argc, argv);
    // The application has taken the locale of the environment; numbers have a point on every machine.
    std::setlocale(LC_NUMERIC, "C");
    const std::vector<std::string> words(argv + 1, argv + argc);
    return words.size() >= 2 ? runCommand(words) : usageError();
}
