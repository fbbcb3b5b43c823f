#include "orderservice/platform/LuaModuleCtrl.h"

#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/Switches.h"

namespace luawrapper {

bool isOrderSwitchOn(const char* name) {
    return TC::hostCall<&LuaModuleCtrl::checkModule>({TC::kOrderModule, name});
}

} // namespace luawrapper
