// The free functions and static look-ups of the boundary, each a word to the installed service.
#include "base/Log.h"
#include "base/Text.h"
#include "platform/InstrumentTypes.h"
#include "platform/IntakeAudit.h"
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

namespace {

template<typename Report>
void tellSafely(void (CIntakeAudit::*record)(const Report&), const Report& report, const QString& source) {
    try {
        (CIntakeAudit::instance().*record)(report);
    } catch (...) {
        if (!utils::CLogCenter::logEnabled()) return;
        utils::CLogCenter::log(utils::ELogLevel::Error, utils::kStdFileLogger, nullptr, __FUNCTION__,
                               "the audit did not record what came in by " + source.toStdString());
    }
}

} // namespace

void tellAudit(const CIntakeReport& report) {
    tellSafely(&CIntakeAudit::recordIntake, report, report.m_strSource);
}

void tellAudit(const CDoorReport& report) {
    tellSafely(&CIntakeAudit::recordDoor, report, report.m_strSource);
}

void tellAudit(const CDiscardReport& report) {
    tellSafely(&CIntakeAudit::recordDiscard, report, report.m_strSource);
}

void tellAuditOfUnplaced(const QVector<COrderParam>& orders) {
    tellSafely(&CIntakeAudit::recordUnplaced, orders, QStringLiteral("the backlog"));
}

QString rejectedFolder() {
    try {
        return CIntakeAudit::instance().rejectedFolder();
    } catch (...) {
        return {}; // the files are kept beside their paths
    }
}

std::optional<CBasketSetting> findBasket(const CUserConfig& user, std::string_view name) {
    const CBasketMap baskets = user.getBaskets();
    auto found = baskets.constFind(UW::sToQs(name.data(), name.size()));
    if (found == baskets.constEnd()) found = baskets.constFind(UW::sToQsGBK(std::string(name)));
    return found != baskets.constEnd() ? std::optional<CBasketSetting>(found.value()) : std::nullopt;
}

bool hasAnyAccount(const CUserConfig& user, const COrderStrategyParam& strategy) {
    std::vector<CAccountInfoPtr> accounts;
    std::vector<double> ratios;
    user.getAccountsWeights(orderStrategyTradeTypeToBrokerType(strategy.m_eTradeType),
                            strategy.m_eSelectedAccountType, strategy.m_strSelectedAccount, accounts, ratios,
                            false);
    return !accounts.empty();
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

bool isBuy(EOperationType operation) {
    return CTradingRules::instance().isBuy(operation);
}

bool isClose(EOperationType operation) {
    return CTradingRules::instance().isClose(operation);
}

bool isDirectRepay(EOperationType operation) {
    return CTradingRules::instance().isDirectRepay(operation);
}

EEntrustTypes operationTypeToEntrustType(EOperationType operation) {
    return CTradingRules::instance().operationTypeToEntrustType(operation);
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
