#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace fake {

/// What all fakes share: one mutex for the records and one condition for those who wait for more of them.
class CRecords {
public:
    template<typename Change>
    void record(const Change& change) {
        const std::lock_guard lock(m_mutex);
        change();
        m_changed.notify_all();
    }
    template<typename Read>
    auto snapshot(const Read& read) const {
        const std::lock_guard lock(m_mutex);
        return read();
    }
    /// Everything that reached the host, in order, one line each: what describe() of tests/support/Describe.h
    /// gives.
    std::vector<std::string> log;

    /// Blocks until the condition on the records holds; false when it has not after a time that no healthy
    /// run needs.
    bool waitUntil(const std::function<bool()>& condition);

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
};

/// The calls of one operation, kept for arguments that do not change what the fake answers.
template<typename Call>
class CCalls {
public:
    void add(const Call& call) {
        const std::lock_guard lock(m_mutex);
        m_calls.push_back(call);
    }
    std::vector<Call> all() const {
        const std::lock_guard lock(m_mutex);
        return m_calls;
    }

private:
    mutable std::mutex m_mutex;
    std::vector<Call> m_calls;
};

} // namespace fake
