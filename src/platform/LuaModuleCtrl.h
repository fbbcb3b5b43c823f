#pragma once

#include "platform/HostService.h"

#include <string>
#include <vector>

namespace luawrapper {

/// Feature switches of a deployment.
class LuaModuleCtrl : public TC::CHostService<LuaModuleCtrl> {
public:
    static constexpr const char* kServiceName = "LuaModuleCtrl";

    /// Whether a switch is on. `path` is the module and the switch, such as "mdl_order" and
    /// "mdl_order_service_force_confirm". Read at the moment of use: a host may change a switch at any time.
    /// Any thread.
    virtual bool checkModule(const std::vector<std::string>& path) = 0;
};

/// Whether a switch of the order module is on.
bool isOrderSwitchOn(const char* name);

} // namespace luawrapper
