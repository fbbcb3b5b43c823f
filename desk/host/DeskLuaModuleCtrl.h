#pragma once

#include "orderservice/platform/LuaModuleCtrl.h"

#include <set>

namespace desk {

/// The "mdl_order" switches that are on in the folder (CDeskConfig::switches). All others are off. Any
/// thread.
class CDeskLuaModuleCtrl : public luawrapper::LuaModuleCtrl {
public:
    explicit CDeskLuaModuleCtrl(std::set<std::string> switches) : m_switches(std::move(switches)) {}

    bool checkModule(const std::vector<std::string>& path) override {
        return path.size() == 2 && path[0] == "mdl_order" && m_switches.count(path[1]) > 0;
    }

private:
    const std::set<std::string> m_switches;
};

} // namespace desk
