#include "orderservice/platform/TradingRules.h"

#include "orderservice/platform/HostCall.h"

namespace TC {

QString qdStockKey(const QString& market, const QString& code) {
    return hostCall<&CTradingRules::qdStockKey>(market, code);
}

EQDBrokerType orderStrategyTradeTypeToBrokerType(EOrderStrategyTradeType tradeType) {
    return hostCall<&CTradingRules::orderStrategyTradeTypeToBrokerType>(tradeType);
}

QString getAccountFromOrderParam(const QString& part1, const QString& part2) {
    return hostCall<&CTradingRules::getAccountFromOrderParam>(part1, part2);
}

bool parserOrderTradeParam(const std::string& text, COrderTradeParam& param) {
    return hostCall<&CTradingRules::parserOrderTradeParam>(text, param);
}

void orderSettingFromString(COrderSetting& setting, const QString& text) {
    hostCall<&CTradingRules::orderSettingFromString>(setting, text);
}

void orderSettingToParam(const COrderSetting& setting, CCodeOrderParam& record, EOperationType operation,
                         int volume, double price, const CPriceDataPtr& quote) {
    hostCall<&CTradingRules::orderSettingToParam>(setting, record, operation, volume, price, quote);
}

void fixTimeRange(CCodeOrderParam& record) {
    hostCall<&CTradingRules::fixTimeRange>(record);
}

bool isBuy(EOperationType operation) {
    return hostCall<&CTradingRules::isBuy>(operation);
}

bool isClose(EOperationType operation) {
    return hostCall<&CTradingRules::isClose>(operation);
}

bool COperationRules::isLong(EOperationType operation) {
    switch (operation) {
    case EOperationType::OpenShort:
    case EOperationType::CloseShortEarlier:
    case EOperationType::CloseShortToday:
    case EOperationType::CloseShortTodayFirst:
    case EOperationType::CloseShortEarlierFirst:
    case EOperationType::CloseShortTodayFirstThenOpenLong:
    case EOperationType::CloseShortEarlierFirstThenOpenLong:
        return false;
    default:
        return true;
    }
}

bool isLong(EOperationType operation) {
    return hostCall<&CTradingRules::isLong>(operation);
}

bool isDirectRepay(EOperationType operation) {
    return hostCall<&CTradingRules::isDirectRepay>(operation);
}

EEntrustTypes operationTypeToEntrustType(EOperationType operation) {
    return hostCall<&CTradingRules::operationTypeToEntrustType>(operation);
}

QString orderStrategyTypeToOrderTitle(EOrderStrategyType type) {
    return hostCall<&CTradingRules::orderStrategyTypeToOrderTitle>(type);
}

QString orderStrategyTypeToString(EOrderStrategyType type) {
    return hostCall<&CTradingRules::orderStrategyTypeToString>(type);
}

QString orderStrategyOrderTypeToString(int orderType) {
    return hostCall<&CTradingRules::orderStrategyOrderTypeToString>(orderType);
}

QString orderStrategyTradeTypeToString(EOrderStrategyTradeType tradeType) {
    return hostCall<&CTradingRules::orderStrategyTradeTypeToString>(tradeType);
}

QString knPriceTypeToString(EPriceType priceType, const std::string& code, bool shortForm) {
    return hostCall<&CTradingRules::knPriceTypeToString>(priceType, code, shortForm);
}

QString accountDisplayIDQs(const CAccountInfo& account) {
    return hostCall<&CTradingRules::accountDisplayIDQs>(account);
}

void CCommonDataHelper::filterZeroStock(std::vector<CCodeOrderParam>& records) {
    hostCall<&CTradingRules::filterZeroStock>(records);
}

void CCommonDataHelper::fillOverFreqOrderMode(std::vector<CCodeOrderParam>& records) {
    hostCall<&CTradingRules::fillOverFreqOrderMode>(records);
}

} // namespace TC

namespace knservice {

bool isMarketPrice(TC::EPriceType priceType) {
    return TC::hostCall<&TC::CTradingRules::isMarketPrice>(priceType);
}

bool DataHelper::isBuy(TC::EOperationType operation) {
    return TC::isBuy(operation);
}

bool DataHelper::isAlgoOrderType(TC::EOrderType orderType) {
    return TC::hostCall<&TC::CTradingRules::isAlgoOrderType>(orderType);
}

TC::ETradePlatform DataHelper::getPlatformTypeByOrderType(TC::EOrderType orderType) {
    return TC::hostCall<&TC::CTradingRules::getPlatformTypeByOrderType>(orderType);
}

} // namespace knservice
