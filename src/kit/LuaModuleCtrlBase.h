#pragma once

#include "platform/LuaModuleCtrl.h"

namespace kit {

/// The switches of a host that configures none: the command guard is on, which refuses what no trading layer
/// can trade; all others are off. A host that overrides checkModule asks this one for the switches that it
/// does not know. Any thread.
class CLuaModuleCtrlBase : public luawrapper::LuaModuleCtrl {
public:
    bool checkModule(const std::vector<std::string>& path) override;
};

} // namespace kit
