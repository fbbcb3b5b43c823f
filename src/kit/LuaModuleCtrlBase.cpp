#include "orderservice/kit/LuaModuleCtrlBase.h"

#include "orderservice/platform/Switches.h"

namespace kit {

bool CLuaModuleCtrlBase::checkModule(const std::vector<std::string>& path) {
    return path.size() == 2 && path[0] == "mdl_order" && path[1] == TC::kCommandGuardSwitch;
}

} // namespace kit
