#pragma once

#include "orderservice/platform/LuaModuleCtrl.h"
#include "orderservice/platform/Switches.h"

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace desk {

/// The "mdl_order" switches that are on in the folder (CDeskConfig::switches). All others are off. Any
/// thread.
class CDeskLuaModuleCtrl : public luawrapper::LuaModuleCtrl {
public:
    explicit CDeskLuaModuleCtrl(std::set<std::string> switches) : m_switches(std::move(switches)) {}

    bool checkModule(const std::vector<std::string>& path) override {
        const std::string* name = TC::orderSwitchOf(path);
        return name != nullptr && m_switches.count(*name) > 0;
    }

private:
    const std::set<std::string> m_switches;
};

} // namespace desk
