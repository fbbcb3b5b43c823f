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

/// The trading layer's rules and words. Any thread; every operation answers at once and none throws.
class CTradingRules : public CHostService<CTradingRules> {
public:
    static constexpr const char* kServiceName = "CTradingRules";

    /// Market and code as one instrument key, such as "SH600000".
    virtual QString qdStockKey(const QString& market, const QString& code) = 0;
    /// The kind of account that a family trades on.
    virtual EQDBrokerType orderStrategyTradeTypeToBrokerType(EOrderStrategyTradeType tradeType) = 0;
    /// An account key from the two halves that trade parameters name.
    virtual QString getAccountFromOrderParam(const QString& part1, const QString& part2) = 0;

    /// Reads the text behind `orderParam=`, in the local 8-bit encoding (GBK), and sets every field of the
    /// record anew. False where it is not understood; then the record stays as it was. The remark is given
    /// back as it came, in GBK.
    virtual bool parserOrderTradeParam(const std::string& text, COrderTradeParam& param) = 0;
    /// Reads a setting text into the setting, changing what the text names.
    virtual void orderSettingFromString(COrderSetting& setting, const QString& text) = 0;
    /// Stamps a record with the setting: price type, price, order type and whatever else the host keeps
    /// there. volume: shares or lots. price: currency units, may be unset. quote: may be empty.
    virtual void orderSettingToParam(const COrderSetting& setting, CCodeOrderParam& record,
                                     EOperationType operation, int volume, double price,
                                     const CPriceDataPtr& quote) = 0;
    /// Brings the record's time range into the trading day.
    virtual void fixTimeRange(CCodeOrderParam& record) = 0;

    /// Whether an operation buys, closes a position, or repays money at once.
    virtual bool isBuy(EOperationType operation) = 0;
    virtual bool isClose(EOperationType operation) = 0;
    virtual bool isDirectRepay(EOperationType operation) = 0;
    /// How the broker books an operation of margin trading.
    virtual EEntrustTypes operationTypeToEntrustType(EOperationType operation) = 0;

    /// Whether the price type is a market price, which needs no number.
    virtual bool isMarketPrice(EPriceType priceType) = 0;
    virtual bool isAlgoOrderType(EOrderType orderType) = 0;
    virtual ETradePlatform getPlatformTypeByOrderType(EOrderType orderType) = 0;

    /// Words for the user.
    virtual QString orderStrategyTypeToOrderTitle(EOrderStrategyType type) = 0;
    virtual QString orderStrategyTypeToString(EOrderStrategyType type) = 0;
    virtual QString orderStrategyOrderTypeToString(int orderType) = 0;
    virtual QString orderStrategyTradeTypeToString(EOrderStrategyTradeType tradeType) = 0;
    virtual QString knPriceTypeToString(EPriceType priceType, const std::string& code, bool shortForm) = 0;
};

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
