#pragma once

namespace desk {

/// Handles the signals that end a desk. SIGINT (Ctrl-C), SIGTERM and SIGHUP (the terminal was closed) request
/// the end. SIGHUP stays ignored if the process started with it ignored, as under nohup. A SIGINT after the
/// request discards the backlog. The next SIGINT ends the process at once, whatever it is doing:
/// the signal handler itself ends it. SIGINTs less than a tenth of a second apart, by the clock of
/// base/Clock.h, are treated as one request, because some senders send each signal twice. SIGPIPE is ignored.
///
/// Only one object in a process, because signals belong to the process. Create it on the main thread. The
/// signal handler reads the clock, which is safe with the machine's clock.
class CStopSignals {
public:
    CStopSignals();

    /// Requests the end without a signal, for instance because the window was closed. The next SIGINT
    /// discards the backlog.
    void requestEnd();
    /// True after SIGINT, SIGTERM or a SIGHUP that is not ignored. Any thread.
    bool hasSignal() const;
    /// True until the end is requested. Any thread.
    bool keepGoing() const;
    /// True while the end may wait for the backlog. Any thread.
    bool keepWaiting() const;
};

} // namespace desk
