#pragma once

#include "desk/config/DeskConfig.h"
#include "orderservice/records/StrategyParam.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace desk {

/// What the window must know of the desk's state.
struct CDeskStatus {
    bool m_bHalting = false;
    bool m_bHalted = false;   ///< also while it is resuming
    bool m_bResuming = false; ///< still halted, until what came before is declined
    bool m_bConfirms = false; ///< the user of the folder confirms orders
    bool m_bEnding = false;   ///< the desk finishes the accepted orders and then ends
    QString m_strHaltProblem; ///< why orders still wait while the desk is halting; empty if they do not
    bool m_bConfirmationPause = false; ///< the intake is paused by a confirmation
    bool m_bConfirmationOpen = false;  ///< its dialog is open
    int m_nDelayed = 0;                ///< batches that wait while a question or a confirmation is open
    std::string m_strJournalFailure;   ///< empty while the journal works
    int m_nQueue = 0;                  ///< accepted orders that are not processed yet
    QString m_strLastCommand;          ///< time of day of the last command; empty if there was none
    std::optional<double> m_lastMs;    ///< what that command needed from its file or socket, if it is known
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
    /// All orders of these accounts that wait when the cancel is carried out.
    virtual void cancelAccounts(std::vector<std::string> accounts) = 0;

    /// Pauses the intake, declines all further commands and confirmations, cancels all waiting orders, and
    /// declines what was accepted before. Returns at once; the state is "halting" until all of it is done.
    virtual void halt() = 0;
    /// Ends the halt. Cancelled orders stay cancelled. What was accepted during the halt is declined before
    /// the halt ends; until then the state is "resuming".
    virtual void resume() = 0;
    /// The running file strategies whose order files wait at their paths, each as "channel name".
    virtual QStringList waitingFiles() const = 0;
    /// Discards the accepted orders that are not processed yet. Only while the desk ends; cannot be undone.
    virtual void discardQueue() = 0;
    /// Ends the pause of an unanswered confirmation.
    virtual void endConfirmationPause() = 0;
};

} // namespace desk
