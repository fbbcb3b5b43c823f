#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/platform/HostService.h"

#include <string>
#include <vector>

namespace luawrapper {

/// Feature switches of a deployment.
class ORDERSERVICE_EXPORT LuaModuleCtrl : public TC::CHostService<LuaModuleCtrl> {
public:
    static constexpr const char* kServiceName = "LuaModuleCtrl";

    /// Whether a switch is on; false if the host does not know the switch. `path` is the module and the
    /// switch, such as "mdl_order" and "mdl_order_service_force_confirm" (see platform/Switches.h). The
    /// library asks each time it needs the switch, so the host may change a switch at any time. Any thread,
    /// also with the registry locked. Returns at once and does not throw.
    virtual bool checkModule(const std::vector<std::string>& path) = 0;
};

/// Whether a switch of the order module is on. Any thread.
ORDERSERVICE_EXPORT bool isOrderSwitchOn(const char* name);

} // namespace luawrapper
