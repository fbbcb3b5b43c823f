#pragma once

#include "desk/host/TextSink.h"

#include <atomic>
#include <functional>
#include <optional>
#include <thread>

namespace TC {
class COrderService;
}

namespace desk {

/// What the end of the desk waits for.
enum class EEndPhase {
    Backlog, ///< the orders that were accepted
    Call,    ///< a function call, which nothing can shorten
    Done,
};

/// Checks whether the user still wants to wait while COrderService::shutdown finishes the backlog. If not, it
/// makes the service discard the backlog. While a function call is finished after that, it tells the user so.
/// Create it on the main thread before shutdown is called, and destroy it when no call runs any more.
class CBacklogWatch {
public:
    /// keepWaiting and phase are called on the watch's own thread; an empty keepWaiting means to wait always.
    /// Service and sink must outlive the watch.
    CBacklogWatch(TC::COrderService& service, CTextSink& sink, std::function<bool()> keepWaiting,
                  std::function<EEndPhase()> phase);
    ~CBacklogWatch();
    CBacklogWatch(const CBacklogWatch&) = delete;
    CBacklogWatch& operator=(const CBacklogWatch&) = delete;

private:
    void watch();
    void watchBacklog(bool isWanted);
    void watchCall(bool isWanted);

    TC::COrderService& m_service;
    CTextSink& m_sink;
    const std::function<bool()> m_keepWaiting;
    const std::function<EEndPhase()> m_phase;
    double m_dBegin = 0;              ///< of the watch; time of utils::getTime
    std::optional<double> m_callSeen; ///< when it was first seen that only a call is left
    bool m_bReported = false;         ///< the user knows that the backlog is processed
    bool m_bDropped = false;
    bool m_bCallReported = false;
    bool m_bCallWarned = false; ///< the user has asked for the end once more
    std::atomic<bool> m_bEnded{false};
    std::thread m_thread;
};

} // namespace desk
