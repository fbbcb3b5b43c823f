#pragma once

#include "desk/host/DeskTradeFrameworkSource.h"
#include "orderservice/base/KNError.h"

#include <string>
#include <vector>

namespace desk {

/// Passes the interfaces of settings.xml to the trade framework through the order service. At the end it
/// saves the framework's interfaces to the file. Main thread, while COrderService lives.
class CInterfaceKeeper {
public:
    /// `settings` is the text of settings.xml, already validated, or empty. The framework must outlive the
    /// keeper.
    CInterfaceKeeper(std::string folder, std::string settings, CDeskTradeFrameworkSource& framework);

    /// Call it once, at the start.
    void load();

    /// Rewrites settings.xml if the interfaces have changed since the load. An unchanged file keeps its
    /// owner's layout.
    [[nodiscard]] utils::KNError save();

private:
    /// One text for each interface. Equal texts mean equal interfaces.
    std::vector<std::string> current() const;

    std::string m_strFolder;
    std::string m_strSettings;
    CDeskTradeFrameworkSource& m_framework;
    std::vector<std::string> m_saved;
};

} // namespace desk
