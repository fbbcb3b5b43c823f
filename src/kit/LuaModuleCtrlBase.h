#pragma once

#include "platform/LuaModuleCtrl.h"

namespace kit {

/// The switches of a host that configures none: the guards that refuse what no right order needs are on, all
/// others are off. A host that overrides checkModule asks this one for the switches that it does not know.
/// Any thread.
class CLuaModuleCtrlBase : public luawrapper::LuaModuleCtrl {
public:
    bool checkModule(const std::vector<std::string>& path) override;
};

} // namespace kit
