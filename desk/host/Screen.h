#pragma once

#include <cstddef>
#include <memory>
#include <ostream>
#include <thread>

namespace desk {

/// What people see of the desk, kept apart from its work. Text goes into a bounded queue, and a thread of the
/// screen's own writes it to a descriptor. So nobody who writes waits for a reader: not for a terminal that
/// was stopped with Ctrl-S, not for a paused pager, not for a full pipe.
///
/// When the queue is full its oldest lines are dropped. The screen shows how many in their place. A
/// descriptor that fails, as a closed pipe or terminal does, ends the showing and nothing else.
class CScreen {
public:
    static constexpr std::size_t kQueueBytes = 1 << 20;
    static constexpr int kPatienceMs = 2000;

    /// Writes to a duplicate of `descriptor`. The queue holds up to `queueBytes`.
    explicit CScreen(int descriptor, std::size_t queueBytes = kQueueBytes, int patienceMs = kPatienceMs);
    /// Shows what is left, if the reader takes it within the patience. A signal ends that wait early.
    ~CScreen();
    CScreen(const CScreen&) = delete;
    CScreen& operator=(const CScreen&) = delete;

    /// For whole lines; a flush puts them into the queue. One thread at a time.
    std::ostream& stream() { return m_stream; }

private:
    struct CQueue;
    class CBuffer;

    const int m_nPatienceMs;
    std::shared_ptr<CQueue> m_queue; ///< the thread has it too, and may outlive the screen
    std::unique_ptr<CBuffer> m_buffer;
    std::ostream m_stream;
    std::thread m_writer;
};

} // namespace desk
