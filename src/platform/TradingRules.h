#pragma once

#include "orderservice/platform/HostService.h"
#include "orderservice/platform/OperationRules.h"
#include "orderservice/platform/OrderTexts.h"
#include "orderservice/platform/Quote.h"
#include "orderservice/platform/TradingTexts.h"
#include "orderservice/records/CommandParam.h"
#include "orderservice/records/Enums.h"
#include "orderservice/records/OrderParam.h"
#include "orderservice/records/OrderSetting.h"

#include <QString>

#include <string>

namespace TC {

/// The trading layer's rules and display texts. Every operation may be called from any thread, returns at
/// once and does not throw. A number that the host does not know is not an error.
///
/// The operations are in the base classes, one for each theme.
class CTradingRules : public CHostService<CTradingRules>,
                      public COrderTexts,
                      public COperationRules,
                      public CTradingTexts {
public:
    static constexpr const char* kServiceName = "CTradingRules";
};

/// These functions call the operations of the same name of the installed host. Any thread.
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
