#pragma once

#include "desk/host/TextSink.h"

#include <atomic>
#include <functional>
#include <thread>

namespace TC {
class COrderService;
}

namespace desk {

/// Checks whether the user still wants to wait while COrderService::shutdown finishes the backlog. If not, it
/// makes the service discard the backlog. Create it on the main thread before shutdown is called, and destroy
/// it after shutdown returns.
class CBacklogWatch {
public:
    /// keepWaiting is called on the watch's own thread; an empty function means to wait always. Service and
    /// sink must outlive the watch.
    CBacklogWatch(TC::COrderService& service, CTextSink& sink, std::function<bool()> keepWaiting);
    ~CBacklogWatch();
    CBacklogWatch(const CBacklogWatch&) = delete;
    CBacklogWatch& operator=(const CBacklogWatch&) = delete;

private:
    void watch();

    TC::COrderService& m_service;
    CTextSink& m_sink;
    const std::function<bool()> m_keepWaiting;
    std::atomic<bool> m_bEnded{false};
    std::thread m_thread;
};

} // namespace desk
