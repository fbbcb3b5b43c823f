#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/config/TomlSection.h"

#include <string>

/// Warnings that several tables share.
namespace desk {

/// Warns about a setting whose orders the desk rejects, and about a setting with limits, because limits have
/// no effect. `orderTypeKey` is the key of the setting's order type.
void warnOfSetting(const CTomlSection& section, const TC::COrderSetting& setting,
                   const std::string& orderTypeKey);

/// Warns about a volume that is not a multiple of the instrument's trading unit. The warning is on the line
/// of the key `volume`.
void warnOfUnit(const CTomlSection& section, int volume, const CInstrumentEntry& instrument);

} // namespace desk
