#include "desk/host/DeskInstrumentTypes.h"

#include <algorithm>

namespace desk {

bool CDeskInstrumentTypes::isTypedStock(int type, const std::string& market, const std::string& code) {
    const auto instrument = m_source.instrument(market + code);
    return instrument && instrument->types.count(type) > 0;
}

int CDeskInstrumentTypes::getTradeMinUnit(const std::string& market, const std::string& code,
                                          TC::EOperationType) {
    const auto instrument = m_source.instrument(market + code);
    return instrument ? std::max(instrument->unit, 1) : 1;
}

int CDeskInstrumentTypes::getUiMinUnit(const std::string& market, const std::string& code, bool) {
    const auto instrument = m_source.instrument(market + code);
    return instrument ? std::max(instrument->uiUnit, 1) : 1;
}

} // namespace desk
