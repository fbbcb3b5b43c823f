#pragma once

#include <QDateTime>

namespace utils {

class CStopRequest;

/// The one source of time. Library code reads the time and sleeps through the functions below and nowhere
/// else, so that a test can put a clock of its own behind them.
class IClock {
public:
    virtual ~IClock() = default;

    /// Seconds on a clock that never runs backwards. Any thread.
    virtual double time() = 0;

    /// Blocks the calling thread for that many seconds. Any thread.
    virtual void sleep(double seconds) = 0;

    /// Blocks the calling thread for that many seconds, or until the request is made. Returns at once if it
    /// has been made already. Any thread. A clock that does not override it does not wake up during the
    /// sleep.
    virtual void sleepUnlessStopped(double seconds, const CStopRequest& stop);

    /// Local date and time. Any thread.
    virtual QDateTime currentDateTime() = 0;
};

/// Puts a clock in place of the machine's; null brings the machine's back. The caller keeps the clock alive
/// while it is installed, and installs it only while no other thread uses the library.
void installClock(IClock* clock);

double getTime();
void sleep(double seconds);
void sleepUnlessStopped(double seconds, const CStopRequest& stop);
QDateTime currentDateTime();

} // namespace utils
