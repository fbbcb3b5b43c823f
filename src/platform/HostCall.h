#pragma once

#include "orderservice/base/Export.h"

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace TC {

/// Replaces any exception that a host operation throws. The text begins with the service and the operation,
/// such as "CTradeClient::cancelTask: no line". It derives from std::runtime_error, so code that catches the
/// library's own exceptions also catches this one.
class ORDERSERVICE_EXPORT CHostError : public std::runtime_error {
public:
    CHostError(std::string_view operation, const char* cause);
};

/// Throws the current exception again as a CHostError of the operation. If it is a CHostError already, it is
/// thrown unchanged. Call it in a catch block only.
[[noreturn]] ORDERSERVICE_EXPORT void throwHostError(std::string_view operation);

/// Name of a member function without its namespaces, such as "CTradeClient::cancelTask". The view points to
/// static storage.
template<auto Operation>
constexpr std::string_view operationName() {
    // GCC and Clang write "... Operation = &TC::CTradeClient::cancelTask]". The name may also end with a
    // semicolon instead of the bracket.
    constexpr std::string_view text = __PRETTY_FUNCTION__;
    constexpr std::size_t begin = text.find("Operation = &") + std::string_view("Operation = &").size();
    constexpr std::string_view name = text.substr(begin, text.find_first_of(";]", begin) - begin);
    constexpr std::size_t function = name.rfind("::");
    constexpr std::size_t service = name.rfind("::", function - 1);
    return service == std::string_view::npos ? name : name.substr(service + 2);
}

template<auto Operation, typename Result, typename Service, typename... Args>
struct CHostCallOf {
    /// Calls the installed service.
    Result operator()(Args... args) const { return on(Service::instance(), std::forward<Args>(args)...); }

    /// Calls an object that the host returned.
    Result on(Service& object, Args... args) const {
        try {
            return (object.*Operation)(std::forward<Args>(args)...);
        } catch (...) {
            throwHostError(operationName<Operation>());
        }
    }
};

template<auto Operation, typename Pointer = decltype(Operation)>
struct CHostCall;
template<auto Operation, typename Result, typename Service, typename... Args>
struct CHostCall<Operation, Result (Service::*)(Args...)> : CHostCallOf<Operation, Result, Service, Args...> {
};
template<auto Operation, typename Result, typename Service, typename... Args>
struct CHostCall<Operation, Result (Service::*)(Args...) const>
    : CHostCallOf<Operation, Result, const Service, Args...> {};

/// The library calls every operation of the host in this way:
///
///     hostCall<&CTradeClient::getLoginStatus>(key)      an installed service
///     hostCall<&CUserConfig::getUserName>.on(*user)     an object that the host returned
///
/// Any exception of the operation reaches the caller as a CHostError that names the operation. There is no
/// cost unless the operation throws.
template<auto Operation>
inline constexpr CHostCall<Operation> hostCall{};

} // namespace TC
