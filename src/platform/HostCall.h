#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace TC {

/// What an operation of the host threw, whatever its type: the text begins with the service and the
/// operation, such as "CTradeClient::cancelTask: no line". Derived from std::runtime_error, so that every
/// place that expects the library's own exceptions expects these, too.
class CHostError : public std::runtime_error {
public:
    CHostError(std::string_view operation, const char* cause);
};

/// In a catch block: throws what is in hand as a CHostError of the operation. One that is a CHostError
/// already goes on as it is.
[[noreturn]] void throwHostError(std::string_view operation);

/// Name of a member function without its namespaces, such as "CTradeClient::cancelTask". Lives for ever.
template<auto Operation>
constexpr std::string_view operationName() {
    // Both compilers write "... Operation = &TC::CTradeClient::cancelTask]" or the same up to a semicolon.
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

    /// Calls an object that the host handed out.
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

/// The library's only way to call an operation of the host:
///
///     hostCall<&CTradeClient::getLoginStatus>(key)      an installed service
///     hostCall<&CUserConfig::getUserName>.on(*user)     an object that the host handed out
///
/// Whatever the operation throws arrives as one CHostError that names it. Costs nothing while nothing is
/// thrown.
template<auto Operation>
inline constexpr CHostCall<Operation> hostCall{};

} // namespace TC
