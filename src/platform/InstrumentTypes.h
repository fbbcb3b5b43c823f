#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/platform/HostService.h"
#include "orderservice/records/Enums.h"

#include <string>

namespace knservice {

/// Numbers in the host's table of instrument types that the order checks use.
inline constexpr int kTypeTradableStock = 100028; ///< instruments that a code without a market may name
inline constexpr int kTypeStarMarket = 1172;      ///< its unit is getUiMinUnit, not getTradeMinUnit
/// Types of instruments that a basket may contain. Instruments of other types are left out.
inline constexpr int kBasketTypes[] = {100003, 100016, 100004, 100024, 100013};
/// On SH, an amount is converted to a volume at a price of 100, not at the quote.
inline constexpr int kTypeParPriced = 126;
inline constexpr double kParPrice = 100; ///< of an instrument of this type on SH, in currency units

/// Which types an instrument has, and its units. Every operation may be called from any thread, returns at
/// once and does not throw. market and code are UTF-8.
class ORDERSERVICE_EXPORT CInstrumentTypes : public TC::CHostService<CInstrumentTypes> {
public:
    static constexpr const char* kServiceName = "CInstrumentTypes";

    /// Whether the instrument has the type. False for an unknown instrument or type. An order can name a
    /// stock only if the stock has the type kTypeTradableStock.
    virtual bool isTypedStock(int type, const std::string& market, const std::string& code) = 0;
    /// The trading unit in shares or lots, at least 1, also for an unknown instrument. Volumes that are
    /// calculated from money are rounded down to this unit. If the operation is unset, return the unit that
    /// is valid for any operation.
    virtual int getTradeMinUnit(const std::string& market, const std::string& code,
                                TC::EOperationType operation) = 0;
    /// The unit that the client shows, in shares or lots, at least 1, also for an unknown instrument.
    /// forTrade: always true.
    virtual int getUiMinUnit(const std::string& market, const std::string& code, bool forTrade) = 0;
};

/// Calls CInstrumentTypes::isTypedStock of the installed host. Code resolution uses this name. Any thread.
struct ORDERSERVICE_EXPORT StockTypeCenter {
    static bool isTypedStock(int type, const std::string& market, const std::string& code);
};

/// Call the operations of the installed host. The unit rules use these names. productId is not used. Any
/// thread.
ORDERSERVICE_EXPORT bool isTypedStock(int type, const std::string& market, const std::string& code,
                                      const std::string& productId);
ORDERSERVICE_EXPORT int getTradeMinUnit(const std::string& market, const std::string& code,
                                        TC::EOperationType operation);
ORDERSERVICE_EXPORT int getUiMinUnit(const std::string& market, const std::string& code, bool forTrade);

} // namespace knservice
