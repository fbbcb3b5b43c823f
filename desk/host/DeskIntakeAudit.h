#pragma once

#include "desk/host/TextSink.h"
#include "desk/journal/Journal.h"
#include "platform/IntakeAudit.h"

namespace desk {

/// Journals what came to nothing without a message of the order service, and tells the user. Any thread.
void noteIncident(CJournal& journal, CTextSink& sink, const TC::CIncidentReport& report);
/// The same for a cancel that the paper broker has not done.
void noteFailedCancel(CJournal& journal, CTextSink& sink, int taskId, const std::string& cause);

/// Journals what came in by a door. What was cut short is also told to the user: the lines behind the break
/// are lost; so is what came to nothing without a message. Any thread. Journal and sink outlive it.
class CDeskIntakeAudit : public TC::CIntakeAudit {
public:
    CDeskIntakeAudit(CJournal& journal, CTextSink& sink) : m_journal(journal), m_sink(sink) {}

    void recordIntake(const TC::CIntakeReport& report) override;
    void recordDoor(const TC::CDoorReport& report) override;
    void recordIncident(const TC::CIncidentReport& report) override;

private:
    CJournal& m_journal;
    CTextSink& m_sink;
};

} // namespace desk
