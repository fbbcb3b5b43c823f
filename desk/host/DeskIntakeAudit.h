#pragma once

#include "desk/host/TextSink.h"
#include "desk/journal/Journal.h"
#include "orderservice/platform/IntakeAudit.h"

#include <map>
#include <string>

namespace desk {

/// Journals a failure for which the order service shows no message, such as orders that were not sent or a
/// cancel that was not done. Also tells the user. Any thread.
void noteIncident(CJournal& journal, CTextSink& sink, const TC::CIncidentReport& report);
/// Does the same for a cancel that the paper broker has not carried out.
void noteFailedCancel(CJournal& journal, CTextSink& sink, int taskId, const std::string& cause);

/// Journals the reports of the order doors (files and sockets). Shows the user the orders that are lost or
/// still wait: files that were refused, cut short, deleted unread or left waiting, ignored lines, and orders
/// that were not processed. Any thread. Journal and sink must outlive it.
class CDeskIntakeAudit : public TC::CIntakeAudit {
public:
    /// Refused order files are kept in `rejectedFolder`. If it is empty, they are kept beside their paths.
    CDeskIntakeAudit(CJournal& journal, CTextSink& sink, QString rejectedFolder = {})
        : m_journal(journal), m_sink(sink), m_strRejectedFolder(std::move(rejectedFolder)) {}

    void recordIntake(const TC::CIntakeReport& report) override;
    void recordDoor(const TC::CDoorReport& report) override;
    void recordDiscard(const TC::CDiscardReport& report) override;
    void recordUnplaced(const QVector<TC::COrderParam>& orders) override;

    /// The number of orders that recordUnplaced received, by channel, as a text for the user; empty if there
    /// were none. Must not run at the same time as a record function.
    std::string unplacedText() const;
    QString rejectedFolder() override { return m_strRejectedFolder; }
    void recordIncident(const TC::CIncidentReport& report) override;

private:
    CJournal& m_journal;
    CTextSink& m_sink;
    const QString m_strRejectedFolder;
    int m_nUnplacedBatches = 0;
    std::map<int, int> m_unplaced; ///< orders by channel
};

} // namespace desk
