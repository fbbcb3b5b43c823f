// The free functions and static member functions of the host interface. Most of them only call the installed
// service.
#include "orderservice/base/Text.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/HostReports.h"
#include "orderservice/platform/InstrumentTypes.h"
#include "orderservice/platform/IntakeAudit.h"
#include "orderservice/platform/LuaModuleCtrl.h"
#include "orderservice/platform/MsgService.h"
#include "orderservice/platform/Quote.h"
#include "orderservice/platform/TradingRules.h"
#include "orderservice/platform/UserConfig.h"

namespace TC {

CUserConfig* getUserConfig() {
    return hostCall<&CUserManager::getUserConfig>();
}

void showServiceMsg(const QString& text) {
    CMsgFlags flags;
    if (const CUserConfig* user = getUserConfig())
        flags = hostCall<&CUserConfig::getMsgFlags>.on(*user, EMsgTypeDef::General);
    hostCall<&CMsgService::showMsg>(text, EMsgTypeDef::General, MsgLevel::Note, flags.m_bFirst,
                                    flags.m_bSecond, QString());
}

namespace {

template<auto Record, typename Report>
void tellSafely(const Report& report) {
    try {
        hostCall<Record>(report);
    } catch (...) {
        reportFailure(QStringLiteral("审计记录失败"));
    }
}

} // namespace

void tellAudit(const CIntakeReport& report) {
    tellSafely<&CIntakeAudit::recordIntake>(report);
}

void tellAudit(const CDoorReport& report) {
    tellSafely<&CIntakeAudit::recordDoor>(report);
}

void tellAudit(const CDiscardReport& report) {
    tellSafely<&CIntakeAudit::recordDiscard>(report);
}

void tellAudit(const CIncidentReport& report) {
    tellSafely<&CIntakeAudit::recordIncident>(report);
}

void tellAuditOfUnplaced(const QVector<COrderParam>& orders) {
    tellSafely<&CIntakeAudit::recordUnplaced>(orders);
}

QString rejectedFolder() {
    try {
        return hostCall<&CIntakeAudit::rejectedFolder>();
    } catch (...) {
        reportFailure(QStringLiteral("被拒文件目录未知, 文件留在原目录"));
        return {};
    }
}

void tellOrdersDropped(int channel, int orders, const QString& cause) {
    CIncidentReport report;
    report.m_eIncident = EIncident::OrdersDropped;
    report.m_nChannel = channel;
    report.m_nOrders = orders;
    report.m_strCause = cause;
    tellAudit(report);
}

std::optional<CBasketSetting> findBasket(const CUserConfig& user, std::string_view name) {
    const CBasketMap baskets = hostCall<&CUserConfig::getBaskets>.on(user);
    auto found = baskets.constFind(UW::sToQs(name.data(), name.size()));
    if (found == baskets.constEnd()) found = baskets.constFind(UW::sToQsGBK(std::string(name)));
    return found != baskets.constEnd() ? std::optional<CBasketSetting>(found.value()) : std::nullopt;
}

bool hasAnyAccount(const CUserConfig& user, const COrderStrategyParam& strategy) {
    std::vector<CAccountInfoPtr> accounts;
    std::vector<double> ratios;
    hostCall<&CUserConfig::getAccountsWeights>.on(
        user, orderStrategyTradeTypeToBrokerType(strategy.m_eTradeType), strategy.m_eSelectedAccountType,
        strategy.m_strSelectedAccount, accounts, ratios, false);
    return !accounts.empty();
}

boost::shared_ptr<CQuoteRequest> CQuoteRequest::makeRequest(const QString& stockKey,
                                                            const CCallback& callback, ESubscribeType type) {
    return hostCall<&CQuoteClient::subscribe>(stockKey, callback, type);
}

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

} // namespace TC

namespace knservice {

bool isMarketPrice(TC::EPriceType priceType) {
    return TC::hostCall<&TC::CTradingRules::isMarketPrice>(priceType);
}

bool DataHelper::isAlgoOrderType(TC::EOrderType orderType) {
    return TC::hostCall<&TC::CTradingRules::isAlgoOrderType>(orderType);
}

TC::ETradePlatform DataHelper::getPlatformTypeByOrderType(TC::EOrderType orderType) {
    return TC::hostCall<&TC::CTradingRules::getPlatformTypeByOrderType>(orderType);
}

bool StockTypeCenter::isTypedStock(int type, const std::string& market, const std::string& code) {
    return TC::hostCall<&CInstrumentTypes::isTypedStock>(type, market, code);
}

bool isTypedStock(int type, const std::string& market, const std::string& code, const std::string&) {
    return TC::hostCall<&CInstrumentTypes::isTypedStock>(type, market, code);
}

int getTradeMinUnit(const std::string& market, const std::string& code, TC::EOperationType operation) {
    return TC::hostCall<&CInstrumentTypes::getTradeMinUnit>(market, code, operation);
}

int getUiMinUnit(const std::string& market, const std::string& code, bool forTrade) {
    return TC::hostCall<&CInstrumentTypes::getUiMinUnit>(market, code, forTrade);
}

} // namespace knservice

namespace luawrapper {

bool isOrderSwitchOn(const char* name) {
    return TC::hostCall<&LuaModuleCtrl::checkModule>({"mdl_order", name});
}

} // namespace luawrapper
