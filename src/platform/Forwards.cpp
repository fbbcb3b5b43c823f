// The free functions and static look-ups of the boundary, each a word to the installed service.
#include "platform/InstrumentTypes.h"
#include "platform/LuaModuleCtrl.h"
#include "platform/MsgService.h"
#include "platform/Quote.h"
#include "platform/TradingRules.h"
#include "platform/UserConfig.h"

namespace TC {

CUserConfig* getUserConfig() {
    return CUserManager::instance().getUserConfig();
}

void showServiceMsg(const QString& text) {
    CMsgFlags flags;
    if (const CUserConfig* user = getUserConfig()) flags = user->getMsgFlags(EMsgTypeDef::General);
    CMsgService::instance().showMsg(text, EMsgTypeDef::General, MsgLevel::Note, flags.m_bFirst,
                                    flags.m_bSecond, QString());
}

boost::shared_ptr<CQuoteRequest> CQuoteRequest::makeRequest(const QString& stockKey,
                                                            const CCallback& callback, ESubscribeType type) {
    return CQuoteClient::instance().subscribe(stockKey, callback, type);
}

QString qdStockKey(const QString& market, const QString& code) {
    return CTradingRules::instance().qdStockKey(market, code);
}

EQDBrokerType orderStrategyTradeTypeToBrokerType(EOrderStrategyTradeType tradeType) {
    return CTradingRules::instance().orderStrategyTradeTypeToBrokerType(tradeType);
}

QString getAccountFromOrderParam(const QString& part1, const QString& part2) {
    return CTradingRules::instance().getAccountFromOrderParam(part1, part2);
}

bool parserOrderTradeParam(const std::string& text, COrderTradeParam& param) {
    return CTradingRules::instance().parserOrderTradeParam(text, param);
}

void orderSettingFromString(COrderSetting& setting, const QString& text) {
    CTradingRules::instance().orderSettingFromString(setting, text);
}

void orderSettingToParam(const COrderSetting& setting, CCodeOrderParam& record, EOperationType operation,
                         int volume, double price, const CPriceDataPtr& quote) {
    CTradingRules::instance().orderSettingToParam(setting, record, operation, volume, price, quote);
}

void fixTimeRange(CCodeOrderParam& record) {
    CTradingRules::instance().fixTimeRange(record);
}

QString orderStrategyTypeToOrderTitle(EOrderStrategyType type) {
    return CTradingRules::instance().orderStrategyTypeToOrderTitle(type);
}

QString orderStrategyTypeToString(EOrderStrategyType type) {
    return CTradingRules::instance().orderStrategyTypeToString(type);
}

QString orderStrategyOrderTypeToString(int orderType) {
    return CTradingRules::instance().orderStrategyOrderTypeToString(orderType);
}

QString orderStrategyTradeTypeToString(EOrderStrategyTradeType tradeType) {
    return CTradingRules::instance().orderStrategyTradeTypeToString(tradeType);
}

QString knPriceTypeToString(EPriceType priceType, const std::string& code, bool shortForm) {
    return CTradingRules::instance().knPriceTypeToString(priceType, code, shortForm);
}

} // namespace TC

namespace knservice {

bool isMarketPrice(TC::EPriceType priceType) {
    return TC::CTradingRules::instance().isMarketPrice(priceType);
}

bool DataHelper::isAlgoOrderType(TC::EOrderType orderType) {
    return TC::CTradingRules::instance().isAlgoOrderType(orderType);
}

TC::ETradePlatform DataHelper::getPlatformTypeByOrderType(TC::EOrderType orderType) {
    return TC::CTradingRules::instance().getPlatformTypeByOrderType(orderType);
}

bool StockTypeCenter::isTypedStock(int type, const std::string& market, const std::string& code) {
    return CInstrumentTypes::instance().isTypedStock(type, market, code);
}

bool isTypedStock(int type, const std::string& market, const std::string& code, const std::string&) {
    return CInstrumentTypes::instance().isTypedStock(type, market, code);
}

int getTradeMinUnit(const std::string& market, const std::string& code, TC::EOperationType operation) {
    return CInstrumentTypes::instance().getTradeMinUnit(market, code, operation);
}

int getUiMinUnit(const std::string& market, const std::string& code, bool forTrade) {
    return CInstrumentTypes::instance().getUiMinUnit(market, code, forTrade);
}

} // namespace knservice

namespace luawrapper {

bool isOrderSwitchOn(const char* name) {
    return LuaModuleCtrl::instance().checkModule({"mdl_order", name});
}

} // namespace luawrapper
