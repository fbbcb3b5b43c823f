#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/config/Diagnostics.h"
#include "desk/config/FolderFiles.h"
#include "orderservice/base/KNError.h"
#include "orderservice/records/TradeInterface.h"

#include <string>

namespace desk {

/// Content of a new settings.xml, before the order service has written the interfaces into it.
inline constexpr const char* kEmptySettings =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!-- The trade framework's interfaces. Edit this while the "
    "desk is off; the desk rewrites the file when they have changed. -->\n"
    "<settings><interfaceTrade/></settings>";

/// Reads settings.xml of the folder; the file may be missing. Checks that the order service can load it and
/// that the desk can write it again.
void readSettings(const std::string& folder, CDeskConfig& config, CDiagnostics& diagnostics);

/// Replaces settings.xml with the text, completely or not at all. The file is not changed if the next start
/// could not read the text, or would read other interfaces than `interfaces` from it. Null interfaces are
/// ignored.
[[nodiscard]] utils::KNError saveSettings(const std::string& folder, const std::string& text,
                                          const knservice::TradeInterfaceList& interfaces);

} // namespace desk
