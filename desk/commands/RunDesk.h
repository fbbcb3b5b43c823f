#pragma once

#include "orderservice/platform/Host.h"

#include <functional>
#include <optional>
#include <ostream>
#include <string>

namespace desk {

class CDesk;
class CTextSink;

/// What a program adds to a run of the desk. All operations are called on the main thread.
class IDeskProgram {
public:
    virtual ~IDeskProgram() = default;
    /// The sink exists; nothing was written yet.
    virtual void began(CTextSink& sink) = 0;
    /// The desk was made, but not opened yet.
    virtual void made(CDesk& desk) = 0;
    /// Journal and store are open. `host` may be changed; it is installed next.
    virtual void opened(CDesk& desk, TC::CHost& host) = 0;
    /// COrderService exists, and trading starts next. Not called if the end was requested before.
    virtual void starting() = 0;
    /// The main loop: calls CDesk::tick about 50 times a second. Returns the reason why it ended.
    virtual std::string run(CDesk& desk) = 0;
    /// Calls `shutDown` once, on any thread, and returns when it has returned. It waits until the accepted
    /// orders and the function call that runs are finished; meanwhile CDesk::tick must not be called.
    virtual void end(CDesk& desk, const std::function<void()>& shutDown) = 0;
    /// Trading has ended. The desk is closed next and then deleted.
    virtual void ended(CDesk& desk) = 0;
};

/// `orderdesk run FOLDER [--exit-when-idle SECONDS]`: runs the desk until keepGoing returns false. If a time
/// is given, it also ends when nothing has happened and no quote change was pending during this time. Main
/// thread, with a QCoreApplication. Returns the process's exit code: 0 after a normal end; 2 if the folder
/// cannot be used for trading; 1 if the journal or the store cannot be opened or closed, if the interfaces
/// cannot be saved, or if orders were discarded at the end or not sent because nobody could confirm them any
/// more.
///
/// At the end the accepted orders are finished. Meanwhile keepWaiting is called on another thread. When it
/// returns false, the other orders are discarded; each of them is written to the journal, and their number is
/// printed to `out`. An empty keepWaiting means to wait always.
int runDesk(const std::string& folder, std::optional<double> exitWhenIdle, std::ostream& out,
            const std::function<bool()>& keepGoing, const std::function<bool()>& keepWaiting = {});

/// Runs the desk with the main loop of a program; otherwise the same as above. keepGoing is asked once before
/// trading starts.
int runDesk(const std::string& folder, std::ostream& out, IDeskProgram& program,
            const std::function<bool()>& keepGoing, const std::function<bool()>& keepWaiting = {});

} // namespace desk
