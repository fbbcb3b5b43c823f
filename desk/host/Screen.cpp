#include "desk/host/Screen.h"

#include "orderservice/base/Thread.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <condition_variable>
#include <csignal>
#include <deque>
#include <mutex>
#include <streambuf>
#include <string>

namespace desk {
namespace {

/// Waits without a time limit. Only the screen's own thread calls it, so nobody else waits.
void waitUntilWritable(int descriptor) {
    struct pollfd writable {
        descriptor, POLLOUT, 0
    };
    ::poll(&writable, 1, -1);
}

bool writeAll(int descriptor, const std::string& text) {
    for (std::size_t done = 0; done < text.size();) {
        const ssize_t count = ::write(descriptor, text.data() + done, text.size() - done);
        if (count > 0) {
            done += static_cast<std::size_t>(count);
        } else if (count < 0 && errno == EAGAIN) {
            waitUntilWritable(descriptor);
        } else if (count == 0 || errno != EINTR) {
            return false;
        }
    }
    return true;
}

std::string noticeOf(std::size_t dropped) {
    return "(" + std::to_string(dropped) + (dropped == 1 ? " line is" : " lines are") +
           " missing here, because nobody read the screen; the journal has everything)\n";
}

} // namespace

/// The lines that wait for the descriptor. Any thread.
struct CScreen::CQueue {
    CQueue(int target, std::size_t limit) : descriptor(target), maxBytes(limit) {
        if (::pipe2(finished, O_CLOEXEC) != 0) finished[0] = finished[1] = -1;
    }
    ~CQueue() {
        for (const int open : {descriptor, finished[0], finished[1]}) {
            if (open >= 0) ::close(open);
        }
    }

    void post(std::string line);
    void close();
    /// Waits for the next text and returns it. Returns an empty text when no more will come.
    std::string take();
    /// The body of the writer's thread.
    void writeOut();

    const int descriptor;
    const std::size_t maxBytes;
    int finished[2]; ///< a pipe; the writer closes the second end when it has finished

    std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::string> lines;
    std::size_t bytes = 0;
    std::size_t dropped = 0; ///< number of lines dropped before the first of `lines`
    bool isClosed = false;   ///< no more lines are posted
    bool isBroken = false;   ///< the descriptor has failed
};

void CScreen::CQueue::post(std::string line) {
    const std::lock_guard lock(mutex);
    if (isBroken) return;
    bytes += line.size();
    lines.push_back(std::move(line));
    while (bytes > maxBytes && lines.size() > 1) {
        bytes -= lines.front().size();
        lines.pop_front();
        ++dropped;
    }
    changed.notify_one();
}

void CScreen::CQueue::close() {
    const std::lock_guard lock(mutex);
    isClosed = true;
    changed.notify_one();
}

std::string CScreen::CQueue::take() {
    std::unique_lock lock(mutex);
    changed.wait(lock, [this] { return isClosed || !lines.empty(); });
    std::string text = dropped != 0 ? noticeOf(dropped) : std::string();
    dropped = 0;
    if (lines.empty()) return text;
    text += lines.front();
    bytes -= lines.front().size();
    lines.pop_front();
    return text;
}

void CScreen::CQueue::writeOut() {
    for (std::string text = take(); !text.empty(); text = take()) {
        if (writeAll(descriptor, text)) continue;
        const std::lock_guard lock(mutex);
        isBroken = true;
        lines.clear();
        break;
    }
    ::close(finished[1]);
    finished[1] = -1;
}

/// Collects the written text and posts its whole lines at a flush.
class CScreen::CBuffer : public std::streambuf {
public:
    explicit CBuffer(CQueue& queue) : m_queue(queue) {}

protected:
    int_type overflow(int_type character) override {
        if (traits_type::eq_int_type(character, traits_type::eof())) return traits_type::not_eof(character);
        m_strText += traits_type::to_char_type(character);
        return character;
    }
    std::streamsize xsputn(const char* text, std::streamsize size) override {
        m_strText.append(text, static_cast<std::size_t>(size));
        return size;
    }
    int sync() override {
        std::size_t begin = 0;
        for (std::size_t end = m_strText.find('\n'); end != std::string::npos;
             begin = end + 1, end = m_strText.find('\n', begin))
            m_queue.post(m_strText.substr(begin, end + 1 - begin));
        m_strText.erase(0, begin);
        return 0;
    }

private:
    CQueue& m_queue;
    std::string m_strText;
};

CScreen::CScreen(int descriptor, std::size_t queueBytes, int patienceMs)
    : m_nPatienceMs(patienceMs),
      m_queue(std::make_shared<CQueue>(::fcntl(descriptor, F_DUPFD_CLOEXEC, 0), queueBytes)),
      m_buffer(std::make_unique<CBuffer>(*m_queue)), m_stream(m_buffer.get()) {
    // The writer thread blocks all signals. Otherwise a closed pipe, or a terminal that stops background
    // writers, would send the process a signal through this thread.
    sigset_t all, before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    m_writer = std::thread([queue = m_queue] {
        utils::setThreadName("screen");
        queue->writeOut();
    });
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

CScreen::~CScreen() {
    m_stream.flush();
    m_queue->close();
    struct pollfd finished {
        m_queue->finished[0], POLLIN, 0
    };
    // poll also reports the closed end of the pipe. A writer that does not finish ends with the process.
    if (::poll(&finished, 1, m_nPatienceMs) > 0)
        m_writer.join();
    else
        m_writer.detach();
}

} // namespace desk
