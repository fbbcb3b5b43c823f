#include "orderservice/platform/LuaModuleCtrl.h"

#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/Switches.h"

#include <functional>
#include <map>
#include <string_view>

namespace luawrapper {
namespace {

using CPaths = std::map<std::string, std::vector<std::string>, std::less<>>;

CPaths makePaths() {
    CPaths paths;
    for (const char* name : TC::kOrderSwitches)
        paths[name] = {TC::kOrderModule, name};
    return paths;
}

/// The paths of all switches, because switches are read several times for each order. They are never
/// destroyed: a host may use the library until its process ends.
const CPaths& knownPaths() {
    static const auto& paths = *new CPaths(makePaths());
    return paths;
}

} // namespace

bool isOrderSwitchOn(const char* name) {
    const auto found = knownPaths().find(std::string_view(name));
    if (found != knownPaths().end()) return TC::hostCall<&LuaModuleCtrl::checkModule>(found->second);
    return TC::hostCall<&LuaModuleCtrl::checkModule>({TC::kOrderModule, name});
}

} // namespace luawrapper
