#pragma once

#include "platform/HostService.h"
#include "platform/Quote.h"
#include "records/CommandParam.h"
#include "records/Enums.h"
#include "records/OrderParam.h"
#include "records/OrderSetting.h"

#include <QString>

#include <string>

namespace TC {

/// The trading layer's rules and words. Every operation may be called from any thread, answers at once and
/// does not throw. A number that the host does not know is no error.
class CTradingRules : public CHostService<CTradingRules> {
public:
    static constexpr const char* kServiceName = "CTradingRules";

    /// Market and code as one instrument key, such as "SH600000". Stock codes are also looked for as the
    /// plain market and code one behind the other.
    virtual QString qdStockKey(const QString& market, const QString& code) = 0;
    /// The kind of account that a family trades on, as in records/Families.h.
    virtual EQDBrokerType orderStrategyTradeTypeToBrokerType(EOrderStrategyTradeType tradeType) = 0;
    /// The account key that the two halves of trade parameters name; empty if they name none, which refuses
    /// the order.
    virtual QString getAccountFromOrderParam(const QString& part1, const QString& part2) = 0;

    /// Reads the text behind `orderParam=` of an order file, GBK, and sets every field of the record; the
    /// remark in GBK, as it came. False if the text is not understood: then the record keeps what it had, and
    /// the orders go out without these parameters. To refuse them instead, give true and halves of an account
    /// that does not exist. File thread, with the registry locked.
    virtual bool parserOrderTradeParam(const std::string& text, COrderTradeParam& param) = 0;
    /// Reads the setting text of an order into the setting and changes what the text names. There is no
    /// failure: for a text that is not understood, take the price type away, so that the order is refused.
    virtual void orderSettingFromString(COrderSetting& setting, const QString& text) = 0;
    /// Puts the setting into a record: price type, price, order type and whatever else the host keeps there.
    /// volume: shares or lots. price: currency units, may be unset. quote: may be empty. Can be called with
    /// the lock of an account's data held.
    virtual void orderSettingToParam(const COrderSetting& setting, CCodeOrderParam& record,
                                     EOperationType operation, int volume, double price,
                                     const CPriceDataPtr& quote) = 0;
    /// Moves the record's time range, if the host keeps one, into the trading day.
    virtual void fixTimeRange(CCodeOrderParam& record) = 0;

    /// Whether an operation buys.
    virtual bool isBuy(EOperationType operation) = 0;
    /// Whether an operation closes a position. Such an order of futures must name its volume.
    virtual bool isClose(EOperationType operation) = 0;
    /// Whether an operation repays an amount of money. True for 25 and 1021, the operations of the order
    /// numbers 32 and 39: otherwise the strategy's volume would be repaid in place of the amount.
    virtual bool isDirectRepay(EOperationType operation) = 0;
    /// How the broker books an operation of margin trading; unset without margin trading.
    virtual EEntrustTypes operationTypeToEntrustType(EOperationType operation) = 0;

    /// Whether the price type is a market price, which needs no number.
    virtual bool isMarketPrice(EPriceType priceType) = 0;
    /// Whether orders of the kind are worked off by an algorithm. False for a plain or unset kind.
    virtual bool isAlgoOrderType(EOrderType orderType) = 0;
    /// The platform that executes an algorithm's orders. Asked only if isAlgoOrderType is true.
    virtual ETradePlatform getPlatformTypeByOrderType(EOrderType orderType) = 0;

    /// Words for the user: the title in front of a source's messages, a source, an order number, a family and
    /// a price type. Never empty; a number without a word gets a word of the host's choice.
    virtual QString orderStrategyTypeToOrderTitle(EOrderStrategyType type) = 0;
    virtual QString orderStrategyTypeToString(EOrderStrategyType type) = 0;
    virtual QString orderStrategyOrderTypeToString(int orderType) = 0;
    virtual QString orderStrategyTradeTypeToString(EOrderStrategyTradeType tradeType) = 0;
    virtual QString knPriceTypeToString(EPriceType priceType, const std::string& code, bool shortForm) = 0;
};

/// The operations of the installed host. Any thread.
QString qdStockKey(const QString& market, const QString& code);
EQDBrokerType orderStrategyTradeTypeToBrokerType(EOrderStrategyTradeType tradeType);
QString getAccountFromOrderParam(const QString& part1, const QString& part2);
bool parserOrderTradeParam(const std::string& text, COrderTradeParam& param);
void orderSettingFromString(COrderSetting& setting, const QString& text);
void orderSettingToParam(const COrderSetting& setting, CCodeOrderParam& record, EOperationType operation,
                         int volume, double price, const CPriceDataPtr& quote);
void fixTimeRange(CCodeOrderParam& record);
bool isBuy(EOperationType operation);
bool isClose(EOperationType operation);
bool isDirectRepay(EOperationType operation);
EEntrustTypes operationTypeToEntrustType(EOperationType operation);
QString orderStrategyTypeToOrderTitle(EOrderStrategyType type);
QString orderStrategyTypeToString(EOrderStrategyType type);
QString orderStrategyOrderTypeToString(int orderType);
QString orderStrategyTradeTypeToString(EOrderStrategyTradeType tradeType);
QString knPriceTypeToString(EPriceType priceType, const std::string& code, bool shortForm);

} // namespace TC

namespace knservice {

bool isMarketPrice(TC::EPriceType priceType);

struct DataHelper {
    static bool isAlgoOrderType(TC::EOrderType orderType);
    static TC::ETradePlatform getPlatformTypeByOrderType(TC::EOrderType orderType);
};

} // namespace knservice
