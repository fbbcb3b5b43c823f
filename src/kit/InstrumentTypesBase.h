#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/base/Unset.h"
#include "orderservice/platform/InstrumentTypes.h"

namespace kit {

/// The units of a host that shows the user the trading unit. The host implements isTypedStock and
/// getTradeMinUnit. Any thread, like CInstrumentTypes.
class ORDERSERVICE_EXPORT CInstrumentTypesBase : public knservice::CInstrumentTypes {
public:
    /// Returns getTradeMinUnit without an operation: the unit that is valid for any operation.
    int getUiMinUnit(const std::string& market, const std::string& code, bool) override {
        return getTradeMinUnit(market, code, TC::unsetEnum<TC::EOperationType>());
    }
};

} // namespace kit
