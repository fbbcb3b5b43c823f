#pragma once

#include <atomic>

namespace utils {

/// A singleton whose owner decides when it lives. The host creates the object, hands it to initInstance and
/// calls release at the end of the process. Init and release belong to the main thread. Any thread may ask
/// for the object, but must not use it while it is released.
template<typename T>
class CManualSingletonT {
public:
    /// The stored object, or null when there is none.
    static T* instance() { return s_pInstance; }

    /// Stores the object and takes it over, unless one is stored already; then the argument stays the
    /// caller's.
    static void initInstance(T* object) {
        T* none = nullptr;
        s_pInstance.compare_exchange_strong(none, object);
    }

    /// Deletes the stored object and forgets it.
    static void release() {
        delete s_pInstance.load();
        s_pInstance = nullptr;
    }

protected:
    CManualSingletonT() = default;
    ~CManualSingletonT() = default;
    CManualSingletonT(const CManualSingletonT&) = delete;
    CManualSingletonT& operator=(const CManualSingletonT&) = delete;

private:
    inline static std::atomic<T*> s_pInstance{nullptr};
};

} // namespace utils
