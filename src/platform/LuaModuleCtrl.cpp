#include "orderservice/platform/LuaModuleCtrl.h"

#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/Switches.h"

#include <functional>
#include <map>
#include <string_view>

namespace luawrapper {
namespace {

/// The path of a switch of the order module. The switches are read several times for each order, so each
/// thread keeps the paths that it has used.
const std::vector<std::string>& pathOf(std::string_view name) {
    thread_local std::map<std::string, std::vector<std::string>, std::less<>> paths;
    const auto found = paths.find(name);
    if (found != paths.end()) return found->second;
    return paths.emplace(name, std::vector<std::string>{TC::kOrderModule, std::string(name)}).first->second;
}

} // namespace

bool isOrderSwitchOn(const char* name) {
    return TC::hostCall<&LuaModuleCtrl::checkModule>(pathOf(name));
}

} // namespace luawrapper
