#include "desk/host/DeskIntakeAudit.h"

#include "desk/journal/JournalEvents.h"

#include <nlohmann/json.hpp>

namespace desk {

void CDeskIntakeAudit::recordIntake(const TC::CIntakeReport& report) {
    // Where the journal refuses, the commands of these orders are refused too, and told one by one.
    (void)m_journal.append("intake", intakeFields(report));
    if (!report.m_bCutShort) return;
    m_sink.writeLine(report.m_strSource.toStdString() + " was cut short at " +
                     report.m_strCause.toStdString() + "; what stood behind it is lost");
}

} // namespace desk
