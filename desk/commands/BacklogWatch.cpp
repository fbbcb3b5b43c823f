#include "desk/commands/BacklogWatch.h"

#include "orderservice/base/Clock.h"
#include "orderservice/base/Thread.h"
#include "orderservice/service/OrderService.h"

#include <utility>

namespace desk {
namespace {

constexpr double kLookSeconds = 0.02;
/// If the backlog is finished sooner, no line is printed.
constexpr double kSilentSeconds = 1.0;

} // namespace

CBacklogWatch::CBacklogWatch(TC::COrderService& service, CTextSink& sink, std::function<bool()> keepWaiting,
                             std::function<EEndPhase()> phase)
    : m_service(service), m_sink(sink), m_keepWaiting(std::move(keepWaiting)), m_phase(std::move(phase)) {
    if (m_keepWaiting) m_thread = std::thread([this] { watch(); });
}

CBacklogWatch::~CBacklogWatch() {
    m_bEnded = true;
    if (m_thread.joinable()) m_thread.join();
}

void CBacklogWatch::watch() {
    utils::setThreadName("backlogWatch");
    m_dBegin = utils::getTime();
    while (!m_bEnded) {
        const bool isWanted = m_keepWaiting();
        const EEndPhase phase = m_phase();
        if (phase == EEndPhase::Backlog) watchBacklog(isWanted);
        if (phase == EEndPhase::Call) watchCall(isWanted);
        utils::sleep(kLookSeconds);
    }
}

void CBacklogWatch::watchBacklog(bool isWanted) {
    if (!isWanted && !m_bDropped) {
        m_bDropped = true;
        m_service.dropBacklog();
        m_sink.writeLine("The waiting orders are discarded; the current order is finished.",
                         ESeverity::Warning);
    }
    if (!m_bReported && !m_bDropped && utils::getTime() - m_dBegin > kSilentSeconds) {
        m_bReported = true;
        m_sink.writeLine("Processing the orders that were accepted. Ctrl-C discards them.");
    }
}

void CBacklogWatch::watchCall(bool isWanted) {
    if (!m_callSeen) m_callSeen = utils::getTime();
    if (!m_bCallReported && utils::getTime() - *m_callSeen > kSilentSeconds) {
        m_bCallReported = true;
        m_sink.writeLine(
            "Finishing a function call. It waits up to two seconds for each instrument without a "
            "quote, and then sends its command.");
    }
    if (!isWanted && !m_bCallWarned) {
        m_bCallWarned = true;
        m_sink.writeLine("The function call goes on, and its command may still go out. One more Ctrl-C ends "
                         "the desk at once.",
                         ESeverity::Warning);
    }
}

} // namespace desk
