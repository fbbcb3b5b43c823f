#pragma once

#include "base/Unset.h"
#include "platform/InstrumentTypes.h"

namespace kit {

/// Units of a host that shows the unit it trades in. The host answers isTypedStock and getTradeMinUnit. Any
/// thread, like CInstrumentTypes.
class CInstrumentTypesBase : public knservice::CInstrumentTypes {
public:
    /// The trading unit of any operation.
    int getUiMinUnit(const std::string& market, const std::string& code, bool) override {
        return getTradeMinUnit(market, code, TC::unsetEnum<TC::EOperationType>());
    }
};

} // namespace kit
