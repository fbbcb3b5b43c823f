#pragma once

#include <functional>
#include <optional>
#include <ostream>
#include <string>

namespace desk {

/// `orderdesk run FOLDER [--exit-when-idle SECONDS]`: runs the desk until keepGoing returns false. If a time
/// is given, it also ends when nothing has happened and no quote change was pending during this time. Main
/// thread, with a QCoreApplication. Returns the process's exit code: 0 after a normal end; 2 if the folder
/// cannot be used for trading; 1 if the journal or the store cannot be opened or closed, if the interfaces
/// cannot be saved, or if orders were discarded at the end.
///
/// At the end the accepted orders are finished. Meanwhile keepWaiting is called on another thread. When it
/// returns false, the other orders are discarded; each of them is written to the journal, and their number is
/// printed to `out`. An empty keepWaiting means to wait always.
int runDesk(const std::string& folder, std::optional<double> exitWhenIdle, std::ostream& out,
            const std::function<bool()>& keepGoing, const std::function<bool()>& keepWaiting = {});

} // namespace desk
