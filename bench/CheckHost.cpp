#include "bench/CheckHost.h"

#include "orderservice/platform/Quote.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <string>

namespace bench {
namespace {

class CCountingQuote : public TC::CPriceData {
public:
    CCountingQuote() {
        m_dLastPrice = m_dFallbackPrice = m_dUpperLimit = minimal::kPrice;
        m_nDayCount = 1;
    }
    double getOriginPrice(TC::EPriceType, TC::EOperationType) const override { return price(); }
    double getPriceForCalc(TC::EPriceType, TC::EOperationType, int,
                           const boost::shared_ptr<TC::CAutoPriceParam>&) const override {
        return price();
    }
    double getPriceForOrder(TC::EPriceType, TC::EOperationType, int,
                            const boost::shared_ptr<TC::CAutoPriceParam>&) const override {
        return price();
    }

private:
    static double price() {
        ++CCalls().of(EHostCall::QuotePrice);
        return minimal::kPrice;
    }
};

} // namespace

std::string differenceOf(const CCallCounts& before, const CCallCounts& between, const CCallCounts& after) {
    std::string text;
    for (std::size_t i = 0; i < before.size(); ++i) {
        const long first = between[i] - before[i], second = after[i] - between[i];
        if (first != second)
            text += " kind " + std::to_string(i) + ": " + std::to_string(first) + " and " +
                    std::to_string(second);
    }
    return text;
}

CCheckHost::CCheckHost(int accounts, int instruments) {
    for (int i = 0; i < accounts; ++i) {
        const auto account = boost::make_shared<TC::CAccountInfo>();
        account->m_strKey = "8000000" + std::to_string(i);
        account->m_nBrokerType = static_cast<int>(TC::EQDBrokerType::Stock);
        m_user.accounts.push_back(account);
        m_user.ratios.push_back(1.0 / accounts);
        m_user.userAccounts.push_back(
            boost::make_shared<kit::CPlainAccount>(account->m_strKey, TC::EQDBrokerType::Stock));
        m_user.group.m_accounts.push_back(account->m_strKey);
    }
    m_user.group.m_strName = groupName().toStdString();
    for (int i = 0; i < instruments; ++i) {
        addInstrument(m_exchange.stocks, QStringLiteral("SH") + stockCode(i), "SH", stockCode(i));
        addInstrument(m_exchange.others, futureCode(i), "IF", futureCode(i));
        addInstrument(m_exchange.others, optionCode(i), "SHO", optionCode(i));
    }
    TC::CHost host = m_host.services();
    host.userManager = &m_user;
    host.tradeClient = &m_trading;
    host.exchangeClient = &m_exchange;
    host.quoteClient = &m_quotes;
    host.tradingRules = &m_rules;
    host.instrumentTypes = &m_types;
    host.traderCenter = &m_tasks;
    host.orderClient = &m_orders;
    host.msgService = &m_messages;
    host.luaModuleCtrl = &m_switches;
    if (!TC::installHost(host).isSuccess()) std::abort();
}

CCheckHost::~CCheckHost() {
    TC::releaseHost();
}

void CCheckHost::addInstrument(QHash<QString, TC::CInstrumentDetailPtr>& list, const QString& key,
                               const char* market, const QString& code) {
    const auto detail = boost::make_shared<TC::CInstrumentDetail>();
    detail->m_strMarket = market;
    detail->m_strCode = code.toStdString();
    detail->m_strName = "stock " + detail->m_strCode;
    list.insert(key, detail);
    m_quotes.quotes.insert(key, boost::make_shared<CCountingQuote>());
}

void CCheckHost::hold(int index, int volume) {
    const auto position = boost::make_shared<knservice::CPositionStatics>();
    position->m_account = firstAccount();
    position->m_strMarket = "SH";
    position->m_strCode = stockCode(index).toStdString();
    position->m_nPositionVolume = volume;
    position->m_nAvailableVolume = volume;
    m_tasks.positions.push_back(position);
}

void CCheckHost::addBasket(const QString& name, int first, int rows) {
    constexpr int kRowVolume = 100;
    TC::CBasketSetting basket;
    for (int i = first; i < first + rows; ++i) {
        TC::CBasketStockData row;
        row.m_strMarket = QStringLiteral("SH");
        row.m_strCode = stockCode(i);
        row.m_nVolume = kRowVolume;
        basket.m_rows.append(row);
    }
    m_user.baskets.insert(name, basket);
}

std::size_t CCheckHost::dropCommands() {
    std::size_t records = 0;
    for (const TC::COrderComandParamPtr& command : m_orders.commands)
        records += command->m_codes.size();
    m_orders.commands.clear();
    return records;
}

TC::CUserConfig* CCheckHost::CUser::getUserConfig() {
    ++calls.of(EHostCall::UserConfig);
    return this;
}

std::string CCheckHost::CUser::getUserName() const {
    ++calls.of(EHostCall::UserName);
    return "demo";
}

void CCheckHost::CUser::getAccountsWeights(TC::EQDBrokerType, TC::ESelectedAccountType, const QString&,
                                           std::vector<TC::CAccountInfoPtr>& found,
                                           std::vector<double>& foundRatios, bool) const {
    ++calls.of(EHostCall::AccountsWeights);
    found.insert(found.end(), accounts.begin(), accounts.end());
    foundRatios.insert(foundRatios.end(), ratios.begin(), ratios.end());
}

bool CCheckHost::CUser::isPriceTypeValid(TC::EPriceType, TC::EOperationType, TC::EQDBrokerType,
                                         const std::string&, const std::string&, TC::EOrderType) const {
    ++calls.of(EHostCall::PriceTypeValid);
    return true;
}

std::array<TC::COrderSetting, TC::kDefaultSlots> CCheckHost::CUser::getDefaultOrderSettings() const {
    ++calls.of(EHostCall::DefaultSettings);
    return settings;
}

TC::CBasketMap CCheckHost::CUser::getBaskets() const {
    ++calls.of(EHostCall::Baskets);
    return baskets;
}

std::vector<TC::CAccountPtr> CCheckHost::CUser::getAccounts() const {
    ++calls.of(EHostCall::Accounts);
    return userAccounts;
}

bool CCheckHost::CUser::hasAccount(const QString& name) const {
    ++calls.of(EHostCall::HasAccount);
    return std::any_of(accounts.begin(), accounts.end(),
                       [&](const auto& account) { return name == QLatin1String(account->m_strKey.c_str()); });
}

const TC::CAccountGroup* CCheckHost::CUser::getAccountGroupConst(TC::EQDBrokerType,
                                                                 const QString& name) const {
    ++calls.of(EHostCall::AccountGroup);
    return name == groupName() ? &group : nullptr;
}

int CCheckHost::CUser::getUserKind() const {
    ++calls.of(EHostCall::UserKind);
    return minimal::CUser::getUserKind();
}

TC::CMsgFlags CCheckHost::CUser::getMsgFlags(TC::EMsgTypeDef) const {
    ++calls.of(EHostCall::MsgFlags);
    return {};
}

void CCheckHost::COrders::orderCommands(const TC::COrderComandParamPtr& command) {
    ++calls.of(EHostCall::OrderCommand);
    count.fetch_add(1, std::memory_order_relaxed);
    if (isKeeping) commands.push_back(command);
}

void CCheckHost::CMessages::showMsg(const QString&, TC::EMsgTypeDef, TC::MsgLevel, bool, bool,
                                    const QString&) {
    ++calls.of(EHostCall::Message);
}

bool CCheckHost::CSwitches::checkModule(const std::vector<std::string>& path) {
    ++calls.of(EHostCall::CheckModule);
    return kit::CLuaModuleCtrlBase::checkModule(path);
}

TC::EBROKER_LOGIN_STATUS CCheckHost::CTrading::getLoginStatus(const std::string&) {
    ++calls.of(EHostCall::LoginStatus);
    return TC::EBROKER_LOGIN_STATUS::LoggedIn;
}

std::vector<int> CCheckHost::CTrading::splitEntrusts(int volume, double, TC::EPriceType,
                                                     const std::vector<TC::CAccountInfoPtr>& accounts,
                                                     const std::vector<double>&, TC::EPositionType,
                                                     const std::string&, const std::string&,
                                                     TC::EOperationType, TC::EHedge_Flag_Type,
                                                     const boost::shared_ptr<utils::KNError>&) {
    ++calls.of(EHostCall::SplitEntrusts);
    return std::vector<int>(accounts.size(), volume / static_cast<int>(accounts.size()));
}

bool CCheckHost::CExchange::hasStock(const QString& key) {
    ++calls.of(EHostCall::HasStock);
    return stocks.contains(key);
}

bool CCheckHost::CExchange::hasFuture(const QString& key) {
    ++calls.of(EHostCall::HasFuture);
    return others.contains(key);
}

bool CCheckHost::CExchange::hasOption(const QString& key) {
    ++calls.of(EHostCall::HasOption);
    return others.contains(key);
}

TC::CInstrumentDetailPtr CCheckHost::CExchange::getCodeInfo(const QString& key) {
    ++calls.of(EHostCall::CodeInfo);
    const auto stock = stocks.constFind(key);
    return stock != stocks.constEnd() ? *stock : others.value(key);
}

TC::CPriceDataPtr CCheckHost::CQuotes::getStockPrice(const QString& key) {
    ++calls.of(EHostCall::StockPrice);
    return quotes.value(key);
}

boost::shared_ptr<TC::CQuoteRequest>
CCheckHost::CQuotes::subscribe(const QString&, const TC::CQuoteRequest::CCallback&, TC::ESubscribeType) {
    ++calls.of(EHostCall::Subscribe);
    return boost::make_shared<TC::CQuoteRequest>();
}

QString CCheckHost::CRules::qdStockKey(const QString& market, const QString& code) {
    ++calls.of(EHostCall::StockKey);
    return market + code;
}

TC::EQDBrokerType CCheckHost::CRules::orderStrategyTradeTypeToBrokerType(TC::EOrderStrategyTradeType) {
    ++calls.of(EHostCall::BrokerType);
    return TC::EQDBrokerType::Stock;
}

void CCheckHost::CRules::orderSettingToParam(const TC::COrderSetting& setting, TC::CCodeOrderParam& record,
                                             TC::EOperationType operation, int volume, double price,
                                             const TC::CPriceDataPtr& quote) {
    ++calls.of(EHostCall::SettingToParam);
    kit::CTradingRulesBase::orderSettingToParam(setting, record, operation, volume, price, quote);
}

void CCheckHost::CRules::fixTimeRange(TC::CCodeOrderParam&) {
    ++calls.of(EHostCall::FixTimeRange);
}

bool CCheckHost::CRules::isMarketPrice(TC::EPriceType) {
    ++calls.of(EHostCall::MarketPrice);
    return false;
}

bool CCheckHost::CRules::isBuy(TC::EOperationType operation) {
    ++calls.of(EHostCall::IsBuy);
    return kit::CTradingRulesBase::isBuy(operation);
}

bool CCheckHost::CRules::isDirectRepay(TC::EOperationType operation) {
    ++calls.of(EHostCall::DirectRepay);
    return kit::CTradingRulesBase::isDirectRepay(operation);
}

QString CCheckHost::CRules::orderStrategyTradeTypeToString(TC::EOrderStrategyTradeType type) {
    ++calls.of(EHostCall::TradeTypeText);
    return kit::CTradingRulesBase::orderStrategyTradeTypeToString(type);
}

QString CCheckHost::CRules::orderStrategyOrderTypeToString(int orderType) {
    ++calls.of(EHostCall::OrderTypeText);
    return kit::CTradingRulesBase::orderStrategyOrderTypeToString(orderType);
}

QString CCheckHost::CRules::accountDisplayIDQs(const TC::CAccountInfo& account) {
    ++calls.of(EHostCall::DisplayId);
    return kit::CTradingRulesBase::accountDisplayIDQs(account);
}

bool CCheckHost::CTypes::isTypedStock(int type, const std::string&, const std::string&) {
    ++calls.of(EHostCall::TypedStock);
    return type == knservice::kTypeTradableStock || type == knservice::kBasketTypes[0];
}

int CCheckHost::CTypes::getTradeMinUnit(const std::string&, const std::string&, TC::EOperationType) {
    ++calls.of(EHostCall::TradeMinUnit);
    return 100;
}

boost::shared_ptr<knservice::CAccountData> CCheckHost::CTasks::getAccountData(const std::string&) {
    ++calls.of(EHostCall::AccountData);
    // The pointer does not own the host, because the host outlives all users of its data.
    return boost::shared_ptr<knservice::CAccountData>(this, [](auto*) {});
}

void CCheckHost::CTasks::getVector(int, std::vector<boost::shared_ptr<knservice::IData>>& out) {
    out.insert(out.end(), positions.begin(), positions.end());
}

double CCheckHost::CTasks::getUsableVolume(const std::string&, const std::string&, TC::EOperationType,
                                           TC::EHedge_Flag_Type, double) {
    constexpr double kUsable = 1e9;
    ++calls.of(EHostCall::UsableVolume);
    return kUsable;
}

} // namespace bench
