#include "orderservice/platform/InstrumentTypes.h"

#include "orderservice/platform/HostCall.h"

namespace knservice {

bool StockTypeCenter::isTypedStock(int type, const std::string& market, const std::string& code) {
    return TC::hostCall<&CInstrumentTypes::isTypedStock>(type, market, code);
}

bool isTypedStock(int type, const std::string& market, const std::string& code, const std::string&) {
    return TC::hostCall<&CInstrumentTypes::isTypedStock>(type, market, code);
}

int getTradeMinUnit(const std::string& market, const std::string& code, TC::EOperationType operation) {
    return TC::hostCall<&CInstrumentTypes::getTradeMinUnit>(market, code, operation);
}

int getUiMinUnit(const std::string& market, const std::string& code, bool forTrade) {
    return TC::hostCall<&CInstrumentTypes::getUiMinUnit>(market, code, forTrade);
}

} // namespace knservice
