#pragma once

#include "desk/host/TextSink.h"
#include "desk/journal/Journal.h"
#include "platform/IntakeAudit.h"

#include <map>
#include <string>

namespace desk {

/// Journals what came in by a door, and tells the user what is lost: lines behind a break, files that are
/// deleted unread, orders that are not worked off. Any thread. Journal and sink outlive it.
class CDeskIntakeAudit : public TC::CIntakeAudit {
public:
    CDeskIntakeAudit(CJournal& journal, CTextSink& sink) : m_journal(journal), m_sink(sink) {}

    void recordIntake(const TC::CIntakeReport& report) override;
    void recordDoor(const TC::CDoorReport& report) override;
    void recordDiscard(const TC::CDiscardReport& report) override;
    void recordUnplaced(const QVector<TC::COrderParam>& orders) override;

    /// How many orders recordUnplaced got, by channel, for people; empty for none. While nothing is recorded.
    std::string unplacedText() const;

private:
    CJournal& m_journal;
    CTextSink& m_sink;
    int m_nUnplacedBatches = 0;
    std::map<int, int> m_unplaced; ///< orders by channel
};

} // namespace desk
