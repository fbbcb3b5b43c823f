#include "desk/host/JournalGuard.h"

#include "orderservice/base/Clock.h"
#include "orderservice/gates/IntakePause.h"

namespace desk {

namespace {

constexpr double kLookSeconds = 1.0;

} // namespace

CJournalGuard::CJournalGuard(CJournal& journal, CTextSink& sink, std::function<void()> onRecovered)
    : m_journal(journal), m_sink(sink), m_onRecovered(std::move(onRecovered)) {}

CJournalGuard::~CJournalGuard() = default;

void CJournalGuard::checkFile() {
    const std::string cause = m_journal.checkFile();
    if (!cause.empty()) m_sink.writeLine("WARNING: " + cause, ESeverity::Warning);
}

void CJournalGuard::poll() {
    const double now = utils::getTime();
    if (now >= m_dNextLook) {
        m_dNextLook = now + kLookSeconds;
        checkFile();
    }
    if (!m_pause) {
        const utils::KNError failure = m_journal.failure();
        if (failure.isSuccess()) return;
        m_pause = std::make_unique<TC::CIntakePause>();
        m_sink.writeLine("ERROR: " + failure.errorMsg() + ". New commands are refused and order files wait.",
                         ESeverity::Warning);
    }
    if (!m_journal.probe().isSuccess()) return;
    if (m_onRecovered) m_onRecovered();
    m_sink.writeLine("The journal works again. Order files are read again.");
    m_pause.reset();
}

} // namespace desk
