#include "tests/support/FakeHost.h"

#include "records/Portfolio.h"

#include "records/Families.h"
#include "tests/support/Describe.h"

#include <boost/make_shared.hpp>

#include <chrono>
#include <cmath>
#include <numeric>
#include <stdexcept>

namespace fake {

bool CRecords::waitUntil(const std::function<bool()>& condition) {
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, std::chrono::seconds(30), condition);
}

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

void COrders::orderCommands(const TC::COrderComandParamPtr& command) {
    if (onCommand) onCommand(command);
    m_records.record([&] {
        commands.push_back(command);
        m_records.log.push_back(describe(*command));
    });
}

void COrders::showTradeError(const QString& text, const QString& title) {
    m_records.record([&] {
        errors.push_back({text, title});
        m_records.log.push_back("error " + title.toStdString() + ": " + text.toStdString());
    });
}

TC::EBROKER_LOGIN_STATUS CTrade::getLoginStatus(const std::string& key) {
    const auto found = loginStatus.find(key);
    return static_cast<TC::EBROKER_LOGIN_STATUS>(found != loginStatus.end() ? found->second : 0);
}

namespace {

std::vector<int> splitByRatio(int volume, const std::vector<double>& ratios, std::size_t accounts) {
    const double sum = std::accumulate(ratios.begin(), ratios.end(), 0.0);
    std::vector<int> volumes(accounts, 0);
    for (std::size_t i = 0; i < accounts && i < ratios.size() && sum > 0; ++i) {
        volumes[i] = static_cast<int>(std::floor(volume * ratios[i] / sum + 1e-9));
    }
    if (accounts > 0) volumes[0] += volume - std::accumulate(volumes.begin(), volumes.end(), 0);
    return volumes;
}

} // namespace

std::vector<int> CTrade::splitEntrusts(int volume, double price, TC::EPriceType priceType,
                                       const std::vector<TC::CAccountInfoPtr>& accounts,
                                       const std::vector<double>& ratios, TC::EPositionType positionType,
                                       const std::string& market, const std::string& code,
                                       TC::EOperationType operation, TC::EHedge_Flag_Type hedge,
                                       const boost::shared_ptr<utils::KNError>& error) {
    CSplitCall call{volume, price, priceType, {}, ratios, positionType, market, code, operation, hedge};
    for (const auto& account : accounts)
        call.accounts.push_back(account ? account->getKey() : std::string());
    m_records.record([&] { splitCalls.push_back(call); });
    if (split) return split(call, *error);
    if (volume == TC::kUnsetInt) {
        *error = utils::KNError(1, "没有数量");
        return {};
    }
    return splitByRatio(volume, ratios, accounts.size());
}

std::vector<double> CTrade::splitMoney(double amount, const std::vector<TC::CAccountInfoPtr>&,
                                       const std::vector<double>& ratios, TC::EPositionType,
                                       TC::EOperationType, const boost::shared_ptr<utils::KNError>& error) {
    m_records.record([&] { moneySplits.push_back(amount); });
    if (!moneyOverride.empty() || TC::isInvalidPrice(amount)) {
        *error = utils::KNError(1, "没有金额");
        return moneyOverride;
    }
    std::vector<double> values;
    for (const double ratio : ratios)
        values.push_back(amount * ratio);
    return values;
}

void CTrade::cancelTask(int taskId, int operation, const std::string& text, const std::string& remark,
                        const std::string& tradingDay, const CCancelCallback& callback, int flag) {
    m_records.record([&] {
        cancelled.push_back({taskId, operation, text, remark, tradingDay, !callback.empty(), flag});
        m_records.log.push_back("cancel task " + std::to_string(taskId) + " operation " +
                                std::to_string(operation) + ": " + remark);
    });
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
CQuotes::subscribe(const QString& key, const TC::CQuoteRequest::CCallback&, TC::ESubscribeType) {
    m_records.record([&] { subscribed.push_back(key); });
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
    // "price=N" and "kind=N" are all that this host's setting texts can say.
    const int number = text.section(QLatin1Char('='), 1).toInt();
    if (text.startsWith(QStringLiteral("price="))) setting.m_ePriceType = static_cast<TC::EPriceType>(number);
    if (text.startsWith(QStringLiteral("kind="))) setting.m_eOrderType = static_cast<TC::EOrderType>(number);
}

void CRules::orderSettingToParam(const TC::COrderSetting& setting, TC::CCodeOrderParam& record,
                                 TC::EOperationType operation, int volume, double price,
                                 const TC::CPriceDataPtr& quote) {
    if (onSetting) onSetting(setting);
    settingCalls.add({setting, operation, volume, price, quote});
    record.m_ePriceType = setting.m_ePriceType;
    record.m_eOrderType = setting.m_eOrderType;
    record.m_dPrice = price;
    record.m_nVolume = volume;
}

void CRules::fixTimeRange(TC::CCodeOrderParam& record) {
    if (onFixTimeRange) onFixTimeRange(record);
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

namespace {

class CFakeTask : public knservice::CTask {
public:
    CFakeTask(CTasks& tasks, int taskId) : m_tasks(tasks), m_nTaskId(taskId) {}
    void operate(const TC::CTaskOpRecord& record) override { m_tasks.addOperation(m_nTaskId, record); }

private:
    CTasks& m_tasks;
    int m_nTaskId;
};

} // namespace

namespace {

/// The positions of one account.
class CFakeAccountData : public knservice::CAccountData {
public:
    explicit CFakeAccountData(std::vector<boost::shared_ptr<knservice::IData>> positions)
        : m_positions(std::move(positions)) {}
    std::map<std::string, boost::shared_ptr<knservice::IData>> getMapData(int) override { return {}; }
    void getVector(int table, std::vector<boost::shared_ptr<knservice::IData>>& out) override {
        if (table != knservice::kPositionTable) return;
        out.insert(out.end(), m_positions.begin(), m_positions.end());
    }

private:
    std::vector<boost::shared_ptr<knservice::IData>> m_positions;
};

} // namespace

boost::shared_ptr<knservice::CAccountData> CTasks::getAccountData(const std::string& key) {
    const auto found = positions.find(key);
    return found != positions.end() ? boost::make_shared<CFakeAccountData>(found->second) : nullptr;
}

void CTasks::getVector(int, std::vector<boost::shared_ptr<knservice::IData>>&) {}

void CTasks::addPosition(const TC::CAccountInfoPtr& account, const std::string& market,
                         const std::string& code, int volume) {
    const auto position = boost::make_shared<knservice::CPositionStatics>();
    position->m_account = account;
    position->m_strMarket = market;
    position->m_strCode = code;
    position->m_strName = "name of " + code;
    position->m_nPositionVolume = volume;
    position->m_nAvailableVolume = volume;
    positions[account->getKey()].push_back(position);
}

boost::shared_ptr<knservice::CAccountData> CTasks::getGlobalAccountData() {
    // The fake outlives whoever holds its data.
    return hasGlobalData ? boost::shared_ptr<knservice::CAccountData>(this, [](auto*) {}) : nullptr;
}

std::map<std::string, boost::shared_ptr<knservice::IData>> CTasks::getMapData(int table) {
    const auto found = tables.find(table);
    return found != tables.end() ? found->second
                                 : std::map<std::string, boost::shared_ptr<knservice::IData>>();
}

std::vector<boost::shared_ptr<knservice::CTask>> CTasks::findTasks(int taskId) {
    std::vector<boost::shared_ptr<knservice::CTask>> found;
    const auto count = tasks.find(taskId);
    for (int i = 0; count != tasks.end() && i < count->second; ++i) {
        found.push_back(boost::make_shared<CFakeTask>(*this, taskId));
    }
    return found;
}

void CTasks::addOperation(int taskId, const TC::CTaskOpRecord& record) {
    m_records.record([&] {
        operations.emplace_back(taskId, record);
        m_records.log.push_back("task " + std::to_string(taskId) + ": " + record.m_strRemark);
    });
}

void CFramework::switchTradingDate(const std::string& date) {
    m_records.record([&] { dates.push_back(date); });
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
    TC::CHost host;
    host.userManager = &user;
    host.orderClient = &orders;
    host.tradeClient = &trade;
    host.quoteClient = &quotes;
    host.exchangeClient = &exchange;
    host.msgService = &messages;
    host.timeService = &time;
    host.tradingRules = &rules;
    host.algorithmTradeHelper = &algorithms;
    host.intakeAudit = &audit;
    host.instrumentTypes = &types;
    host.traderCenter = &tasks;
    host.tradeFrameworkSource = &framework;
    host.luaModuleCtrl = &switches;
    return host;
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
