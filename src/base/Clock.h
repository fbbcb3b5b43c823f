#pragma once

#include "orderservice/base/Export.h"

#include <QDateTime>

#include <string>

namespace utils {

class CStopRequest;

/// The only source of time. Library code reads the time and sleeps only through the functions below, so that
/// a test can install its own clock.
class ORDERSERVICE_EXPORT IClock {
public:
    virtual ~IClock() = default;

    /// Seconds on a monotonic clock. Any thread.
    virtual double time() = 0;

    /// Blocks the calling thread for the given time. Any thread.
    virtual void sleep(double seconds) = 0;

    /// Blocks the calling thread for the given time, or until the request is made. Returns at once if the
    /// request has been made already. Any thread. The default does not wake up during the sleep.
    virtual void sleepUnlessStopped(double seconds, const CStopRequest& stop);

    /// Local date and time. Any thread.
    virtual QDateTime currentDateTime() = 0;
};

/// Replaces the system clock by `clock`; null restores the system clock. The caller owns the clock and keeps
/// it alive while it is installed. Call this only while no other thread uses the library.
ORDERSERVICE_EXPORT void installClock(IClock* clock);

/// The next four functions call the installed clock. Any thread.

/// Seconds on a monotonic clock. Use it for durations and deadlines.
ORDERSERVICE_EXPORT double getTime();
/// Blocks the calling thread for this many seconds.
ORDERSERVICE_EXPORT void sleep(double seconds);
/// Blocks the calling thread for this many seconds, or until the request is made. A clock of the host may
/// ignore a request that is made during the sleep.
ORDERSERVICE_EXPORT void sleepUnlessStopped(double seconds, const CStopRequest& stop);
/// The local date and time.
ORDERSERVICE_EXPORT QDateTime currentDateTime();

/// The local date and time as text, "yyyy-MM-dd hh:mm:ss:zzz". It is the text of currentDateTime, but it is
/// cheap enough for every order: the system clock reads the machine's time zone once per second. Any thread.
ORDERSERVICE_EXPORT std::string currentTimestamp();

/// The same moment as ISO 8601 writes it, with milliseconds: "2026-01-05T09:30:00.123". Any thread.
ORDERSERVICE_EXPORT std::string currentTimeText();

} // namespace utils
