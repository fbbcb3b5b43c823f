#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/platform/LuaModuleCtrl.h"

namespace kit {

/// The switches of a host that configures none. The command guard is on; it refuses orders that no trading
/// layer can trade. All other switches are off. A host that overrides checkModule calls this implementation
/// for the switches that it does not know. Any thread.
class ORDERSERVICE_EXPORT CLuaModuleCtrlBase : public luawrapper::LuaModuleCtrl {
public:
    bool checkModule(const std::vector<std::string>& path) override;
};

} // namespace kit
