#pragma once

#include <QMetaObject>
#include <QObject>
#include <QThread>

#include <mutex>
#include <utility>

namespace TC {

/// The queue in front of the service's thread. Calls that are posted run on the receiver's thread, one after
/// the other, in the order of the posts.
///
/// Its purpose is the end: close() queues an end marker, and nothing is queued behind the end marker. Whoever
/// has seen the marker's turn knows that every call that was accepted has been worked off, and the caller of
/// each call that was not accepted has been told.
///
/// A lock orders the posts, and is held only while an event is put into the queue of the receiver: no posted
/// call and no code of the host ever runs under it. The event filter takes the same lock before each event.
/// Qt's queue orders memory already, but inside a library that a thread sanitizer cannot see into; with the
/// lock the whole order road can be checked for races.
class COrderQueue : public QObject {
public:
    /// Moves the receiver and itself to the thread. Both outlive the queue.
    COrderQueue(QObject& receiver, QThread& thread) : m_receiver(receiver), m_thread(thread) {
        m_receiver.installEventFilter(this);
        m_receiver.moveToThread(&m_thread);
        moveToThread(&m_thread);
    }

    /// Queues the call; false, and the call is dropped, after close. Any thread. On the receiver's own thread
    /// the call runs before post returns, also after close: what the last batches bring about there is worked
    /// off with them.
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

    /// Queues the end marker: runs `last` when every call before it has been worked off, and refuses what
    /// comes later. Once; not on the receiver's own thread.
    template<typename Call>
    void close(Call last) {
        const std::lock_guard lock(m_mutex);
        m_bClosed = true;
        enqueue(std::move(last));
    }

    /// Whether a post on this thread would be refused now.
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
