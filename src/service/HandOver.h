#pragma once

#include <QObject>
#include <QThread>

#include <mutex>

namespace TC {

/// Orders what a thread writes before and while it posts a call, and what the called thread reads, by a mutex
/// of its own. Qt's event queue does the same already, but inside a library that a thread sanitizer cannot
/// see into: with this one the whole order road can be checked for races.
///
/// Installed as an event filter on the receiver, in the receiver's thread.
class CHandOver : public QObject {
public:
    using QObject::QObject;

    /// Calls `post`, which posts something to the receiver. Any thread; may nest. On the receiver's own
    /// thread, where a call arrives at once, nothing is locked: what runs inside may wait for whom it likes.
    template<typename Post>
    void around(const Post& post) {
        std::unique_lock lock(m_mutex, std::defer_lock);
        if (QThread::currentThread() != thread()) lock.lock();
        post();
    }

    bool eventFilter(QObject*, QEvent*) override {
        const std::lock_guard lock(m_mutex);
        return false;
    }

private:
    std::recursive_mutex m_mutex;
};

} // namespace TC
