#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/records/Basket.h"
#include "orderservice/records/Enums.h"
#include "orderservice/records/OrderSetting.h"
#include "orderservice/records/StrategyParam.h"

#include <array>
#include <string>

namespace TC {

class CUserConfig;

/// Two of the user's settings for a message type. The library only passes them on to showMsg.
struct CMsgFlags {
    bool m_bFirst = false;
    bool m_bSecond = false;
};

/// The bits of CUserSettings::testHintBeforeOrderFlag. Their numbers are those of the client's trade
/// settings.
inline constexpr int kHintRemarks = 1;         ///< the user may edit remarks in the confirmation
inline constexpr int kHintSocketOrders = 16;   ///< orders of sockets need a confirmation
inline constexpr int kHintOrderFiles = 32;     ///< orders of files need a confirmation
inline constexpr int kHintTableBatches = 1024; ///< batches of tables need a confirmation

/// The logged-in user's settings, baskets and strategies. A part of CUserConfig, whose comment says when the
/// operations are called.
class ORDERSERVICE_EXPORT CUserSettings {
public:
    using CService = CUserConfig; ///< reports show these operations under its name

    /// Polling interval of order files in milliseconds. If it is below 11, the file thread does not sleep at
    /// all.
    virtual int getMinFileServiceInterval() const = 0;

    /// The user's settings for a message type; both are off if there are no settings.
    virtual CMsgFlags getMsgFlags(EMsgTypeDef type) const = 0;

    /// Whether the user's trade settings have this bit; see kHintRemarks and the others. Called for one bit,
    /// by the two-pass variant and by the dialog of the confirmation.
    virtual bool testHintBeforeOrderFlag(int bit) const = 0;
    /// The same for the settings of all users. Called only if testHintBeforeOrderFlag is false.
    virtual bool testGlobalOrderHint(int bit) const = 0;

    /// Whether the user may use this price type for this operation on this instrument. market and code are
    /// UTF-8. Not called for specified prices, for an instrument without a quote, for baskets, futures and
    /// futures options, on the share-transfer market, and for the credit order numbers 29 to 32 and 37 to 39.
    virtual bool isPriceTypeValid(EPriceType priceType, EOperationType operation, EQDBrokerType broker,
                                  const std::string& market, const std::string& code,
                                  EOrderType orderType) const = 0;

    /// The default setting of new strategies for a family. Its price type must be set.
    virtual COrderSetting getDefaultOrderSetting(EDefaultSetting which) const = 0;
    /// The default settings of the slots 0 to 12, by slot. Each function call begins with them. By default
    /// those of getDefaultOrderSetting; a slot without one is as a new setting.
    virtual std::array<COrderSetting, kDefaultSlots> getDefaultOrderSettings() const;
    /// A copy of the user's named baskets, by name.
    virtual CBasketMap getBaskets() const = 0;

    /// The user's strategies by channel number. Never null; every call returns the same map. The host owns
    /// the map. After COrderService::loadFromConfig the library reads and writes it under the library's own
    /// mutex, and the host must access it only through COrderService.
    virtual COrderStrategyMap* getStrategyMap() = 0;

protected:
    virtual ~CUserSettings() = default;
};

} // namespace TC
