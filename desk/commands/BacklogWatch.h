#pragma once

#include "desk/host/TextSink.h"

#include <atomic>
#include <functional>
#include <thread>

namespace TC {
class COrderService;
}

namespace desk {

/// Watches whether the user still wants to wait while COrderService::shutdown works off the backlog, and
/// makes the service drop the backlog if not. Lives around the call of shutdown, on the main thread.
class CBacklogWatch {
public:
    /// keepWaiting is asked on the watch's own thread; an empty one always waits. Service and sink outlive
    /// the watch.
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
