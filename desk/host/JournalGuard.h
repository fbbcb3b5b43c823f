#pragma once

#include "desk/host/TextSink.h"
#include "desk/journal/Journal.h"

#include <functional>
#include <memory>

namespace TC {
class CIntakePause;
}

namespace desk {

/// Keeps order files waiting at their paths while the journal cannot be written. The desk's main loop polls
/// it; main thread only. Journal and sink outlive it.
class CJournalGuard {
public:
    /// onRecovered is called when the journal works again, before the files go on: the moment to deliver what
    /// the broker kept back (CPaperBroker::deliverEvents). May be empty.
    CJournalGuard(CJournal& journal, CTextSink& sink, std::function<void()> onRecovered);
    /// Ends the pause.
    ~CJournalGuard();
    CJournalGuard(const CJournalGuard&) = delete;
    CJournalGuard& operator=(const CJournalGuard&) = delete;

    /// Once a second by the clock of base/Clock.h, looks whether the journal's file was deleted, moved or
    /// cut, and tells the user. Holds the intake from the first failure on, tells the user once, and probes
    /// the journal; when a probe succeeds, tells that too and lets the intake go on.
    void poll();

    /// Looks at once whether the journal's file was deleted, moved or cut, and tells the user.
    void checkFile();

    bool isHolding() const { return m_pause != nullptr; }

private:
    CJournal& m_journal;
    CTextSink& m_sink;
    std::function<void()> m_onRecovered;
    std::unique_ptr<TC::CIntakePause> m_pause;
    double m_dNextLook = 0; ///< seconds of the clock
};

} // namespace desk
