#pragma once

#include <QMetaObject>
#include <QObject>
#include <QThread>

#include <mutex>
#include <utility>

namespace TC {

/// The queue in front of the service's thread. Posted calls run on the receiver's thread, one after the
/// other, in the order in which they were posted.
///
/// The queue makes a safe shutdown possible. close() queues an end marker, and nothing is queued after the
/// marker. When the marker runs, every accepted call has run. The caller of each refused call got false.
///
/// A lock makes the posts run one at a time. It is held only while an event is put into the queue of the
/// receiver: no posted call and no code of the host runs under it. The event filter takes the same lock
/// before each event. Qt's queue already synchronizes the threads, but a thread sanitizer does not see this
/// inside Qt. With the lock, the sanitizer can check the whole path of an order for races.
class COrderQueue : public QObject {
public:
    /// Moves the receiver and this queue to the thread. The receiver and the thread must outlive the queue.
    COrderQueue(QObject& receiver, QThread& thread) : m_receiver(receiver), m_thread(thread) {
        m_receiver.installEventFilter(this);
        m_receiver.moveToThread(&m_thread);
        moveToThread(&m_thread);
    }

    /// Queues the call. After close it returns false and drops the call. Any thread. On the receiver's own
    /// thread the call runs before post returns, also after close: calls that the last batches make there
    /// still run.
    template<typename Call>
    [[nodiscard]] bool post(Call call) {
        if (isOnOwnThread()) {
            call();
            return true;
        }
        const std::lock_guard lock(m_mutex);
        if (!m_bClosed) enqueue(std::move(call));
        return !m_bClosed;
    }

    /// Queues the end marker, which runs `last` after every call before it. Later posts are refused. May be
    /// called once, and not on the receiver's own thread.
    template<typename Call>
    void close(Call last) {
        const std::lock_guard lock(m_mutex);
        m_bClosed = true;
        enqueue(std::move(last));
    }

    /// Whether a post from the calling thread would be refused now.
    bool isRefusing() const {
        if (isOnOwnThread()) return false;
        const std::lock_guard lock(m_mutex);
        return m_bClosed;
    }

    bool isOnOwnThread() const { return QThread::currentThread() == &m_thread; }

    bool eventFilter(QObject*, QEvent*) override {
        const std::lock_guard lock(m_mutex);
        return false;
    }

private:
    template<typename Call>
    void enqueue(Call&& call) {
        QMetaObject::invokeMethod(&m_receiver, std::forward<Call>(call), Qt::QueuedConnection);
    }

    QObject& m_receiver;
    QThread& m_thread;
    mutable std::mutex m_mutex;
    bool m_bClosed = false;
};

} // namespace TC
