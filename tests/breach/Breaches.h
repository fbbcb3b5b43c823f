#pragma once

#include <functional>
#include <mutex>
#include <set>
#include <string>

namespace breach {

/// Decides what happens when an operation is called. Thread-safe.
class CBreaches {
public:
    /// From now on each call of the operation, such as "CTradeClient::cancelTask", runs `act` first.
    void arm(const std::string& operation, std::function<void()> act) {
        const std::lock_guard lock(m_mutex);
        m_strOperation = operation;
        m_act = std::move(act);
    }
    void disarm() { arm({}, {}); }

    void operator()(const char* operation) const {
        const std::string name(operation);
        std::function<void()> act;
        {
            const std::lock_guard lock(m_mutex);
            if (m_strOperation == name) act = m_act;
            m_called.insert(name);
            if (name == "CAccountData::unlock") --dataLocks();
            if (dataLocks() > 0) m_underDataLock.insert(name.substr(name.rfind(':') + 1));
        }
        if (act) act();
        if (name == "CAccountData::lock") ++dataLocks();
    }

    /// The operations that were called on a thread that held the lock of an account's data.
    std::set<std::string> underDataLock() const {
        const std::lock_guard lock(m_mutex);
        return m_underDataLock;
    }

    /// The operations that were called since the last forgetCalls.
    std::set<std::string> called() const {
        const std::lock_guard lock(m_mutex);
        return m_called;
    }
    void forgetCalls() {
        const std::lock_guard lock(m_mutex);
        m_called.clear();
    }

private:
    /// How many times the calling thread holds the lock.
    static int& dataLocks() {
        thread_local int count = 0;
        return count;
    }

    mutable std::mutex m_mutex;
    mutable std::set<std::string> m_called, m_underDataLock;
    std::string m_strOperation;
    std::function<void()> m_act;
};

/// Overrides an operation of a fake: it runs the armed act first, if there is one.
#define BREACHABLE(Base, Service, Result, operation, params, qualifier, args)                                \
    Result operation params qualifier override {                                                             \
        m_breaches(#Service "::" #operation);                                                                \
        return Base::operation args;                                                                         \
    }

} // namespace breach
