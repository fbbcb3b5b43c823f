#include "orderservice/platform/LuaModuleCtrl.h"

#include "orderservice/platform/HostCall.h"

namespace luawrapper {

bool isOrderSwitchOn(const char* name) {
    return TC::hostCall<&LuaModuleCtrl::checkModule>({"mdl_order", name});
}

} // namespace luawrapper
