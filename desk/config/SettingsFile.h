#pragma once

#include "base/KNError.h"
#include "desk/config/DeskConfig.h"
#include "desk/config/Diagnostics.h"
#include "desk/config/FolderFiles.h"
#include "records/TradeInterface.h"

#include <string>

namespace desk {

/// What a new settings.xml is before the order service has put the interfaces into it.
inline constexpr const char* kEmptySettings = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                              "<!-- The trade framework's interfaces. Edit this while the "
                                              "desk is off; the desk writes it anew when they "
                                              "have changed. -->\n"
                                              "<settings><interfaceTrade/></settings>";

/// Reads settings.xml of the folder, which may be missing, and holds it to what the order service can load
/// and the desk can write again.
void readSettings(const std::string& folder, CDeskConfig& config, CDiagnostics& diagnostics);

/// Puts the text in the place of settings.xml, whole or not at all. A text that could not be read at the next
/// start, or that would be read as others than the interfaces (null ones do not count), leaves the file as it
/// was.
[[nodiscard]] utils::KNError saveSettings(const std::string& folder, const std::string& text,
                                          const knservice::TradeInterfaceList& interfaces);

} // namespace desk
