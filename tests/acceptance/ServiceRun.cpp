#include "tests/acceptance/ServiceRun.h"

#include "orderservice/base/Text.h"
#include "orderservice/records/Families.h"
#include "orderservice/records/Portfolio.h"
#include "orderservice/service/OrderService.h"
#include "orderservice/service/OrderServiceAdapter.h"
#include "tests/acceptance/SocketTalk.h"
#include "tests/support/Builders.h"
#include "tests/support/Describe.h"
#include "tests/support/TestSocket.h"

#include <QCoreApplication>

#include <boost/make_shared.hpp>

#include <sstream>
#include <stdexcept>

using namespace TC;

namespace {

using CWords = std::map<std::string, std::string>;

/// Splits "a=1 b c=2" into words with their values. A word without a value has an empty one.
CWords splitWords(const std::string& text) {
    CWords words;
    std::istringstream stream(text);
    for (std::string word; stream >> word;) {
        const std::size_t equals = word.find('=');
        words[word.substr(0, equals)] = equals != std::string::npos ? word.substr(equals + 1) : "";
    }
    return words;
}

/// The words that are left in the stream, with their values.
CWords restWords(std::istringstream& stream) {
    std::string rest;
    std::getline(stream, rest);
    return splitWords(rest);
}

QString qs(const std::string& text) {
    return QString::fromStdString(text);
}

template<typename Value>
Value numberAs(const std::string& text) {
    return static_cast<Value>(std::stoi(text));
}

std::vector<double> numbersOf(const std::string& text) {
    std::istringstream stream(text);
    std::vector<double> numbers;
    for (double number = 0; stream >> number;)
        numbers.push_back(number);
    return numbers;
}

/// The setting that the strategy's family takes.
COrderSetting& settingOf(COrderStrategyParam& strategy) {
    const CFamily* family = findFamily(strategy.m_eTradeType);
    return strategy.setting(family != nullptr ? family->m_eSlot : ESettingSlot::Stock);
}

/// Reads a basket row "code:volume:weight:operation". All fields but the code are optional.
CBasketStockData readBasketRow(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> fields;
    for (std::string field; std::getline(stream, field, ':');)
        fields.push_back(field);
    CBasketStockData row;
    row.m_strCode = qs(fields.at(0));
    row.m_nVolume = fields.size() > 1 ? std::stoi(fields[1]) : 100;
    if (fields.size() > 2) row.m_dWeight = std::stod(fields[2]);
    if (fields.size() > 3) row.m_eOperationType = std::stoi(fields[3]);
    return row;
}

constexpr int kBasketType = knservice::kBasketTypes[0];

} // namespace

COrderService& CServiceRun::runningService() {
    if (COrderService::instance() == nullptr) {
        COrderService::initInstance(new COrderService);
        COrderServiceAdapter::initInstance(new COrderServiceAdapter);
        COrderService::instance()->loadFromConfig(false);
    }
    return *COrderService::instance();
}

void CServiceRun::settle() {
    QMetaObject::invokeMethod(
        &runningService(), [] {}, Qt::BlockingQueuedConnection);
    QCoreApplication::processEvents();
}

CServiceRun::CServiceRun() : m_strategyWords(strategyWords()) {
    for (auto table :
         {serviceStatements(), userStatements(), marketStatements(), tradeStatements(), confirmStatements()})
        m_statements.merge(table);
    m_clock.onLongSleep = [this](double seconds) {
        report("waits " + std::to_string(static_cast<int>(seconds)) + " s for a quote");
    };
    m_host.rules.onSetting = [this](const COrderSetting& setting) {
        if (setting.m_bFirstLimitOn)
            report("first limit " + QString::number(setting.m_dFirstLimit).toStdString());
        if (setting.m_bSecondLimitOn)
            report("second limit " + QString::number(setting.m_dSecondLimit).toStdString());
    };
    setAnswer({"confirm", "accept", {}, {}});
    makeTraded(QStringLiteral("SH600000"));
    makeTraded(QStringLiteral("SZ000001"));
}

CServiceRun::~CServiceRun() {
    if (COrderService::instance() == nullptr) return;
    COrderService::instance()->shutdown();
    COrderServiceAdapter::release();
    COrderService::release();
    QCoreApplication::processEvents(); // the ends of the batches
}

void CServiceRun::apply(const CStatement& statement) {
    const auto found = m_statements.find(statement.word);
    if (found == m_statements.end()) throw std::runtime_error("unknown statement: " + statement.word);
    found->second(statement);
}

std::vector<std::string> CServiceRun::takeLog() {
    std::vector<std::string> log;
    m_host.records.record([&] { log.swap(m_host.records.log); });
    return log;
}

void CServiceRun::report(const std::string& line) {
    m_host.records.record([&] { m_host.records.log.push_back(line); });
}

void CServiceRun::addStrategy(const CStatement& statement) {
    const int channel = std::stoi(statement.rest);
    COrderStrategyParam strategy =
        CStrategyBuilder().channel(channel).file(m_folder.path(std::to_string(channel)));
    // A map is sorted, so "family" is set before the words that depend on it.
    for (const auto& [word, value] :
         splitWords(statement.rest.substr(statement.rest.find_first_of(" \n") + 1))) {
        const auto setter = m_strategyWords.find(word);
        if (setter != m_strategyWords.end()) setter->second(strategy, value);
    }
    m_folder.write(std::to_string(channel), "");
    m_host.user.addStrategy(strategy);
}

/// Makes it a socket strategy. It has its own listener, or uses the listener of the channel `share` if given.
void CServiceRun::makeSocket(COrderStrategyParam& strategy, const std::string& share) {
    unsigned short& port = m_ports[strategy.m_nChannel];
    port = share.empty() ? freePort() : m_ports.at(std::stoi(share));
    strategy.m_eStrategyType = EOrderStrategyType::Signal;
    strategy.m_strSignalSource = QStringLiteral("127.0.0.1:%1").arg(port);
    strategy.m_strUser = QStringLiteral("trader");
    strategy.m_strPass = QStringLiteral("secret");
}

void CServiceRun::stopStrategy(const CStatement& statement) {
    QString error;
    runningService().stopOrderStrategy(std::stoi(statement.rest), error);
    if (!error.isEmpty()) throw std::runtime_error(error.toStdString());
}

/// Writes the file and returns when the service has processed all of it.
void CServiceRun::dropFile(const CStatement& statement) {
    COrderService& running = runningService();
    const std::size_t before = m_host.records.snapshot([this] { return m_host.audit.reports.size(); });
    m_folder.handOver(std::to_string(std::stoi(statement.rest)), statement.bytes);
    m_clock.wake();
    if (!m_host.waitForIntakes(before + 1)) throw std::runtime_error("the file was not taken");
    running.getStrategyMap(); // returns when the pass is over
    settle();
}

void CServiceRun::talk(const CStatement& statement) {
    runningService();
    holdTalk(m_ports.at(std::stoi(statement.rest)), statement.talk, settle);
}

/// `basket NAME CODE[:VOLUME[:WEIGHT[:OPERATION]]] ...`
void CServiceRun::addBasket(const CStatement& statement) {
    std::istringstream stream(statement.rest);
    std::string name;
    stream >> name;
    for (std::string row; stream >> row;)
        m_host.user.baskets[qs(name)].m_rows.push_back(readBasketRow(row));
}

/// `param TEXT => remark=... kind=... setting=... part1=... part2=... text1=... text3=...`: a text that the
/// host understands, and the values that it reads from it.
void CServiceRun::addParam(const CStatement& statement) {
    const std::size_t arrow = statement.rest.find(" => ");
    CWords words = splitWords(statement.rest.substr(arrow + 4));
    COrderTradeParam param;
    param.m_strRemark = utils::toLocal8Bit(qs(words["remark"]));
    if (words.count("kind") > 0) param.m_eOrderType = std::stoi(words["kind"]);
    if (words.count("final") > 0) param.m_nSettingKind = 1;
    param.m_strOrderSetting = qs(words["setting"]);
    param.m_strAccountKeyPart1 = qs(words["part1"]);
    param.m_strAccountKeyPart2 = qs(words["part2"]);
    param.m_strTradeText1 = words["text1"];
    param.m_strTradeText3 = words["text3"];
    m_host.rules.tradeParams[utils::toLocal8Bit(qs(statement.rest.substr(0, arrow)))] = param;
}

/// `group BROKER NAME A1=0.6 A2=0.4`. The accounts must exist.
void CServiceRun::addGroup(const CStatement& statement) {
    std::istringstream stream(statement.rest);
    std::string broker, name;
    stream >> broker >> name;
    std::vector<std::pair<std::string, double>> members;
    for (const auto& [account, ratio] : restWords(stream))
        members.emplace_back(account, std::stod(ratio));
    m_host.user.addGroup(numberAs<EQDBrokerType>(broker), name, members);
}

void CServiceRun::makeTraded(const QString& key) {
    m_host.quotes.quotes.at(key)->m_nDayCount = 1;
    m_host.types.types.insert({kBasketType, key.toStdString()});
}

/// `stock MARKET CODE PRICE [UNIT]`
void CServiceRun::addStock(const CStatement& statement) {
    std::istringstream stream(statement.rest);
    std::string market, code;
    double price = 0;
    int unit = 100;
    stream >> market >> code >> price >> unit;
    m_host.addStock(market, code, price, unit);
    makeTraded(qs(market + code));
}

/// `instrument LIST KEY [market=...] [code=...] [price=...] [transfer=...]`: an instrument that is not a
/// stock.
void CServiceRun::addInstrument(const CStatement& statement) {
    std::istringstream stream(statement.rest);
    std::string list, key;
    stream >> list >> key;
    CWords words = restWords(stream);
    const auto detail = boost::make_shared<CInstrumentDetail>();
    detail->m_strMarket = words["market"];
    detail->m_strCode = words.count("code") > 0 ? words["code"] : key;
    if (words.count("transfer") > 0) detail->m_tradeInfo.m_nTransferKind = std::stoi(words["transfer"]);
    m_host.exchange.others[qs(key)] = detail;
    m_host.exchange.lists.insert({list == "futureoption" ? "future option" : list, qs(key)});
    if (words.count("price") > 0) m_host.setPrice(qs(key), std::stod(words["price"]));
}

/// `reference KEY PRICE`: the reference price of a stock.
void CServiceRun::setReference(const CStatement& statement) {
    std::istringstream stream(statement.rest);
    std::string key;
    stream >> key;
    CInstrumentDetailPtr& stored = m_host.exchange.stocks.at(qs(key));
    const auto detail = boost::make_shared<CInstrumentDetail>(*stored);
    stream >> detail->m_dReferencePrice;
    stored = detail;
}

/// `quote KEY PRICE`. `quote KEY none` removes the quote. `quote KEY empty` leaves a quote without any price.
void CServiceRun::setQuote(const CStatement& statement) {
    std::istringstream stream(statement.rest);
    std::string key, price;
    stream >> key >> price;
    if (price == "none") {
        m_host.quotes.quotes.erase(qs(key));
        return;
    }
    m_host.setPrice(qs(key), price == "empty" ? kUnsetDouble : std::stod(price));
    m_host.quotes.quotes.at(qs(key))->m_nDayCount = 1;
}

/// `position ACCOUNT MARKET CODE VOLUME`
void CServiceRun::addPosition(const CStatement& statement) {
    std::istringstream stream(statement.rest);
    std::string account, market, code;
    int volume = 0;
    stream >> account >> market >> code >> volume;
    m_host.tasks.addPosition(m_host.user.accounts.at(account), market, code, volume);
}

/// `portfolio KEY CODE VOLUME`: a portfolio with one position.
void CServiceRun::addPortfolio(const CStatement& statement) {
    std::istringstream stream(statement.rest);
    std::string key;
    const auto position = boost::make_shared<knservice::CPositionDetail>();
    stream >> key >> position->m_strCode >> position->m_nVolume;
    const auto portfolio = boost::make_shared<knservice::CPortfolio>();
    portfolio->m_positions["first"] = position;
    m_host.tasks.tables[knservice::kPortfolioTable][key] = portfolio;
}

/// `split VOLUME ...`: the result of every volume split from now on.
void CServiceRun::setSplit(const CStatement& statement) {
    const std::vector<double> numbers = numbersOf(statement.rest);
    m_host.trade.split = [volumes = std::vector<int>(numbers.begin(), numbers.end())](const fake::CSplitCall&,
                                                                                      utils::KNError& error) {
        error = utils::KNError(1, "没有数量");
        return volumes;
    };
}

/// `record TYPE PRICE`: from now on the host's setting puts this price type and price on every record.
void CServiceRun::setRecord(const CStatement& statement) {
    const std::vector<double> numbers = numbersOf(statement.rest);
    m_host.rules.onFixTimeRange = [numbers](CCodeOrderParam& record) {
        record.m_ePriceType = static_cast<EPriceType>(numbers.at(0));
        record.m_dPrice = numbers.at(1);
    };
}

void CServiceRun::setMoneySplit(const CStatement& statement) {
    m_host.trade.moneyOverride = numbersOf(statement.rest);
}

std::map<std::string, CServiceRun::CSetter> CServiceRun::strategyWords() {
    return {
        {"price", [](auto& s, const auto& v) { settingOf(s).m_ePriceType = numberAs<EPriceType>(v); }},
        {"volume", [](auto& s, const auto& v) { s.m_nVolume = std::stoi(v); }},
        {"amount",
         [](auto& s, const auto& v) {
             s.m_bUseAmount = true;
             s.m_dAmount = std::stod(v);
         }},
        {"code", [](auto& s, const auto& v) { s.m_strCode = qs(v); }},
        {"group", [](auto& s, const auto& v) { s.m_strSelectedAccount = qs(v); }},
        {"account",
         [](auto& s, const auto& v) {
             s.m_eSelectedAccountType = ESelectedAccountType::Account;
             s.m_strSelectedAccount = qs(v);
         }},
        {"family", [](auto& s, const auto& v) { s.m_eTradeType = numberAs<EOrderStrategyTradeType>(v); }},
        {"kind", [](auto& s, const auto& v) { s.m_eOrderType = numberAs<EOrderType>(v); }},
        {"remark", [](auto& s, const auto& v) { settingOf(s).m_strCmdLog = v; }},
        {"socket", [this](auto& s, const auto& v) { makeSocket(s, v); }},
        {"stopped", [](auto& s, const auto&) { s.m_nStatus = COrderStrategyParam::kStopped; }},
        {"flag", [](auto& s, const auto&) { s.m_bCommandFlag = true; }},
        {"hedge",
         [](auto& s, const auto& v) {
             s.m_bHedgeBasket = true;
             s.m_hedgeParam = bson::fromjson(v);
         }},
    };
}

std::map<std::string, CServiceRun::CAction> CServiceRun::serviceStatements() {
    return {
        {"strategy", [this](const auto& s) { addStrategy(s); }},
        {"stop", [this](const auto& s) { stopStrategy(s); }},
        {"file", [this](const auto& s) { dropFile(s); }},
        {"talk", [this](const auto& s) { talk(s); }},
        {"switch", [this](const auto& s) { m_host.switches.on.insert(s.rest); }},
        {"noswitch", [this](const auto& s) { m_host.switches.on.erase(s.rest); }},
        {"details",
         [this](const auto&) {
             m_host.orders.onCommand = [this](const COrderComandParamPtr& command) {
                 report(describeDetails(*command));
             };
         }},
    };
}

std::map<std::string, CServiceRun::CAction> CServiceRun::userStatements() {
    return {
        {"account", [this](const auto& s) { m_host.user.addAccount(s.rest); }},
        {"group", [this](const auto& s) { addGroup(s); }},
        {"basket", [this](const auto& s) { addBasket(s); }},
        {"param", [this](const auto& s) { addParam(s); }},
        {"userkind", [this](const auto& s) { m_host.user.kind = std::stoi(s.rest); }},
        {"noright", [this](const auto& s) { m_host.user.rights.erase(numberAs<EUserAuth>(s.rest)); }},
        {"badprice",
         [this](const auto& s) { m_host.user.invalidPriceTypes.insert(numberAs<EPriceType>(s.rest)); }},
    };
}

std::map<std::string, CServiceRun::CAction> CServiceRun::marketStatements() {
    return {
        {"stock", [this](const auto& s) { addStock(s); }},
        {"instrument", [this](const auto& s) { addInstrument(s); }},
        {"reference", [this](const auto& s) { setReference(s); }},
        {"quote", [this](const auto& s) { setQuote(s); }},
        // The host lists this stock but has no details of it.
        {"undescribed", [this](const auto& s) { m_host.exchange.stocks.at(qs(s.rest)) = nullptr; }},
        {"suspended", [this](const auto& s) { m_host.quotes.quotes.at(qs(s.rest))->m_nDayCount = 0; }},
        {"market", [this](const auto& s) { m_host.rules.marketPrices.insert(numberAs<EPriceType>(s.rest)); }},
        {"outofbaskets",
         [this](const auto& s) {
             m_host.types.types.erase({kBasketType, s.rest});
         }},
        {"star",
         [this](const auto& s) {
             m_host.types.types.insert({knservice::kTypeStarMarket, s.rest});
             m_host.types.uiUnits[s.rest] = 200;
         }},
        {"par",
         [this](const auto& s) {
             m_host.types.types.insert({knservice::kTypeParPriced, s.rest});
         }},
    };
}

std::map<std::string, CServiceRun::CAction> CServiceRun::tradeStatements() {
    return {
        {"logout", [this](const auto& s) { m_host.trade.loginStatus[s.rest] = 1; }},
        {"algo",
         [this](const auto& s) {
             m_host.rules.algoPlatforms[numberAs<EOrderType>(s.rest)] = static_cast<ETradePlatform>(2);
         }},
        {"task", [this](const auto& s) { m_host.tasks.tasks[std::stoi(s.rest)] = 1; }},
        {"closes", [this](const auto& s) { m_host.rules.closes.insert(std::stoi(s.rest)); }},
        {"repays", [this](const auto& s) { m_host.rules.directRepays.insert(std::stoi(s.rest)); }},
        {"split", [this](const auto& s) { setSplit(s); }},
        {"record", [this](const auto& s) { setRecord(s); }},
        {"splitmoney", [this](const auto& s) { setMoneySplit(s); }},
        {"position", [this](const auto& s) { addPosition(s); }},
        {"portfolio", [this](const auto& s) { addPortfolio(s); }},
    };
}
