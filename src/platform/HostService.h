#pragma once

namespace TC {

/// Base of every abstract host service: gives each its instance(), which installHost sets and releaseHost
/// clears.
///
/// instance() may be called only between the two; an access outside is a bug of the host's and ends the
/// process with the service's name rather than with a null pointer on the order road.
template<typename T>
class CHostService {
public:
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
