#include "desk/commands/StopSignals.h"

#include <atomic>
#include <csignal>

namespace desk {
namespace {

std::atomic<bool> s_isStopAsked{false};
std::atomic<int> s_interrupts{0};

extern "C" void onStop(int signal) {
    if (signal == SIGINT) ++s_interrupts;
    s_isStopAsked = true;
}

} // namespace

CStopSignals::CStopSignals() {
    std::signal(SIGINT, onStop);
    std::signal(SIGTERM, onStop);
    if (std::signal(SIGHUP, onStop) == SIG_IGN) std::signal(SIGHUP, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
}

bool CStopSignals::keepGoing() {
    if (!s_isStopAsked) return true;
    // Some senders, such as timeout(1), send the first signal twice; both have come by now.
    m_nInterruptsBefore = s_interrupts;
    return false;
}

bool CStopSignals::keepWaiting() const {
    if (s_interrupts == m_nInterruptsBefore) return true;
    std::signal(SIGINT, SIG_DFL);
    return false;
}

} // namespace desk
