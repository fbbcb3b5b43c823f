#pragma once

#include "platform/HostService.h"
#include "records/Enums.h"

#include <string>

namespace knservice {

/// Numbers of the host's table of instrument types that the order road asks for.
inline constexpr int kTypeTradableStock = 100028; ///< instruments that a bare code may mean
inline constexpr int kTypeStarMarket = 1172;      ///< the unit shown to the user is the one that counts
/// What a basket may hold: an instrument of none of them is passed over.
inline constexpr int kBasketTypes[] = {100003, 100016, 100004, 100024, 100013};
inline constexpr int kTypeParPriced = 126; ///< on SH: an amount buys at 100 a piece, whatever the quote says

/// Which types an instrument has, and its units. Any thread; answers at once. market and code are UTF-8.
class CInstrumentTypes : public TC::CHostService<CInstrumentTypes> {
public:
    static constexpr const char* kServiceName = "CInstrumentTypes";

    virtual bool isTypedStock(int type, const std::string& market, const std::string& code) = 0;
    /// The trading unit in shares or lots, at least 1. An unset operation asks for the unit of any.
    virtual int getTradeMinUnit(const std::string& market, const std::string& code,
                                TC::EOperationType operation) = 0;
    /// The unit shown to the user, at least 1.
    virtual int getUiMinUnit(const std::string& market, const std::string& code, bool forTrade) = 0;
};

/// The look-up that code resolution uses.
struct StockTypeCenter {
    static bool isTypedStock(int type, const std::string& market, const std::string& code);
};

/// The look-up that unit rules use; `productId` is empty wherever this system asks.
bool isTypedStock(int type, const std::string& market, const std::string& code, const std::string& productId);
int getTradeMinUnit(const std::string& market, const std::string& code, TC::EOperationType operation);
int getUiMinUnit(const std::string& market, const std::string& code, bool forTrade);

} // namespace knservice
