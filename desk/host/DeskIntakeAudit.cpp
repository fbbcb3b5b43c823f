#include "desk/host/DeskIntakeAudit.h"

#include "desk/journal/JournalEvents.h"

#include <nlohmann/json.hpp>

namespace desk {
namespace {

/// What became of the file, behind why.
std::string whereabouts(const TC::CIntakeReport& report, const char* ifDeleted) {
    if (report.m_strKeptAs.isEmpty()) return ifDeleted;
    return "; the file is kept as " + report.m_strKeptAs.toStdString();
}

} // namespace

void CDeskIntakeAudit::recordIntake(const TC::CIntakeReport& report) {
    // Where the journal refuses, the commands of these orders are refused too, and told one by one.
    (void)m_journal.append("intake", intakeFields(report));
    const std::string source = report.m_strSource.toStdString();
    if (report.m_nUnreadTradeParams != 0)
        m_sink.writeLine(source + " has " + std::to_string(report.m_nUnreadTradeParams) +
                         " orderParam lines that are not understood; their orders go out without them");
    if (report.m_nIgnoredLines != 0)
        m_sink.writeLine(source + " has " + std::to_string(report.m_nIgnoredLines) +
                         " lines without effect; the first is " + report.m_strFirstIgnored.toStdString());
    if (report.m_bRejected)
        m_sink.writeLine(source + " was refused whole: " + report.m_strCause.toStdString() +
                         whereabouts(report, "; the file was deleted"));
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

} // namespace desk
