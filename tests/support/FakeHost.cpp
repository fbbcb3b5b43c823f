#include "tests/support/FakeHost.h"

#include "orderservice/records/Families.h"
#include "tests/support/Describe.h"
#include "tests/support/HostServices.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <stdexcept>

namespace fake {

CQuote& CQuote::all(double price) {
    otherOrigin = otherCalc = otherOrder = m_dLastPrice = m_dFallbackPrice = price;
    return *this;
}

double CQuote::find(const std::map<TC::EPriceType, double>& prices, TC::EPriceType type) const {
    const auto found = prices.find(type);
    if (found != prices.end()) return found->second;
    if (&prices == &origin) return otherOrigin;
    return &prices == &calc ? otherCalc : otherOrder;
}

TC::CMsgFlags CUser::getMsgFlags(TC::EMsgTypeDef type) const {
    const auto found = msgFlags.find(type);
    return found != msgFlags.end() ? found->second : TC::CMsgFlags{};
}

const TC::CAccountGroup* CUser::getAccountGroupConst(TC::EQDBrokerType broker, const QString& group) const {
    const auto found = groups.find({broker, group.toStdString()});
    return found != groups.end() ? &found->second : nullptr;
}

void CUser::getAccountsWeights(TC::EQDBrokerType broker, TC::ESelectedAccountType which, const QString& key,
                               std::vector<TC::CAccountInfoPtr>& found, std::vector<double>& ratios,
                               bool isSimple) const {
    accountsCalls.add({broker, which, key, isSimple});
    const std::string text = key.toStdString();
    if (which == TC::ESelectedAccountType::Group && !isSimple) {
        const auto group = groups.find({broker, text});
        if (group == groups.end()) return;
        for (const std::string& member : group->second.m_accounts)
            found.push_back(accounts.at(member));
        if (!dropRatios) {
            const std::vector<double>& members = groupRatios.at(group->first);
            ratios.insert(ratios.end(), members.begin(), members.end());
        }
        if (nullAccount) {
            found.push_back({});
            ratios.push_back(0.0);
        }
        return;
    }
    const auto account = accounts.find(text);
    if (account == accounts.end()) return;
    found.push_back(account->second);
    ratios.push_back(1.0);
}

namespace {

class CFakeAccount : public TC::CAccount {
public:
    explicit CFakeAccount(TC::CAccountInfoPtr info) : m_info(std::move(info)) {}
    TC::CAccountInfoPtr toInfo() const override { return m_info; }

private:
    TC::CAccountInfoPtr m_info;
};

} // namespace

std::vector<TC::CAccountPtr> CUser::getAccounts() const {
    std::vector<TC::CAccountPtr> list;
    for (const auto& [key, account] : accounts)
        list.push_back(boost::make_shared<CFakeAccount>(account));
    return list;
}

TC::CAccountPtr CUser::getAccountData(const QString& key) const {
    const auto found = accounts.find(key.toStdString());
    return found != accounts.end() ? boost::make_shared<CFakeAccount>(found->second) : nullptr;
}

TC::COrderSetting CUser::getDefaultOrderSetting(TC::EDefaultSetting which) const {
    const auto found = defaults.find(which);
    return found != defaults.end() ? found->second : TC::COrderSetting{};
}

void CUser::addAccount(const std::string& key, TC::EQDBrokerType broker) {
    const auto account = boost::make_shared<TC::CAccountInfo>();
    account->m_strKey = key;
    account->m_nBrokerType = static_cast<int>(broker);
    accounts[key] = account;
}

void CUser::addGroup(TC::EQDBrokerType broker, const std::string& group,
                     const std::vector<std::pair<std::string, double>>& members) {
    TC::CAccountGroup& stored = groups[{broker, group}];
    stored.m_eBrokerType = broker;
    stored.m_strName = group;
    for (const auto& [key, ratio] : members) {
        stored.m_accounts.push_back(key);
        groupRatios[{broker, group}].push_back(ratio);
    }
}

void CExchange::addOther(const std::string& list, const QString& key) {
    const auto detail = boost::make_shared<TC::CInstrumentDetail>();
    detail->m_strMarket = list;
    detail->m_strCode = key.toStdString();
    others[key] = detail;
    lists.insert({list, key});
}

TC::CInstrumentDetailPtr CExchange::getCodeInfo(const QString& key) {
    const auto other = others.find(key);
    if (other != others.end()) return other->second;
    const auto found = stocks.find(key);
    return found != stocks.end() ? found->second : TC::CInstrumentDetailPtr();
}

TC::CPriceDataPtr CQuotes::getStockPrice(const QString& key) {
    int count = 0;
    m_records.record([&] { count = ++reads[key]; });
    if (onRead) onRead(key, count);
    const auto found = quotes.find(key);
    return found != quotes.end() ? TC::CPriceDataPtr(found->second) : TC::CPriceDataPtr();
}

boost::shared_ptr<TC::CQuoteRequest>
CQuotes::subscribe(const QString& key, const TC::CQuoteRequest::CCallback& callback, TC::ESubscribeType) {
    m_records.record([&] {
        subscribed.push_back(key);
        callbacks[key] = callback;
    });
    ++liveSubscriptions;
    return {new TC::CQuoteRequest, [this](TC::CQuoteRequest* request) {
                --liveSubscriptions;
                delete request;
            }};
}

int CTypes::getTradeMinUnit(const std::string& market, const std::string& code,
                            TC::EOperationType operation) {
    const std::lock_guard lock(m_mutex);
    unitOperations.push_back(static_cast<int>(operation));
    const auto found = units.find(market + code);
    return found != units.end() ? found->second : 1;
}

int CTypes::getUiMinUnit(const std::string& market, const std::string& code, bool forTrade) {
    const auto found = uiUnits.find(market + code);
    return forTrade && found != uiUnits.end() ? found->second : 1;
}

TC::EQDBrokerType CRules::orderStrategyTradeTypeToBrokerType(TC::EOrderStrategyTradeType type) {
    const TC::CFamily* family = TC::findFamily(type);
    return family != nullptr ? family->m_eBrokerType : TC::EQDBrokerType::Stock;
}

bool CRules::parserOrderTradeParam(const std::string& text, TC::COrderTradeParam& param) {
    const auto found = tradeParams.find(text);
    if (found == tradeParams.end()) return false;
    param = found->second;
    return true;
}

void CRules::orderSettingFromString(TC::COrderSetting& setting, const QString& text) {
    const std::lock_guard lock(m_mutex);
    settingTexts.push_back(text);
    // The setting texts of this host know only "price=N", "kind=N" and "limit=N" (the first limit).
    const int number = text.section(QLatin1Char('='), 1).toInt();
    if (text.startsWith(QStringLiteral("price="))) setting.m_ePriceType = static_cast<TC::EPriceType>(number);
    if (text.startsWith(QStringLiteral("kind="))) setting.m_eOrderType = static_cast<TC::EOrderType>(number);
    if (text.startsWith(QStringLiteral("limit="))) setting.m_dFirstLimit = number;
}

void CRules::orderSettingToParam(const TC::COrderSetting& setting, TC::CCodeOrderParam& record,
                                 TC::EOperationType operation, int volume, double price,
                                 const TC::CPriceDataPtr& quote) {
    if (onSetting) onSetting(setting);
    settingCalls.add({setting, operation, volume, price, quote, record});
    record.m_ePriceType = setting.m_ePriceType;
    record.m_eOrderType = setting.m_eOrderType;
    record.m_dPrice = price;
    record.m_nVolume = volume;
}

void CRules::fixTimeRange(TC::CCodeOrderParam& record) {
    if (onFixTimeRange) onFixTimeRange(record);
}

void CRules::filterZeroStock(std::vector<TC::CCodeOrderParam>& records) {
    {
        const std::lock_guard lock(m_mutex);
        recordCalls.push_back("filter " + std::to_string(records.size()));
    }
    records.erase(std::remove_if(records.begin(), records.end(), isZeroStock), records.end());
}

void CRules::fillOverFreqOrderMode(std::vector<TC::CCodeOrderParam>& records) {
    {
        const std::lock_guard lock(m_mutex);
        recordCalls.push_back("fill " + std::to_string(records.size()));
    }
    if (onFill) onFill(records);
}

QString CRules::orderStrategyTypeToOrderTitle(TC::EOrderStrategyType type) {
    return QStringLiteral("[标题%1]").arg(static_cast<int>(type));
}

QString CRules::orderStrategyTypeToString(TC::EOrderStrategyType type) {
    return QStringLiteral("来源%1").arg(static_cast<int>(type));
}

QString CRules::orderStrategyOrderTypeToString(int orderType) {
    return QStringLiteral("下单%1").arg(orderType);
}

QString CRules::orderStrategyTradeTypeToString(TC::EOrderStrategyTradeType type) {
    return QStringLiteral("品种%1").arg(static_cast<int>(type));
}

QString CRules::knPriceTypeToString(TC::EPriceType type, const std::string& code, bool shortForm) {
    return QStringLiteral("价%1(%2)%3")
        .arg(static_cast<int>(type))
        .arg(QString::fromStdString(code), shortForm ? QStringLiteral("短") : QString());
}

bool CAlgorithms::getAlgOrderSettingFromString(const std::string& text,
                                               TC::CAlgorithmOrderSettingPtr& setting) {
    if (onRead) onRead(setting);
    if (unreadable.count(text) > 0) return false;
    const auto read = boost::make_shared<CSetting>();
    read->text = text;
    setting = read;
    return true;
}

std::string CAlgorithms::getAlgParamsStr(TC::EOrderType type, const TC::CAlgorithmOrderSettingPtr& setting,
                                         const std::vector<TC::CCodeOrderParam>& codes) {
    codesCalls.add(codes);
    const auto* own = dynamic_cast<const CSetting*>(setting.get());
    return "algo " + std::to_string(static_cast<int>(type)) + " " + (own != nullptr ? own->text : "?") +
           " x" + std::to_string(codes.size());
}

void CMessages::showMsg(const QString& text, TC::EMsgTypeDef type, TC::MsgLevel level, bool flag1, bool flag2,
                        const QString& extra) {
    m_records.record([&] {
        messages.push_back({text, type, level, flag1, flag2, extra});
        m_records.log.push_back("message " + text.toStdString());
    });
}

void CAudit::recordIntake(const TC::CIntakeReport& report) {
    m_records.record([&] {
        reports.push_back(report);
        m_records.log.push_back(describe(report));
    });
    if (onRecord) onRecord();
}

void CAudit::recordDoor(const TC::CDoorReport& report) {
    m_records.record([&] {
        doors.push_back(report);
        m_records.log.push_back(describe(report));
    });
    if (onRecord) onRecord();
}

void CAudit::recordDiscard(const TC::CDiscardReport& report) {
    m_records.record([&] { discards.push_back(report); });
    if (onRecord) onRecord();
}

void CAudit::recordUnplaced(const QVector<TC::COrderParam>& orders) {
    m_records.record([&] { unplaced.push_back(orders); });
    if (onRecord) onRecord();
}

void CAudit::recordIncident(const TC::CIncidentReport& report) {
    m_records.record([&] { incidents.push_back(report); });
    if (onRecord) onRecord();
}

} // namespace fake

CFakeHost::CFakeHost() {
    user.addAccount("A1");
    user.addAccount("A2");
    user.addGroup(TC::EQDBrokerType::Stock, "G", {{"A1", 0.6}, {"A2", 0.4}});
    addStock("SH", "600000", 10.5);
    addStock("SZ", "000001", 10.5);
    const utils::KNError installed = TC::installHost(services());
    if (!installed.isSuccess()) throw std::logic_error(installed.errorMsg());
}

CFakeHost::~CFakeHost() {
    TC::releaseHost();
}

TC::CHost CFakeHost::services() {
    return fake::servicesOf(*this);
}

void CFakeHost::addStock(const std::string& market, const std::string& code, double price, int unit) {
    const auto detail = boost::make_shared<TC::CInstrumentDetail>();
    detail->m_strMarket = market;
    detail->m_strCode = code;
    detail->m_strName = "name of " + code;
    detail->m_strProductId = "product of " + code;
    const QString key = QString::fromStdString(market + code);
    exchange.stocks[key] = detail;
    types.types.insert({knservice::kTypeTradableStock, market + code});
    types.units[market + code] = unit;
    setPrice(key, price);
}

void CFakeHost::setPrice(const QString& key, double price) {
    const auto quote = boost::make_shared<fake::CQuote>();
    quote->all(price);
    quotes.quotes[key] = quote;
}

std::vector<TC::COrderComandParamPtr> CFakeHost::commands() const {
    return records.snapshot([this] { return orders.commands; });
}

std::vector<QString> CFakeHost::messageTexts() const {
    return records.snapshot([this] {
        std::vector<QString> texts;
        for (const fake::CMessage& message : messages.messages)
            texts.push_back(message.text);
        return texts;
    });
}

std::vector<QString> CFakeHost::errorTexts() const {
    return records.snapshot([this] {
        std::vector<QString> texts;
        for (const fake::CTradeError& error : orders.errors)
            texts.push_back(error.text);
        return texts;
    });
}

bool CFakeHost::waitForCommands(std::size_t count) {
    return records.waitUntil([&] { return orders.commands.size() >= count; });
}

bool CFakeHost::waitForMessages(std::size_t count) {
    return records.waitUntil([&] { return messages.messages.size() >= count; });
}

bool CFakeHost::waitForIntakes(std::size_t count) {
    return records.waitUntil([&] { return audit.reports.size() >= count; });
}
