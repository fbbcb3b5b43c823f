#pragma once

#include "base/KNError.h"
#include "desk/host/DeskTradeFrameworkSource.h"

#include <string>
#include <vector>

namespace desk {

/// Brings the interfaces of settings.xml to the trade framework by way of the order service, and those that
/// the framework has at the end back into the file. Main thread, while COrderService lives.
class CInterfaceKeeper {
public:
    /// settings: the text of settings.xml, found good, or empty. The framework outlives the keeper.
    CInterfaceKeeper(std::string folder, std::string settings, CDeskTradeFrameworkSource& framework);

    /// Once, at the start.
    void load();

    /// Writes settings.xml anew where the interfaces are not those that were loaded; a file that nobody has
    /// changed keeps its owner's layout.
    [[nodiscard]] utils::KNError save();

private:
    /// A text for each interface; the same texts are the same interfaces.
    std::vector<std::string> current() const;

    std::string m_strFolder;
    std::string m_strSettings;
    CDeskTradeFrameworkSource& m_framework;
    std::vector<std::string> m_saved;
};

} // namespace desk
