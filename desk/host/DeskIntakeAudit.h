#pragma once

#include "desk/host/TextSink.h"
#include "desk/journal/Journal.h"
#include "platform/IntakeAudit.h"

namespace desk {

/// Journals what came in by a door. What was refused, cut short, ignored or left waiting is shown to the user
/// as well. Any thread. Journal and sink outlive it.
class CDeskIntakeAudit : public TC::CIntakeAudit {
public:
    /// Refused order files are kept in that folder; empty: beside their paths.
    CDeskIntakeAudit(CJournal& journal, CTextSink& sink, QString rejectedFolder = {})
        : m_journal(journal), m_sink(sink), m_strRejectedFolder(std::move(rejectedFolder)) {}

    void recordIntake(const TC::CIntakeReport& report) override;
    void recordDoor(const TC::CDoorReport& report) override;
    QString rejectedFolder() override { return m_strRejectedFolder; }

private:
    CJournal& m_journal;
    CTextSink& m_sink;
    const QString m_strRejectedFolder;
};

} // namespace desk
