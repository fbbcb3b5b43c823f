#pragma once

#include "orderservice/base/Export.h"

namespace TC {

/// Base of every abstract host service. It provides instance(). installHost sets the instance and releaseHost
/// clears it.
template<typename T>
class ORDERSERVICE_EXPORT CHostService {
public:
    /// The installed service; the host owns it. Any thread, between installHost and releaseHost. A call at
    /// another time is a bug in the host. It ends the process, and the name of the service is written to the
    /// standard error stream.
    static T& instance();
    /// Whether the service is installed. Only for services that a host may leave out.
    static bool isInstalled() { return s_pInstance != nullptr; }

    CHostService(const CHostService&) = delete;
    CHostService& operator=(const CHostService&) = delete;

protected:
    CHostService() = default;
    virtual ~CHostService() = default;

private:
    friend class CHostInstaller;
    inline static T* s_pInstance = nullptr;
};

/// Writes to the standard error stream that `service` was used while no host is installed, and ends the
/// process.
[[noreturn]] ORDERSERVICE_EXPORT void reportMissingHost(const char* service);

template<typename T>
T& CHostService<T>::instance() {
    if (s_pInstance == nullptr) reportMissingHost(T::kServiceName);
    return *s_pInstance;
}

} // namespace TC
