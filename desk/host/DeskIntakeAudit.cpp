#include "desk/host/DeskIntakeAudit.h"

#include "desk/host/Counted.h"
#include "desk/host/Leftovers.h"
#include "desk/journal/JournalEvents.h"

#include <nlohmann/json.hpp>

namespace desk {
namespace {

/// The end of a message: what happened to the file.
std::string whereabouts(const TC::CIntakeReport& report, const char* ifDeleted) {
    if (report.m_strKeptAs.isEmpty()) return ifDeleted;
    return "; the file is kept as " + report.m_strKeptAs.toStdString();
}

/// The start of a message: what happened. The cause follows it.
std::string incidentHead(const TC::CIncidentReport& report) {
    const std::string channel = "channel " + std::to_string(report.m_nChannel) + ": ";
    switch (report.m_eIncident) {
    case TC::EIncident::OrdersDropped:
        return channel + counted(report.m_nOrders, "order") + " not sent";
    case TC::EIncident::CancelNotDone:
        // A cancel of one order has no task. Its cause names account and order.
        if (TC::isUnset(report.m_nTaskId)) return "cancel not done";
        return "cancel of task " + std::to_string(report.m_nTaskId) + " not done";
    case TC::EIncident::HostFailed:
        break;
    case TC::EIncident::RowsLeftOut:
        return channel + counted(report.m_nRows, "row") + " of a basket left out; the first is " +
               report.m_strCode.toStdString();
    case TC::EIncident::StrategyNotLoaded:
        return channel + "the strategy is not loaded";
    case TC::EIncident::StrategyNotStarted:
        return channel + "the strategy does not run";
    }
    return "a message could not be shown";
}

} // namespace

void noteIncident(CJournal& journal, CTextSink& sink, const TC::CIncidentReport& report) {
    (void)journal.append("incident", incidentFields(report));
    sink.writeLine(incidentHead(report) + ": " + report.m_strCause.toStdString());
}

void noteFailedCancel(CJournal& journal, CTextSink& sink, int taskId, const std::string& cause) {
    TC::CIncidentReport report;
    report.m_eIncident = TC::EIncident::CancelNotDone;
    report.m_nTaskId = taskId;
    report.m_strCause = QString::fromStdString(cause);
    noteIncident(journal, sink, report);
}

void CDeskIntakeAudit::recordIntake(const TC::CIntakeReport& report) {
    // If the journal refuses this record, it also refuses the commands of these orders, and each is reported.
    (void)m_journal.append(intakeRecord(report));
    const std::string source = report.m_strSource.toStdString();
    if (report.m_nUnreadTradeParams != 0)
        m_sink.writeLine(source + " has " + counted(report.m_nUnreadTradeParams, "orderParam line") +
                         (report.m_nUnreadTradeParams == 1
                              ? " that is not understood; its orders go out without it"
                              : " that are not understood; their orders go out without them"));
    if (report.m_nIgnoredLines != 0)
        m_sink.writeLine(source + " has " + counted(report.m_nIgnoredLines, "line") +
                         " without effect; the first is " + report.m_strFirstIgnored.toStdString());
    if (report.m_bRejected)
        m_sink.writeLine(source + " was refused whole: " + report.m_strCause.toStdString() +
                         whereabouts(report, "; the file was deleted"));
    if (report.m_bLeftOver)
        m_sink.writeLine(source + " was moved away unread: " + report.m_strCause.toStdString() +
                         whereabouts(report, ""));
    if (report.m_bLeftWaiting) m_sink.writeLine(source + " waits unread: " + report.m_strCause.toStdString());
    if (report.m_bCutShort)
        m_sink.writeLine(source + " was cut short at " + report.m_strCause.toStdString() +
                         whereabouts(report, "; what stood behind it is lost"));
}

void CDeskIntakeAudit::recordDoor(const TC::CDoorReport& report) {
    (void)m_journal.append("door", doorFields(report));
    if (report.m_eEvent != TC::EDoorEvent::Stuck) return;
    m_sink.writeLine("the listener on " + report.m_strSource.toStdString() +
                     " serves nobody any more: " + report.m_strPeer.toStdString() + " sent " +
                     report.m_strCause.toStdString() + "; stop the strategy and start it again");
}

void CDeskIntakeAudit::recordDiscard(const TC::CDiscardReport& report) {
    reportDiscard(report, "it waited when the strategy was started", m_journal, m_sink);
}

void CDeskIntakeAudit::recordUnplaced(const QVector<TC::COrderParam>& orders) {
    ++m_nUnplacedBatches;
    for (const TC::COrderParam& order : orders) {
        ++m_unplaced[order.m_nChannel];
        const bool isRecorded = m_journal.append("unplaced", unplacedFields(order)).isSuccess();
        if (!isRecorded) m_sink.writeLine("not worked off: " + order.toQString().toStdString());
    }
}

std::string CDeskIntakeAudit::unplacedText() const {
    if (m_unplaced.empty()) return {};
    int sum = 0;
    std::string channels;
    for (const auto& [channel, count] : m_unplaced) {
        sum += count;
        channels += (channels.empty() ? "channel " : ", channel ") + std::to_string(channel) + ": " +
                    std::to_string(count);
    }
    return "Not worked off: " + counted(sum, "order") + " in " +
           counted(m_nUnplacedBatches, "batch", "batches") + " (" + channels +
           "). The journal names each of them as \"unplaced\".";
}

void CDeskIntakeAudit::recordIncident(const TC::CIncidentReport& report) {
    noteIncident(m_journal, m_sink, report);
}

} // namespace desk
