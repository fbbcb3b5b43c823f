#include "desk/commands/StopSignals.h"

#include "orderservice/base/Clock.h"

#include <atomic>
#include <csignal>
#include <limits>

namespace desk {
namespace {

/// Signals less than this time apart are treated as one key press. Some senders, such as timeout(1), send a
/// signal twice, and a key that is held down repeats about every 30 ms.
constexpr double kOnePressSeconds = 0.1;
constexpr int kNoWaiting = 2; ///< number of the request that ends the wait for the backlog
constexpr int kAtOnce = 3;    ///< number of the request that ends the process

std::atomic<int> s_requests{0};
std::atomic<double> s_lastSignal{0};
std::atomic<bool> s_hasSignal{false};
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<double>::is_always_lock_free &&
                  std::atomic<bool>::is_always_lock_free,
              "a signal handler uses them");

bool isNewPress() {
    const double now = utils::getTime();
    return now - s_lastSignal.exchange(now) >= kOnePressSeconds;
}

void requestFirst() {
    int none = 0;
    s_requests.compare_exchange_strong(none, 1);
}

extern "C" void onInterrupt(int) {
    s_hasSignal = true;
    if (!isNewPress() || ++s_requests < kAtOnce) return;
    std::signal(SIGINT, SIG_DFL);
    std::raise(SIGINT);
}

extern "C" void onStop(int) {
    s_hasSignal = true;
    requestFirst();
}

} // namespace

CStopSignals::CStopSignals() {
    // The first call creates the clock object, which a signal handler must not do.
    (void)utils::getTime();
    s_requests = 0;
    s_hasSignal = false;
    s_lastSignal = -std::numeric_limits<double>::infinity();
    std::signal(SIGINT, onInterrupt);
    std::signal(SIGTERM, onStop);
    if (std::signal(SIGHUP, onStop) == SIG_IGN) std::signal(SIGHUP, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
}

void CStopSignals::requestEnd() {
    requestFirst();
}

bool CStopSignals::hasSignal() const {
    return s_hasSignal;
}

bool CStopSignals::keepGoing() const {
    return s_requests == 0;
}

bool CStopSignals::keepWaiting() const {
    return s_requests < kNoWaiting;
}

} // namespace desk
