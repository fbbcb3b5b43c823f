#pragma once

namespace TC {

/// Base of every abstract host service: gives each its instance(), which installHost sets and releaseHost
/// clears.
template<typename T>
class CHostService {
public:
    /// The installed service; it stays the host's. Any thread, between installHost and releaseHost. A call
    /// outside of that is a bug of the host's: it ends the process with the service's name.
    static T& instance();

    CHostService(const CHostService&) = delete;
    CHostService& operator=(const CHostService&) = delete;

protected:
    CHostService() = default;
    virtual ~CHostService() = default;

private:
    friend class CHostInstaller;
    inline static T* s_pInstance = nullptr;
};

/// Ends the process: `service` was used while no host is installed.
[[noreturn]] void reportMissingHost(const char* service);

template<typename T>
T& CHostService<T>::instance() {
    if (s_pInstance == nullptr) reportMissingHost(T::kServiceName);
    return *s_pInstance;
}

} // namespace TC
