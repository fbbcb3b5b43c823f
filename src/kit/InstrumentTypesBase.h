#pragma once

#include "base/Unset.h"
#include "platform/InstrumentTypes.h"

namespace kit {

/// Units of a host that shows the same unit to the user as it trades in. The host implements isTypedStock and
/// getTradeMinUnit. Any thread, like CInstrumentTypes.
class CInstrumentTypesBase : public knservice::CInstrumentTypes {
public:
    /// Returns the trading unit for an operation that is not set.
    int getUiMinUnit(const std::string& market, const std::string& code, bool) override {
        return getTradeMinUnit(market, code, TC::unsetEnum<TC::EOperationType>());
    }
};

} // namespace kit
