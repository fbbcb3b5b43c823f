#include "kit/LuaModuleCtrlBase.h"

namespace kit {

bool CLuaModuleCtrlBase::checkModule(const std::vector<std::string>& path) {
    return path.size() == 2 && path[0] == "mdl_order" && path[1] == "mdl_order_command_guard";
}

} // namespace kit
