#pragma once

#include "base/Unset.h"
#include "platform/HostService.h"
#include "records/Enums.h"
#include "records/OrderParam.h"

#include <QString>
#include <QVector>

namespace TC {

/// What one reading of a source gave.
struct CIntakeReport {
    EOrderStrategyType m_eStrategyType = EOrderStrategyType::File;
    int m_nChannel = 0;
    QString m_strSource; ///< path or ip:port
    int m_nLines = 0;    ///< lines read, whatever became of them
    int m_nOrders = 0;   ///< orders handed on to the checks
    /// Lines of trade parameters that the host did not understand: their orders went on without them.
    int m_nUnreadTradeParams = 0;
    /// A line that could not be read ended the source; what stood behind it is lost.
    bool m_bCutShort = false;
    /// The source could not be taken away from its writer and waits unread. Told once, not at every look;
    /// told again when the source was gone in the meantime.
    bool m_bLeftWaiting = false;
    /// The source was refused whole: this reading carried out none of its orders and cancels.
    bool m_bRejected = false;
    /// A file that was left under its .tmp name, by an earlier run or because it could not be moved, was
    /// moved away now and not read: its orders may have gone out already.
    bool m_bLeftOver = false;
    QString m_strCause; ///< for people: which line ended the source, what holds it, or why it was refused
    /// Where a file lies that was not deleted after it was taken; empty: it was deleted.
    QString m_strKeptAs;
    /// Lines without effect, such as a cancel with too few words. Blank lines do not count.
    int m_nIgnoredLines = 0;
    QString m_strFirstIgnored; ///< for people: which line is the first of them, and why it had no effect
};

/// What happened at a door that listens.
enum class EDoorEvent {
    Opened, ///< it listens; the cause names its port if that differs from the one entered
    Closed, ///< it does not listen any more
    Stuck,  ///< it serves nobody until it is closed
    /// One connection was closed, the others are served on. In a flood not each is told: where there is no
    /// peer, the cause tells how many others there were.
    Refused,
};

struct CDoorReport {
    EDoorEvent m_eEvent = EDoorEvent::Opened;
    QString m_strSource; ///< ip:port
    QString m_strPeer;   ///< ip:port of the connection that it is about; empty where it is about none
    QString m_strCause;  ///< for people; empty where there is nothing to explain
};

/// A file that is deleted unread: it lay at a strategy's path when the strategy was started.
struct CDiscardReport {
    EOrderStrategyType m_eStrategyType = EOrderStrategyType::File;
    int m_nChannel = 0;
    QString m_strSource;    ///< path
    long long m_nLines = 0; ///< a last line without a line end counts; -1: the file cannot be read
    long long m_nBytes = 0; ///< -1: the file cannot be read
};

/// What is not done without a message to the user.
enum class EIncident {
    OrdersDropped, ///< orders were accepted, and nothing goes out for them
    CancelNotDone, ///< a cancel found no task, or the cancel of an order failed
    HostFailed,    ///< a service of the host failed, and the message panel could not show it
    RowsLeftOut,   ///< a basket goes on without some of its rows, or without some of the positions to sell
    StrategyNotLoaded,  ///< loadFromConfig left out a strategy that is over the user's limit
    StrategyNotStarted, ///< a strategy that should run could not be started by loadFromConfig
};

struct CIncidentReport {
    EIncident m_eIncident = EIncident::HostFailed;
    int m_nChannel = kUnsetInt; ///< of the first order, or of the strategy; unset if it is about no channel
    int m_nOrders = 0;          ///< orders that were dropped
    int m_nTaskId = kUnsetInt;  ///< unset if it is about no task
    int m_nRows = 0;            ///< rows that were left out, of one order
    QString m_strCode;          ///< the first row that was left out
    QString m_strCause;         ///< for people; of rows: why the first was left out
};

/// Wants to know what came in and what came to nothing, so that a journal can tell, and answers where refused
/// files are kept. Each operation names its thread; none may throw. A host without a journal does nothing
/// here.
class CIntakeAudit : public CHostService<CIntakeAudit> {
public:
    static constexpr const char* kServiceName = "CIntakeAudit";

    /// On the thread of the door, before the orders are handed on.
    virtual void recordIntake(const CIntakeReport& report) = 0;

    /// On the thread of the door, or with the registry locked on the thread that starts or stops a strategy.
    virtual void recordDoor(const CDoorReport& report) = 0;

    /// A file is about to be deleted unread. With the registry locked on the thread that starts a strategy.
    /// Empty files are not reported. Does nothing unless the host overrides it.
    virtual void recordDiscard(const CDiscardReport& /*report*/) {}

    /// The orders of one batch that were accepted and are not worked off, because the host called
    /// COrderService::dropBacklog. On the service's thread. Does nothing unless the host overrides it.
    virtual void recordUnplaced(const QVector<COrderParam>& /*orders*/) {}

    /// The folder where refused order files are kept; it is made when it is needed. Empty, the default: they
    /// are kept beside their paths. Called on the file thread with the registry locked; must not throw.
    virtual QString rejectedFolder() { return {}; }

    /// On any thread, also with the registry locked. A host that keeps no journal leaves it.
    virtual void recordIncident(const CIncidentReport&) {}
};

/// Tells the installed audit. If it throws, its record is lost, with a report, and no order.
void tellAudit(const CIntakeReport& report);
void tellAudit(const CDoorReport& report);
void tellAudit(const CDiscardReport& report);
void tellAuditOfUnplaced(const QVector<COrderParam>& orders);
void tellAudit(const CIncidentReport& report);

/// Orders that nothing goes out for and no message tells of. channel: of the first of them.
void tellOrdersDropped(int channel, int orders, const QString& cause);

/// The folder that the installed audit names; empty if it names none or throws.
QString rejectedFolder();

} // namespace TC
