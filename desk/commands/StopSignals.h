#pragma once

namespace desk {

/// How the user ends a desk. SIGINT (Ctrl-C), SIGTERM and SIGHUP (the terminal was closed) ask for the end;
/// SIGHUP only if the process did not start with it ignored, as under nohup. A SIGINT that comes after the
/// end has begun asks not to wait for the backlog; the next one ends the process at once. SIGPIPE is ignored.
///
/// One object in a process, since signals are the process's. The main thread makes it and asks keepGoing.
class CStopSignals {
public:
    CStopSignals();

    /// Whether nobody has asked for the end. The end begins with the first "no".
    bool keepGoing();
    /// Whether the end may wait: nobody has pressed Ctrl-C since it began. Any thread.
    bool keepWaiting() const;

private:
    int m_nInterruptsBefore = 0;
};

} // namespace desk
