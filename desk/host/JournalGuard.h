#pragma once

#include "desk/host/TextSink.h"
#include "desk/journal/Journal.h"

#include <functional>
#include <memory>

namespace TC {
class CIntakePause;
}

namespace desk {

/// Keeps order files waiting at their paths while the journal cannot be written. The desk's main loop calls
/// poll. Main thread only. Journal and sink must outlive it.
class CJournalGuard {
public:
    /// `onRecovered` is called when the journal works again, before the intake of files continues. It should
    /// deliver the events that the broker has kept (CPaperBroker::deliverEvents). It may be empty.
    CJournalGuard(CJournal& journal, CTextSink& sink, std::function<void()> onRecovered);
    /// Ends the pause.
    ~CJournalGuard();
    CJournalGuard(const CJournalGuard&) = delete;
    CJournalGuard& operator=(const CJournalGuard&) = delete;

    /// Writes the records that were only posted. Once a second by the clock of base/Clock.h, checks whether
    /// the journal's file was deleted, moved or cut, and tells the user. At the first journal failure it
    /// pauses the intake and tells the user once. Then it probes the journal at each call. When a probe
    /// succeeds, it tells the user and lets the intake continue.
    void poll();

    /// Checks at once whether the journal's file was deleted, moved or cut, and tells the user.
    void checkFile();

    bool isPausing() const { return m_pause != nullptr; }

private:
    CJournal& m_journal;
    CTextSink& m_sink;
    std::function<void()> m_onRecovered;
    std::unique_ptr<TC::CIntakePause> m_pause;
    double m_dNextLook = 0; ///< clock time in seconds
};

} // namespace desk
