#pragma once

#include <cstddef>
#include <memory>
#include <ostream>
#include <thread>

namespace desk {

/// The desk's output, separated from its work. Text goes into a bounded queue, and a thread of the screen
/// writes it to a descriptor. So no writer waits for a reader, such as a terminal stopped with Ctrl-S, a
/// paused pager or a full pipe.
///
/// When the queue is full, the oldest lines are dropped, and the screen shows their number instead. If the
/// descriptor fails, for example because a pipe or terminal was closed, the output ends and the desk goes on.
class CScreen {
public:
    static constexpr std::size_t kQueueBytes = 1 << 20;
    static constexpr int kPatienceMs = 2000;

    /// Writes to a duplicate of `descriptor`. The queue holds up to `queueBytes` bytes. `patienceMs` is the
    /// wait of the destructor in milliseconds.
    explicit CScreen(int descriptor, std::size_t queueBytes = kQueueBytes, int patienceMs = kPatienceMs);
    /// Writes the rest of the queue. Waits up to `patienceMs` until the reader has taken it; a signal ends
    /// this wait early.
    ~CScreen();
    CScreen(const CScreen&) = delete;
    CScreen& operator=(const CScreen&) = delete;

    /// Takes whole lines; a flush moves them to the queue. One thread at a time.
    std::ostream& stream() { return m_stream; }

private:
    struct CQueue;
    class CBuffer;

    const int m_nPatienceMs;
    std::shared_ptr<CQueue> m_queue; ///< shared with the thread, which may outlive the screen
    std::unique_ptr<CBuffer> m_buffer;
    std::ostream m_stream;
    std::thread m_writer;
};

} // namespace desk
