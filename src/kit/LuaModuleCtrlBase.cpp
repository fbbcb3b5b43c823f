#include "orderservice/kit/LuaModuleCtrlBase.h"

#include "orderservice/platform/Switches.h"

namespace kit {

bool CLuaModuleCtrlBase::checkModule(const std::vector<std::string>& path) {
    const std::string* name = TC::orderSwitchOf(path);
    return name != nullptr && *name == TC::kCommandGuardSwitch;
}

} // namespace kit
