#pragma once

#include "orderservice/base/Export.h"

#include <atomic>

namespace utils {

/// A singleton whose owner controls its lifetime. The host creates the object, passes it to initInstance and
/// calls release at the end of the process. initInstance and release are called on the main thread. Any
/// thread may get the object, but no thread may use it during or after release.
template<typename T>
class ORDERSERVICE_EXPORT CManualSingletonT {
public:
    /// The stored object, or null if there is none.
    static T* instance() { return s_pInstance; }

    /// Stores the object and takes ownership. If an object is stored already, nothing changes and the caller
    /// still owns the argument.
    static void initInstance(T* object) {
        T* none = nullptr;
        s_pInstance.compare_exchange_strong(none, object);
    }

    /// Deletes the stored object. Then instance() returns null.
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
