#pragma once

#include "desk/host/TextSink.h"
#include "desk/journal/Journal.h"
#include "platform/IntakeAudit.h"

namespace desk {

/// Journals what came in by a door. What was cut short is also told to the user: the lines behind the break
/// are lost. Any thread. Journal and sink outlive it.
class CDeskIntakeAudit : public TC::CIntakeAudit {
public:
    CDeskIntakeAudit(CJournal& journal, CTextSink& sink) : m_journal(journal), m_sink(sink) {}

    void recordIntake(const TC::CIntakeReport& report) override;
    void recordDoor(const TC::CDoorReport& report) override;

private:
    CJournal& m_journal;
    CTextSink& m_sink;
};

} // namespace desk
