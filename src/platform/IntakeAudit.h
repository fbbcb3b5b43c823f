#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/base/Unset.h"
#include "orderservice/platform/HostService.h"
#include "orderservice/records/Enums.h"
#include "orderservice/records/OrderParam.h"

#include <QString>
#include <QVector>

#include <utility>

namespace TC {

/// The result of reading a source once.
struct CIntakeReport {
    EOrderStrategyType m_eStrategyType = EOrderStrategyType::File;
    int m_nChannel = 0;
    QString m_strSource; ///< path or ip:port
    int m_nLines = 0;    ///< all lines that were read, also ignored lines
    int m_nOrders = 0;   ///< orders passed on to the checks
    /// Lines of trade parameters that the host did not understand. Their orders were passed on without the
    /// parameters.
    int m_nUnreadTradeParams = 0;
    /// Reading ended at a line that could not be read. The rest of the source is lost.
    bool m_bCutShort = false;
    /// The source could not be taken from its writer, so it was not read and stays at its path. This is
    /// reported once, not at every poll. It is reported again if the source disappeared in the meantime and
    /// came back.
    bool m_bLeftWaiting = false;
    /// The whole source was refused: none of its orders and cancels was carried out by this read.
    bool m_bRejected = false;
    /// A file with the .tmp name was left by an earlier run or because it could not be moved. It was now
    /// moved away and not read, because its orders may have been sent already.
    bool m_bLeftOver = false;
    /// For people: which line ended the read, what blocks the source, or why it was refused.
    QString m_strCause;
    /// Path of the file if it was not deleted after it was taken; empty if it was deleted.
    QString m_strKeptAs;
    /// Number of lines without effect, such as a cancel with too few words. Blank lines are not counted.
    int m_nIgnoredLines = 0;
    QString m_strFirstIgnored; ///< for people: the first ignored line, and why it had no effect
    /// The reasons of all ignored lines with their numbers of lines; after many different reasons, an empty
    /// reason has the rest.
    QVector<std::pair<QString, int>> m_ignoredReasons;
    int m_nCancels = 0; ///< cancel lines that were carried out
};

/// What happened at a listening door.
enum class EDoorEvent {
    Opened, ///< it listens; the cause names its port if it differs from the configured port
    Closed, ///< it does not listen any more
    Stuck,  ///< it serves no connection until it is closed
    /// One connection was closed; the other connections continue. In a flood not every closed connection is
    /// reported by itself. If the peer is empty, the cause says how many more were closed.
    Refused,
};

struct CDoorReport {
    EDoorEvent m_eEvent = EDoorEvent::Opened;
    QString m_strSource; ///< ip:port
    QString m_strPeer;   ///< ip:port of the connection; empty if the event is not about one connection
    QString m_strCause;  ///< for people; empty if there is nothing to explain
};

/// A file that is deleted unread because it was at a strategy's path when the strategy was started.
struct CDiscardReport {
    EOrderStrategyType m_eStrategyType = EOrderStrategyType::File;
    int m_nChannel = 0;
    QString m_strSource;    ///< path
    long long m_nLines = 0; ///< a last line without a line end is counted; -1: the file cannot be read
    long long m_nBytes = 0; ///< -1: the file cannot be read
};

/// Failures that are reported to the audit. The user gets no message, except if a value says so.
enum class EIncident {
    /// Orders were accepted, but nothing is sent for them. If they were lost between the two passes of a
    /// two-pass variant, the user gets a message too.
    OrdersDropped,
    CancelNotDone,      ///< a cancel found no task, or the cancel of an order failed
    HostFailed,         ///< a service of the host failed, and the message panel could not show it
    RowsLeftOut,        ///< a basket passed the check without some of its rows or positions to sell
    StrategyNotLoaded,  ///< loadFromConfig left out a strategy above the user's limit
    StrategyNotStarted, ///< a strategy that should run could not be started by loadFromConfig
    /// An exception ended the placing of these orders. Some of them may have been sent. The user gets a
    /// message too.
    OrdersInterrupted,
};

struct CIncidentReport {
    EIncident m_eIncident = EIncident::HostFailed;
    int m_nChannel = kUnsetInt; ///< of the first order or of the strategy; unset if no channel is involved
    int m_nOrders = 0;          ///< orders that were dropped or interrupted
    int m_nTaskId = kUnsetInt;  ///< unset if no task is involved
    int m_nRows = 0;            ///< rows of one order that were left out
    QString m_strCode;          ///< the first row that was left out
    QString m_strCause;         ///< for people; for rows: why the first row was left out
};

/// Receives reports on all input and on orders that were not carried out, for example for a journal. It also
/// names the folder for refused files. Each operation names its thread. No operation may throw. A host
/// without a journal implements the operations with empty bodies.
class ORDERSERVICE_EXPORT CIntakeAudit : public CHostService<CIntakeAudit> {
public:
    static constexpr const char* kServiceName = "CIntakeAudit";

    /// Called on the thread of the door, before the orders are passed on.
    virtual void recordIntake(const CIntakeReport& report) = 0;

    /// Called on the thread of the door, or on the thread that starts or stops a strategy. In the second case
    /// the registry is locked.
    virtual void recordDoor(const CDoorReport& report) = 0;

    /// Called before a file is deleted unread, on the thread that starts a strategy, with the registry
    /// locked. Empty files are not reported. The default does nothing.
    virtual void recordDiscard(const CDiscardReport& /*report*/) {}

    /// Receives the orders of one batch that were accepted but are not processed, because the host called
    /// COrderService::dropBacklog. Called on the service thread, or by shutdown when that thread has ended.
    /// The default does nothing.
    virtual void recordUnplaced(const QVector<COrderParam>& /*orders*/) {}

    /// The folder for refused order files; the library creates it when it is needed. The default is empty:
    /// then a refused file stays in its own folder. Called on the file thread with the registry locked; must
    /// not throw.
    virtual QString rejectedFolder() { return {}; }

    /// Called on any thread, also with the registry locked. The default does nothing.
    virtual void recordIncident(const CIncidentReport&) {}
};

/// These functions pass a report to the installed audit. If the audit throws, the record is lost and the
/// failure is reported. No order is lost.
ORDERSERVICE_EXPORT void reportToAudit(const CIntakeReport& report);
ORDERSERVICE_EXPORT void reportToAudit(const CDoorReport& report);
ORDERSERVICE_EXPORT void reportToAudit(const CDiscardReport& report);
ORDERSERVICE_EXPORT void reportUnplaced(const QVector<COrderParam>& orders);
ORDERSERVICE_EXPORT void reportToAudit(const CIncidentReport& report);

/// Reports dropped orders to the audit. The user gets no message from this function. channel: channel of the
/// first order.
ORDERSERVICE_EXPORT void reportOrdersDropped(int channel, int orders, const QString& cause);

/// The folder that the installed audit names. Empty if the audit names no folder or throws.
ORDERSERVICE_EXPORT QString rejectedFolder();

} // namespace TC
