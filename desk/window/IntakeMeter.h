#pragma once

#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace desk {

/// Measures what happens between the doors and the order client: how many orders wait for their check, and
/// how long the last command needed. Any thread. Times are seconds of base/Clock.h.
class CIntakeMeter : public std::enable_shared_from_this<CIntakeMeter> {
public:
    struct CState {
        /// Accepted orders whose check has not ended. The one-pass variant sends an order when its check
        /// ends; the two-pass variant checks a whole batch first.
        int m_nQueue = 0;
        std::string m_strLastTime;      ///< when the last command came, as ISO 8601; empty if there was none
        std::optional<double> m_lastMs; ///< from the door to that command; not set if a person was asked
    };

    /// A batch with so many orders was accepted. The batch ends when the last copy of the result is released.
    [[nodiscard]] std::shared_ptr<const void> begin(int orders, double now);
    /// The same for a door that reports a batch before it places it. The batch is kept for this thread until
    /// takeOfThread, or until the next one: then the door has placed nothing.
    void beginOnThread(int orders, double now);
    /// The batch that the door on this thread has reported, or null.
    [[nodiscard]] static std::shared_ptr<const void> takeOfThread();

    /// The next three are called in the order in which they happen. The batch that is being checked is the
    /// first one that has not ended. Its orders leave the queue one by one.

    /// A command came. `isInCheck`: the check of a batch has sent it, and its order is finished with it.
    void command(bool isInCheck, double now);
    /// The check has refused an order, or a part of one: a command may still follow.
    void refusal();
    /// A message was shown. If the thread of the last refusal has shown it, the check has begun the next
    /// order, and the refused one is finished.
    void message();
    CState state() const;

private:
    struct CBatch {
        int m_nOrders;
        double m_dBegin;
        bool m_bRefused = false;     ///< the check has refused an order that is not counted yet
        std::thread::id m_refusedBy; ///< thread of that check
    };
    void finishOrder();

    mutable std::mutex m_mutex;
    std::deque<std::shared_ptr<CBatch>> m_batches;
    CState m_state;
};

} // namespace desk
