#include "desk/host/DeskIntakeAudit.h"

#include "desk/host/Counted.h"
#include "desk/host/Leftovers.h"
#include "desk/journal/JournalEvents.h"

#include <nlohmann/json.hpp>

namespace desk {
namespace {

/// The end of a message: what happened to the file.
std::string keptAsText(const TC::CIntakeReport& report, const char* ifDeleted) {
    if (report.m_strKeptAs.isEmpty()) return ifDeleted;
    return "; the file is kept as " + report.m_strKeptAs.toStdString();
}

/// The start of a message: what happened. The cause follows it.
std::string incidentHead(const TC::CIncidentReport& report) {
    const std::string channel = "channel " + std::to_string(report.m_nChannel) + ": ";
    switch (report.m_eIncident) {
    case TC::EIncident::OrdersDropped:
        return channel + counted(report.m_nOrders, "order") + " not sent";
    case TC::EIncident::OrdersInterrupted:
        return channel + counted(report.m_nOrders, "order") + " interrupted, some may have been sent";
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

/// The lines that gave no order, by reason. The journal has the first reason, and the screen has all.
std::string ignoredText(const TC::CIntakeReport& report) {
    if (report.m_nIgnoredLines == 0) return {};
    std::string text = "; " + counted(report.m_nIgnoredLines, "line") + " without effect";
    if (report.m_ignoredReasons.size() > 1) {
        const char* separator = ": ";
        for (const auto& [reason, lines] : report.m_ignoredReasons) {
            text += separator + std::to_string(lines) + " x " +
                    (reason.isEmpty() ? "other reasons" : '"' + reason.toStdString() + '"');
            separator = ", ";
        }
    }
    return text + ", the first is " + report.m_strFirstIgnored.toStdString();
}

std::string unreadText(int lines) {
    if (lines == 0) return {};
    return "; " + counted(lines, "orderParam line") +
           (lines == 1 ? " is not understood, and its orders go out without it"
                       : " are not understood, and their orders go out without them");
}

/// Whether all lines of the file have a reason why they gave no order.
bool isFullyExplained(const TC::CIntakeReport& report) {
    return report.m_bCutShort || report.m_nLines <= report.m_nIgnoredLines;
}

/// What the file gave. Empty if there is nothing unusual: it gave orders, or its cancels are reported.
std::string resultText(const TC::CIntakeReport& report) {
    const bool isUnusual = report.m_bCutShort || report.m_nIgnoredLines != 0 ||
                           report.m_nUnreadTradeParams != 0 || report.m_nOrders + report.m_nCancels == 0;
    if (!isUnusual) return {};
    if (report.m_nLines == 0 && !report.m_bCutShort) return " gave no order: the file is empty";
    std::string text = " gave " + (report.m_nOrders == 0 ? "no order" : counted(report.m_nOrders, "order"));
    if (report.m_nCancels != 0) text += " and " + counted(report.m_nCancels, "cancel");
    text += " from " + counted(report.m_nLines, "line");
    if (report.m_nOrders + report.m_nCancels == 0 && !isFullyExplained(report))
        text += report.m_nIgnoredLines == 0 ? ", which are blank or have only trade parameters"
                                            : ", of which some are blank or have only trade parameters";
    text += ignoredText(report) + unreadText(report.m_nUnreadTradeParams);
    if (report.m_bCutShort)
        text += "; it was cut short at " + report.m_strCause.toStdString() +
                keptAsText(report, "; the lines after that are lost");
    return text;
}

/// Whether orders of the file are lost or wait, or were sent without a part of what the file says.
bool isLoss(const TC::CIntakeReport& report) {
    return report.m_bRejected || report.m_bLeftOver || report.m_bLeftWaiting || report.m_bCutShort ||
           report.m_nIgnoredLines != 0 || report.m_nUnreadTradeParams != 0;
}

/// What happened to an order file, as the rest of a message that begins with its path. Empty if there is
/// nothing to tell.
std::string fileText(const TC::CIntakeReport& report) {
    const std::string cause = report.m_strCause.toStdString();
    if (report.m_bRejected)
        return " was refused whole: " + cause + keptAsText(report, "; the file was deleted");
    if (report.m_bLeftOver) return " was moved away unread: " + cause + keptAsText(report, "");
    if (report.m_bLeftWaiting) return " waits unread: " + cause;
    return resultText(report);
}

} // namespace

void noteIncident(CJournal& journal, CTextSink& sink, const TC::CIncidentReport& report) {
    const bool isRecorded = journal.append("incident", incidentFields(report)).isSuccess();
    sink.writeFloodLine(EFloodLine::Incident, isRecorded,
                        incidentHead(report) + ": " + report.m_strCause.toStdString());
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
    const bool isRecorded = m_journal.append(intakeRecord(report)).isSuccess();
    const std::string text = fileText(report);
    if (!text.empty())
        m_sink.writeFloodLine(EFloodLine::File, isRecorded, report.m_strSource.toStdString() + text,
                              isLoss(report) ? ESeverity::Warning : ESeverity::Note);
}

void CDeskIntakeAudit::recordDoor(const TC::CDoorReport& report) {
    (void)m_journal.append("door", doorFields(report));
    if (report.m_eEvent != TC::EDoorEvent::Stuck) return;
    m_sink.writeLine("the listener on " + report.m_strSource.toStdString() + " no longer answers, because " +
                         report.m_strPeer.toStdString() + " sent " + report.m_strCause.toStdString() +
                         "; stop the strategy and start it again",
                     ESeverity::Warning);
}

void CDeskIntakeAudit::recordDiscard(const TC::CDiscardReport& report) {
    reportDiscard(report, "it was there before the strategy started, and was deleted", m_journal, m_sink);
}

void CDeskIntakeAudit::recordUnplaced(const QVector<TC::COrderParam>& orders) {
    ++m_nUnplacedBatches;
    for (const TC::COrderParam& order : orders) {
        ++m_unplaced[order.m_nChannel];
        const bool isRecorded = m_journal.append("unplaced", unplacedFields(order)).isSuccess();
        if (!isRecorded)
            m_sink.writeLine("not processed: " + order.toQString().toStdString(), ESeverity::Warning);
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
    return "Not processed: " + counted(sum, "order") + " in " +
           counted(m_nUnplacedBatches, "batch", "batches") + " (" + channels +
           "). The journal has an \"unplaced\" line for each.";
}

void CDeskIntakeAudit::recordIncident(const TC::CIncidentReport& report) {
    noteIncident(m_journal, m_sink, report);
}

} // namespace desk
