#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace fake {

/// Shared by all fakes: one mutex for the records and one condition to wait for more records.
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
    /// Everything that reached the host, in order, one line each. describe() of tests/support/Describe.h
    /// writes the lines of commands.
    std::vector<std::string> log;

    /// Blocks until the condition on the records is true. Returns false after a timeout that is longer than
    /// any correct run needs.
    bool waitUntil(const std::function<bool()>& condition);

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
};

/// Records the calls of one operation. Used for arguments that the fake's answers do not depend on.
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
