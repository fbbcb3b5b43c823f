#include "desk/window/IntakeMeter.h"

#include "orderservice/base/Clock.h"

#include <algorithm>
#include <utility>

namespace desk {
namespace {

constexpr double kMsPerSecond = 1000;

thread_local std::shared_ptr<const void> s_ofThread;

} // namespace

std::shared_ptr<const void> CIntakeMeter::begin(int orders, double now) {
    auto batch = std::make_shared<CBatch>(CBatch{orders, now, false, {}});
    const std::lock_guard lock(m_mutex);
    m_batches.push_back(batch);
    m_state.m_nQueue += orders;
    const auto end = [meter = shared_from_this(), batch](const void*) {
        const std::lock_guard ending(meter->m_mutex);
        const auto found = std::find(meter->m_batches.begin(), meter->m_batches.end(), batch);
        if (found == meter->m_batches.end()) return;
        meter->m_state.m_nQueue -= batch->m_nOrders;
        meter->m_batches.erase(found);
    };
    return {batch.get(), end};
}

void CIntakeMeter::beginOnThread(int orders, double now) {
    s_ofThread = begin(orders, now);
}

std::shared_ptr<const void> CIntakeMeter::takeOfThread() {
    return std::move(s_ofThread);
}

void CIntakeMeter::command(bool isInCheck, double now) {
    const std::lock_guard lock(m_mutex);
    m_state.m_strLastTime = utils::currentTimeText();
    m_state.m_lastMs.reset();
    if (!isInCheck || m_batches.empty()) return;
    m_state.m_lastMs = (now - m_batches.front()->m_dBegin) * kMsPerSecond;
    finishOrder();
}

void CIntakeMeter::refusal() {
    const std::lock_guard lock(m_mutex);
    if (m_batches.empty()) return;
    m_batches.front()->m_bRefused = true;
    m_batches.front()->m_refusedBy = std::this_thread::get_id();
}

void CIntakeMeter::message() {
    const std::lock_guard lock(m_mutex);
    if (m_batches.empty()) return;
    const CBatch& batch = *m_batches.front();
    if (batch.m_bRefused && batch.m_refusedBy == std::this_thread::get_id()) finishOrder();
}

/// One order less of the first batch.
void CIntakeMeter::finishOrder() {
    CBatch& batch = *m_batches.front();
    batch.m_bRefused = false;
    if (batch.m_nOrders == 0) return;
    --batch.m_nOrders;
    --m_state.m_nQueue;
}

CIntakeMeter::CState CIntakeMeter::state() const {
    const std::lock_guard lock(m_mutex);
    return m_state;
}

} // namespace desk
