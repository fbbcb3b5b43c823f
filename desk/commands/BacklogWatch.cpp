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

CBacklogWatch::CBacklogWatch(TC::COrderService& service, CTextSink& sink, std::function<bool()> keepWaiting)
    : m_service(service), m_sink(sink), m_keepWaiting(std::move(keepWaiting)) {
    if (m_keepWaiting) m_thread = std::thread([this] { watch(); });
}

CBacklogWatch::~CBacklogWatch() {
    m_bEnded = true;
    if (m_thread.joinable()) m_thread.join();
}

void CBacklogWatch::watch() {
    utils::setThreadName("backlogWatch");
    const double begin = utils::getTime();
    bool isReported = false;
    bool isDropped = false;
    while (!m_bEnded) {
        if (!m_keepWaiting() && !isDropped) {
            isDropped = true;
            m_service.dropBacklog();
            m_sink.writeLine("The waiting orders are discarded; the current order is finished.",
                             ESeverity::Warning);
        }
        if (!isReported && !isDropped && utils::getTime() - begin > kSilentSeconds) {
            isReported = true;
            m_sink.writeLine("Processing the orders that were accepted. Ctrl-C discards them.");
        }
        utils::sleep(kLookSeconds);
    }
}

} // namespace desk
