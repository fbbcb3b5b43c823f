#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/platform/HostService.h"
#include "orderservice/platform/OperationRules.h"
#include "orderservice/platform/OrderTexts.h"
#include "orderservice/platform/Quote.h"
#include "orderservice/platform/RecordRules.h"
#include "orderservice/platform/TradingTexts.h"
#include "orderservice/records/CommandParam.h"
#include "orderservice/records/Enums.h"
#include "orderservice/records/OrderParam.h"
#include "orderservice/records/OrderSetting.h"

#include <QString>

#include <string>
#include <vector>

namespace TC {

/// The trading layer's rules and display texts. Every operation may be called from any thread, returns at
/// once and does not throw. A number that the host does not know is not an error.
///
/// The operations are in the base classes, one for each theme.
class ORDERSERVICE_EXPORT CTradingRules : public CHostService<CTradingRules>,
                                          public COrderTexts,
                                          public COperationRules,
                                          public CRecordRules,
                                          public CTradingTexts {
public:
    static constexpr const char* kServiceName = "CTradingRules";
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
ORDERSERVICE_EXPORT bool isLong(EOperationType operation);
ORDERSERVICE_EXPORT bool isDirectRepay(EOperationType operation);
ORDERSERVICE_EXPORT EEntrustTypes operationTypeToEntrustType(EOperationType operation);
ORDERSERVICE_EXPORT QString orderStrategyTypeToOrderTitle(EOrderStrategyType type);
ORDERSERVICE_EXPORT QString orderStrategyTypeToString(EOrderStrategyType type);
ORDERSERVICE_EXPORT QString orderStrategyOrderTypeToString(int orderType);
ORDERSERVICE_EXPORT QString orderStrategyTradeTypeToString(EOrderStrategyTradeType tradeType);
ORDERSERVICE_EXPORT QString knPriceTypeToString(EPriceType priceType, const std::string& code,
                                                bool shortForm);
ORDERSERVICE_EXPORT QString accountDisplayIDQs(const CAccountInfo& account);

struct ORDERSERVICE_EXPORT CCommonDataHelper {
    static void filterZeroStock(std::vector<CCodeOrderParam>& records);
    static void fillOverFreqOrderMode(std::vector<CCodeOrderParam>& records);
};

} // namespace TC

namespace knservice {

ORDERSERVICE_EXPORT bool isMarketPrice(TC::EPriceType priceType);

struct ORDERSERVICE_EXPORT DataHelper {
    static bool isBuy(TC::EOperationType operation);
    static bool isAlgoOrderType(TC::EOrderType orderType);
    static TC::ETradePlatform getPlatformTypeByOrderType(TC::EOrderType orderType);
};

} // namespace knservice
