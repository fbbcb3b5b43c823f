#pragma once

#include "platform/HostService.h"
#include "records/Enums.h"

#include <string>

namespace knservice {

/// Numbers of the host's table of instrument types that the order road asks for.
inline constexpr int kTypeTradableStock = 100028; ///< instruments that a bare code may mean
inline constexpr int kTypeStarMarket = 1172;      ///< getUiMinUnit counts, not getTradeMinUnit
/// What a basket may hold: an instrument of none of these types is left out.
inline constexpr int kBasketTypes[] = {100003, 100016, 100004, 100024, 100013};
inline constexpr int kTypeParPriced = 126; ///< on SH: an amount buys at 100 a piece, not at the quote

/// Which types an instrument has, and its units. Every operation may be called from any thread, answers at
/// once and does not throw. market and code are UTF-8.
class CInstrumentTypes : public TC::CHostService<CInstrumentTypes> {
public:
    static constexpr const char* kServiceName = "CInstrumentTypes";

    /// Whether the instrument is of the type. False for an unknown instrument or type. A stock that is not of
    /// type kTypeTradableStock cannot be named in an order.
    virtual bool isTypedStock(int type, const std::string& market, const std::string& code) = 0;
    /// The trading unit in shares or lots, at least 1, also for an unknown instrument. Volumes that follow
    /// from money are rounded down to it. An unset operation asks for the unit of any.
    virtual int getTradeMinUnit(const std::string& market, const std::string& code,
                                TC::EOperationType operation) = 0;
    /// The unit that the client shows, in shares or lots, at least 1, also for an unknown instrument.
    /// forTrade: always true.
    virtual int getUiMinUnit(const std::string& market, const std::string& code, bool forTrade) = 0;
};

/// CInstrumentTypes::isTypedStock of the installed host, under the name that code resolution uses. Any
/// thread.
struct StockTypeCenter {
    static bool isTypedStock(int type, const std::string& market, const std::string& code);
};

/// The operations of the installed host under the names that unit rules use; productId is not used. Any
/// thread.
bool isTypedStock(int type, const std::string& market, const std::string& code, const std::string& productId);
int getTradeMinUnit(const std::string& market, const std::string& code, TC::EOperationType operation);
int getUiMinUnit(const std::string& market, const std::string& code, bool forTrade);

} // namespace knservice
