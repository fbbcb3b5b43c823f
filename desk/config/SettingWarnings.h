#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/config/TomlSection.h"

#include <string>

/// Warnings that several tables share.
namespace desk {

/// Of a setting whose orders the desk rejects, or that has limits: they have no effect. `orderTypeKey` is the
/// key of the setting's order type.
void warnOfSetting(const CTomlSection& section, const TC::COrderSetting& setting,
                   const std::string& orderTypeKey);

/// Of a volume that is no multiple of the instrument's trading unit. On the line of the key `volume`.
void warnOfUnit(const CTomlSection& section, int volume, const CInstrumentEntry& instrument);

} // namespace desk
