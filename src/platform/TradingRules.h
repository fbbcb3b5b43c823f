#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/platform/HostService.h"
#include "orderservice/platform/Quote.h"
#include "orderservice/records/CommandParam.h"
#include "orderservice/records/Enums.h"
#include "orderservice/records/OrderParam.h"
#include "orderservice/records/OrderSetting.h"

#include <QString>

#include <string>

namespace TC {

/// The trading layer's rules and display texts. Every operation may be called from any thread, returns at
/// once and does not throw. A number that the host does not know is not an error.
class ORDERSERVICE_EXPORT CTradingRules : public CHostService<CTradingRules> {
public:
    static constexpr const char* kServiceName = "CTradingRules";

    /// Market and code as one instrument key, such as "SH600000". Stock codes are also looked up under the
    /// market directly followed by the code.
    virtual QString qdStockKey(const QString& market, const QString& code) = 0;
    /// The kind of account that a family trades on, as in records/Families.h.
    virtual EQDBrokerType orderStrategyTradeTypeToBrokerType(EOrderStrategyTradeType tradeType) = 0;
    /// The account key that the two key parts of the trade parameters name. If it is empty, the order is
    /// refused.
    virtual QString getAccountFromOrderParam(const QString& part1, const QString& part2) = 0;

    /// Reads the text after `orderParam=` in an order file, in GBK, and sets every field of the record. The
    /// remark stays in GBK. Returns false if the text is not understood. Then the record must be unchanged,
    /// and the orders are sent without these parameters. To refuse the orders instead, return true and set
    /// the two account key parts to an account that does not exist. File thread, with the registry locked.
    virtual bool parserOrderTradeParam(const std::string& text, COrderTradeParam& param) = 0;
    /// Reads the setting text of an order and changes the fields of the setting that the text names. It
    /// cannot report a failure. If the text is not understood, set the price type to not set; then the order
    /// is refused.
    virtual void orderSettingFromString(COrderSetting& setting, const QString& text) = 0;
    /// Copies the setting into a record: price type, price, order type and any further fields that the host
    /// uses. volume: shares or lots. price: currency units, may be unset. quote: may be empty. May be called
    /// while the lock of an account's data is held.
    virtual void orderSettingToParam(const COrderSetting& setting, CCodeOrderParam& record,
                                     EOperationType operation, int volume, double price,
                                     const CPriceDataPtr& quote) = 0;
    /// Moves the record's time range into the trading day, if the host uses time ranges.
    virtual void fixTimeRange(CCodeOrderParam& record) = 0;

    /// Whether an operation buys.
    virtual bool isBuy(EOperationType operation) = 0;
    /// Whether an operation closes a position. A futures order that closes a position must name its volume.
    virtual bool isClose(EOperationType operation) = 0;
    /// Whether an operation repays an amount of money. It must be true for 25 and 1021, the operations of the
    /// order numbers 32 and 39. Otherwise the strategy's volume is repaid instead of the amount.
    virtual bool isDirectRepay(EOperationType operation) = 0;
    /// How the broker books an operation of margin trading. Not set if the host has no margin trading.
    virtual EEntrustTypes operationTypeToEntrustType(EOperationType operation) = 0;

    /// Whether the price type is a market price, which needs no number.
    virtual bool isMarketPrice(EPriceType priceType) = 0;
    /// Whether an algorithm executes orders of this kind. False for a plain or unset kind.
    virtual bool isAlgoOrderType(EOrderType orderType) = 0;
    /// The platform that executes an algorithm's orders. Called only if isAlgoOrderType is true.
    virtual ETradePlatform getPlatformTypeByOrderType(EOrderType orderType) = 0;

    /// Display texts for the user: the title of messages about a source, then the names of a source, an order
    /// number, a family and a price type. Never empty. The host chooses the text for an unknown number.
    virtual QString orderStrategyTypeToOrderTitle(EOrderStrategyType type) = 0;
    virtual QString orderStrategyTypeToString(EOrderStrategyType type) = 0;
    virtual QString orderStrategyOrderTypeToString(int orderType) = 0;
    virtual QString orderStrategyTradeTypeToString(EOrderStrategyTradeType tradeType) = 0;
    virtual QString knPriceTypeToString(EPriceType priceType, const std::string& code, bool shortForm) = 0;
};

/// These functions call the operations of the same name of the installed host. Any thread.
ORDERSERVICE_EXPORT QString qdStockKey(const QString& market, const QString& code);
ORDERSERVICE_EXPORT EQDBrokerType orderStrategyTradeTypeToBrokerType(EOrderStrategyTradeType tradeType);
ORDERSERVICE_EXPORT QString getAccountFromOrderParam(const QString& part1, const QString& part2);
ORDERSERVICE_EXPORT bool parserOrderTradeParam(const std::string& text, COrderTradeParam& param);
ORDERSERVICE_EXPORT void orderSettingFromString(COrderSetting& setting, const QString& text);
ORDERSERVICE_EXPORT void orderSettingToParam(const COrderSetting& setting, CCodeOrderParam& record,
                                             EOperationType operation, int volume, double price,
                                             const CPriceDataPtr& quote);
ORDERSERVICE_EXPORT void fixTimeRange(CCodeOrderParam& record);
ORDERSERVICE_EXPORT bool isBuy(EOperationType operation);
ORDERSERVICE_EXPORT bool isClose(EOperationType operation);
ORDERSERVICE_EXPORT bool isDirectRepay(EOperationType operation);
ORDERSERVICE_EXPORT EEntrustTypes operationTypeToEntrustType(EOperationType operation);
ORDERSERVICE_EXPORT QString orderStrategyTypeToOrderTitle(EOrderStrategyType type);
ORDERSERVICE_EXPORT QString orderStrategyTypeToString(EOrderStrategyType type);
ORDERSERVICE_EXPORT QString orderStrategyOrderTypeToString(int orderType);
ORDERSERVICE_EXPORT QString orderStrategyTradeTypeToString(EOrderStrategyTradeType tradeType);
ORDERSERVICE_EXPORT QString knPriceTypeToString(EPriceType priceType, const std::string& code,
                                                bool shortForm);

} // namespace TC

namespace knservice {

ORDERSERVICE_EXPORT bool isMarketPrice(TC::EPriceType priceType);

struct ORDERSERVICE_EXPORT DataHelper {
    static bool isAlgoOrderType(TC::EOrderType orderType);
    static TC::ETradePlatform getPlatformTypeByOrderType(TC::EOrderType orderType);
};

} // namespace knservice
