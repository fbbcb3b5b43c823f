#pragma once

namespace desk {

/// How the user ends a desk. SIGINT (Ctrl-C), SIGTERM and SIGHUP (the terminal was closed) ask for the end;
/// SIGHUP only if the process did not start with it ignored, as under nohup. A SIGINT after that asks not to
/// wait for the backlog. The next SIGINT ends the process at once, whatever the process does at that moment:
/// the signal handler itself ends it. SIGINTs within a tenth of a second by the clock of base/Clock.h are one
/// request, since some senders send each of them twice. SIGPIPE is ignored.
///
/// One object in a process, since signals are the process's. The main thread makes it. The signal handler
/// reads the clock, which the machine's clock allows.
class CStopSignals {
public:
    CStopSignals();

    /// Whether nobody has asked for the end. Any thread.
    bool keepGoing() const;
    /// Whether the end may wait for the backlog. Any thread.
    bool keepWaiting() const;
};

} // namespace desk
