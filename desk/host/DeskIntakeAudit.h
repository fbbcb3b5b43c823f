#pragma once

#include "desk/host/TextSink.h"
#include "desk/journal/Journal.h"
#include "platform/IntakeAudit.h"

#include <map>
#include <string>

namespace desk {

/// Journals what came to nothing without a message of the order service, and tells the user. Any thread.
void noteIncident(CJournal& journal, CTextSink& sink, const TC::CIncidentReport& report);
/// The same for a cancel that the paper broker has not done.
void noteFailedCancel(CJournal& journal, CTextSink& sink, int taskId, const std::string& cause);

/// Journals what came in by a door, and shows the user what is lost or waits: files that were refused, cut
/// short, deleted unread or left waiting, ignored lines, orders that are not worked off. Any thread. Journal
/// and sink outlive it.
class CDeskIntakeAudit : public TC::CIntakeAudit {
public:
    /// Refused order files are kept in that folder; empty: beside their paths.
    CDeskIntakeAudit(CJournal& journal, CTextSink& sink, QString rejectedFolder = {})
        : m_journal(journal), m_sink(sink), m_strRejectedFolder(std::move(rejectedFolder)) {}

    void recordIntake(const TC::CIntakeReport& report) override;
    void recordDoor(const TC::CDoorReport& report) override;
    void recordDiscard(const TC::CDiscardReport& report) override;
    void recordUnplaced(const QVector<TC::COrderParam>& orders) override;

    /// How many orders recordUnplaced got, by channel, for people; empty for none. While nothing is recorded.
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
