#pragma once

#include "desk/config/DeskConfig.h"
#include "orderservice/records/StrategyParam.h"

#include <QString>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace desk {

/// What the window must know of the desk's state.
struct CDeskStatus {
    bool m_bHalting = false;
    bool m_bHalted = false;
    bool m_bConfirmationPause = false; ///< the intake is paused by a confirmation
    bool m_bConfirmationOpen = false;  ///< its dialog is open
    std::string m_strJournalFailure;   ///< empty while the journal works
};

/// What the window can do with the desk. Main thread.
class IDeskControl {
public:
    virtual ~IDeskControl() = default;

    /// The folder's configuration. Its strategies are those of the start.
    virtual const CDeskConfig& config() const = 0;
    virtual CDeskStatus status() const = 0;

    /// A number that changes with each change of the strategies. Does not wait.
    virtual std::uint64_t strategyRevision() const = 0;
    virtual TC::COrderStrategyMap strategies() const = 0;
    /// The operations on strategies return an empty text, or the reason of a failure.
    virtual QString startStrategy(int id) = 0;
    virtual QString stopStrategy(int id) = 0;
    virtual QString removeStrategy(int id) = 0;
    /// Changes the stopped strategy that has the id m_nChannel.
    virtual QString changeStrategy(const TC::COrderStrategyParam& strategy) = 0;
    /// Adds a strategy with these values; its id is chosen by the registry.
    virtual QString addStrategy(const TC::COrderStrategyParam& strategy) = 0;

    /// Cancels return at once. Failures are shown as messages.
    virtual void cancelOrders(std::vector<std::pair<std::string, int>> orders) = 0; ///< account and order
    virtual void cancelTasks(std::vector<int> tasks) = 0;

    /// Pauses the intake, declines all further commands, and then cancels all waiting orders. Returns at
    /// once; the state is "halting" until all of it is done.
    virtual void halt() = 0;
    /// Ends the halt. Cancelled orders stay cancelled.
    virtual void resume() = 0;
    /// Ends the pause of an unanswered confirmation.
    virtual void endConfirmationPause() = 0;
};

} // namespace desk
