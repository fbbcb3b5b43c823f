#pragma once

#include "orderservice/base/Export.h"

#include <array>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
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

/// The service that an operation belongs to. `Class` is the class that declares the operation. A large
/// service has its operations in base classes, one for each theme. A theme has a member type CService, which
/// is the service. Every other class is the service itself.
template<typename Class, typename = void>
struct CServiceOf {
    using Type = Class;
    static constexpr bool kIsTheme = false;
};
template<typename Class>
struct CServiceOf<Class, std::void_t<typename Class::CService>> {
    using Type = typename Class::CService;
    static constexpr bool kIsTheme = true;
};

/// The class of a pointer to a member.
template<typename Pointer>
struct CClassOf;
template<typename Member, typename Class>
struct CClassOf<Member Class::*> {
    using Type = Class;
};

/// Name of a member function as the compiler writes it, without namespaces. Its first part is the class that
/// declares the function.
template<auto Operation>
constexpr std::string_view declaredName() {
    // GCC and Clang write "... Operation = &TC::CTradeClient::cancelTask]". The name may also end with a
    // semicolon instead of the bracket.
    constexpr std::string_view text = __PRETTY_FUNCTION__;
    constexpr std::size_t begin = text.find("Operation = &") + std::string_view("Operation = &").size();
    constexpr std::string_view name = text.substr(begin, text.find_first_of(";]", begin) - begin);
    constexpr std::size_t function = name.rfind("::");
    constexpr std::size_t service = name.rfind("::", function - 1);
    return service == std::string_view::npos ? name : name.substr(service + 2);
}

/// Name of a theme's operation. It begins with the name of the service instead of the theme. The service must
/// be a complete type.
template<auto Operation, typename Service>
struct CThemeOperationName {
    static constexpr std::string_view kService = Service::kServiceName;
    static constexpr std::string_view kFunction =
        declaredName<Operation>().substr(declaredName<Operation>().find("::"));
    static constexpr auto kText = [] {
        std::array<char, kService.size() + kFunction.size()> text{};
        std::size_t length = 0;
        for (const char letter : kService)
            text[length++] = letter;
        for (const char letter : kFunction)
            text[length++] = letter;
        return text;
    }();
};

/// Name of an operation: the service and the function without namespaces, such as "CTradeClient::cancelTask".
/// The view points to static storage.
template<auto Operation>
constexpr std::string_view operationName() {
    using CService = CServiceOf<typename CClassOf<decltype(Operation)>::Type>;
    if constexpr (CService::kIsTheme) {
        constexpr const auto& text = CThemeOperationName<Operation, typename CService::Type>::kText;
        return {text.data(), text.size()};
    } else {
        return declaredName<Operation>();
    }
}

template<auto Operation, typename Result, typename Service, typename... Args>
struct CHostCallOf {
    /// Calls the installed service.
    Result operator()(Args... args) const {
        return on(CServiceOf<std::remove_const_t<Service>>::Type::instance(), std::forward<Args>(args)...);
    }

    /// Calls an object that the host returned. Service is the class that declares the operation.
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
