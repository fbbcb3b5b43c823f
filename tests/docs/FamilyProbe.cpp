#include "tests/docs/FamilyProbe.h"

#include "tests/check/CheckFixture.h"

#include <algorithm>
#include <limits>
#include <sstream>

using namespace TC;
using families::CFamilyUnderTest;

namespace {

constexpr double kPrice = 10.5;
constexpr double kReference = 9.9;
constexpr double kAmount = 50000;
constexpr int kStrategyVolume = 300;
constexpr int kOrderVolume = 150;
constexpr auto kMarketPrice = static_cast<EPriceType>(44);
constexpr auto kOtherKind = static_cast<EOrderType>(3); ///< neither plain nor an algorithm
constexpr auto kPositionType = static_cast<EPositionType>(2);
constexpr const char* kLockedStock = "600999"; ///< known to the host, but not tradable

/// A code whose key has this number of characters, including the family's prefix.
std::string codeOfKeyLength(const CFamilyUnderTest& family, std::size_t length) {
    return std::string("123456789").substr(0, length - std::string(family.market).size());
}

bool hasWordedKeys(const CFamilyUnderTest& family) {
    return family.list != nullptr && family.market[0] != '\0';
}

/// A field of a record: its word on the page, and whether it is set.
struct CField {
    const char* word;
    bool (*isSet)(const CCodeOrderParam&);
};

constexpr CField kFields[] = {
    {"account", [](const auto& record) { return record.m_account != nullptr; }},
    {"hedge flag", [](const auto& record) { return record.m_eHedgeFlag == EHedge_Flag_Type::Speculation; }},
    {"operation", [](const auto& record) { return !isUnset(record.m_eOperationType); }},
    {"order kind", [](const auto& record) { return record.m_eOrderType == kOtherKind; }},
    {"plain order kind", [](const auto& record) { return record.m_eOrderType == EOrderType::Plain; }},
    {"position type", [](const auto& record) { return record.m_ePositionType == kPositionType; }},
    {"code", [](const auto& record) { return !record.m_stock.m_strCode.empty(); }},
    {"name", [](const auto& record) { return !record.m_stock.m_strName.empty(); }},
    {"product", [](const auto& record) { return !record.m_stock.m_strProductId.empty(); }},
    {"price type", [](const auto& record) { return record.m_ePriceType == EPriceType::Specified; }},
    {"price", [](const auto& record) { return !isInvalidPrice(record.m_dPrice); }},
    {"volume", [](const auto& record) { return !isUnset(record.m_nVolume); }},
    {"user", [](const auto& record) { return !record.m_strUserId.empty(); }},
    {"entrustment", [](const auto& record) { return !isUnset(record.m_eEntrustType); }},
    {"contract", [](const auto& record) { return !record.m_strContractText.empty(); }},
    {"repayment text", [](const auto& record) { return !record.m_strRepayText.empty(); }},
    {"quantity", [](const auto& record) { return !isUnset(record.m_nQuantityKind); }},
    {"sub-account", [](const auto& record) { return !record.m_strSubAccountId.empty(); }},
    {"frequency mode", [](const auto& record) { return !isUnset(record.m_nOverFreqMode); }},
};

/// One order of a family, on a host that has instruments of all families.
struct CTrial {
    CTrial(const CFamilyUnderTest& tested, int number, const std::string& code)
        : family(tested), strategy(families::strategyOf(tested, EPriceType::Specified)),
          order(COrderBuilder(number).line(QString::fromStdString(code), kPrice, 100)) {
        families::addGroup(host, tested);
        host.switches.on.insert("mdl_order_compose_basket_buy_sell");
        host.rules.marketPrices.insert(kMarketPrice);
        host.tasks.positions["A1"]; // known to the host, but without positions
        strategy.m_nVolume = kStrategyVolume;
        addInstruments();
        // 74 allows only the transfer kind 2. The other numbers that check the kind allow 4.
        finishDetails(number == 74 ? 2 : 4);
    }
    void addInstruments() {
        for (const CFamilyUnderTest& other : families::kFamilies) {
            families::addInstrument(host, other, other.code, kPrice);
            if (!hasWordedKeys(other)) continue;
            for (const std::size_t length : {8, 9})
                families::addInstrument(host, other, codeOfKeyLength(other, length), kPrice);
        }
        families::addInstrument(host, families::find(EOrderStrategyTradeType::Stock), kLockedStock, kPrice);
        host.types.types.erase({knservice::kTypeTradableStock, std::string("SH") + kLockedStock});
    }
    void finishDetails(int transferKind) {
        const auto finish = [&](CInstrumentDetailPtr& detail) {
            const auto copy = boost::make_shared<CInstrumentDetail>(*detail);
            copy->m_strName = "name";
            copy->m_strProductId = "product";
            copy->m_dReferencePrice = kReference;
            copy->m_tradeInfo.m_nTransferKind = transferKind;
            detail = copy;
        };
        for (auto& entry : host.exchange.stocks)
            finish(entry.second);
        for (auto& entry : host.exchange.others)
            finish(entry.second);
    }
    /// Gives the order its own account. The account is also found as a group.
    void nameAnAccount() {
        order.m_strAccountKeyPart1 = QStringLiteral("part");
        order.m_strAccountKeyPart2 = QStringLiteral("other");
        host.user.addAccount("part/other");
        host.user.addGroup(host.rules.orderStrategyTradeTypeToBrokerType(family.family), "part/other",
                           {{"part/other", 1.0}});
    }
    COrderSingleParam& line() { return order.m_orders.front(); }
    COrderSetting& setting() { return strategy.setting(findFamily(family.family)->m_eSlot); }
    void forAllQuotes(const std::function<void(fake::CQuote&)>& change) {
        for (auto& entry : host.quotes.quotes)
            change(*entry.second);
    }
    bool check() { return family.check(service, order, strategy, records, weights); }
    bool isCodeRefused() const {
        const auto texts = host.errorTexts();
        return std::any_of(texts.begin(), texts.end(), [](const QString& text) {
            return text.contains(QStringLiteral("下单代码 [")) && text.endsWith(QStringLiteral("不合法!"));
        });
    }
    /// The share-transfer market makes no records, so they cannot be checked.
    bool comesOut() const { return !records.empty() || family.family == EOrderStrategyTradeType::Neeq; }

    const CFamilyUnderTest& family;
    CFakeClock clock;
    CFakeHost host;
    CPlainService service;
    COrderStrategyParam strategy;
    COrderParam order;
    std::vector<CCodeOrderParam> records;
    std::map<std::string, double> weights;
};

/// Whether the code was accepted, refused as a code, refused for another reason, or dropped without a record
/// and without a message.
std::string outcomeOfCode(CTrial& trial) {
    const bool isTaken = trial.check();
    if (trial.isCodeRefused()) return "no";
    if (!isTaken) return "refused otherwise";
    return trial.comesOut() ? "yes" : "dropped";
}

std::string outcomeOfPrice(CTrial& trial) {
    const bool isTaken = trial.check();
    const std::string late = trial.clock.sleeps().empty() ? "" : ", waited for";
    if (!isTaken) return "refused" + late;
    return (trial.comesOut() ? "goes out" : "dropped") + late;
}

/// The total volume of all records. A record with a quantity adds its quantity, other records add their
/// volume.
std::string outcomeOfVolume(CTrial& trial) {
    if (!trial.check()) return "refused";
    if (trial.records.empty()) return "none";
    double sum = 0;
    for (const CCodeOrderParam& record : trial.records)
        sum += isUnset(record.m_nQuantityKind) ? record.m_nVolume : record.m_dQuantity;
    std::ostringstream out;
    out << static_cast<long>(sum);
    return out.str();
}

} // namespace

CFamilyProbe::CFamilyProbe(const CFamilyUnderTest& family, int number)
    : m_family(family), m_nNumber(number), m_strCode(family.code) {
    if (codeOutcome(m_strCode) == "no") m_strCode = families::find(EOrderStrategyTradeType::Stock).code;
}

std::string CFamilyProbe::codeOutcome(const std::string& code) const {
    CTrial trial(m_family, m_nNumber, code);
    trial.line().m_dAmount = kAmount;
    return outcomeOfCode(trial);
}

std::string CFamilyProbe::strategyCodeOutcome() const {
    CTrial trial(m_family, m_nNumber, "");
    trial.strategy.m_strCode = QStringLiteral("999999");
    trial.line().m_dAmount = kAmount;
    return outcomeOfCode(trial);
}

std::string CFamilyProbe::ownKeyOutcome(std::size_t length, bool isLower) const {
    if (!hasWordedKeys(m_family)) return "-";
    QString key = QString::fromStdString(m_family.market + codeOfKeyLength(m_family, length));
    if (isLower) key = key.toLower();
    return codeOutcome(key.toStdString());
}

/// What happens to the codes of all other lists. If the outcomes differ, the text names the lists of each.
std::string CFamilyProbe::foreignCodeOutcome() const {
    std::map<std::string, std::string> listsByOutcome;
    for (const CFamilyUnderTest& other : families::kFamilies) {
        if (other.list == nullptr || other.family == m_family.family) continue;
        listsByOutcome[codeOutcome(other.code)] += std::string(" ") + other.list;
    }
    if (listsByOutcome.size() == 1) return listsByOutcome.begin()->first;
    std::string text;
    for (const auto& [outcome, lists] : listsByOutcome)
        text += outcome + ":" + lists + " ";
    return text;
}

CFamilyProbe::CAnswers CFamilyProbe::codes() const {
    const bool hasList = m_family.list != nullptr;
    return {{"`600000`", codeOutcome("600000")},
            {"`sh600000`", codeOutcome("sh600000")},
            {"stock that does not trade", codeOutcome(std::string("SH") + kLockedStock)},
            {"that in small letters", codeOutcome(std::string("sh") + kLockedStock)},
            {"word in front", wordInFront()},
            {"own list", hasList ? codeOutcome(m_family.code) : "-"},
            {"key of 8", ownKeyOutcome(8, false)},
            {"in small letters", ownKeyOutcome(8, true)},
            {"key of 9", ownKeyOutcome(9, false)},
            {"other lists", foreignCodeOutcome()},
            {"unknown", codeOutcome("999999")},
            {"unknown, of the strategy", strategyCodeOutcome()}};
}

CFamilyProbe::CAnswers CFamilyProbe::prices() const {
    const auto outcome = [this](EPriceType type, const std::function<void(CTrial&)>& arrange) {
        CTrial trial(m_family, m_nNumber, m_strCode);
        trial.setting().m_ePriceType = type;
        trial.line().m_dAmount = kAmount;
        arrange(trial);
        return outcomeOfPrice(trial);
    };
    const auto orderPrice = [&](double price) {
        return outcome(EPriceType::Specified, [price](CTrial& trial) { trial.line().m_dPrice = price; });
    };
    const auto quotePrice = [](double price) {
        return [price](CTrial& trial) { trial.forAllQuotes([&](auto& quote) { quote.all(price); }); };
    };
    const auto noQuote = [](CTrial& trial) { trial.host.quotes.quotes.clear(); };
    return {{"order: 0", orderPrice(0)},
            {"order: none", orderPrice(kUnsetDouble)},
            {"order: no number", orderPrice(std::numeric_limits<double>::quiet_NaN())},
            {"order: no quote", outcome(EPriceType::Specified, noQuote)},
            {"latest: no quote", outcome(EPriceType::Latest, noQuote)},
            {"latest: none", outcome(EPriceType::Latest, quotePrice(kUnsetDouble))},
            {"latest: 0", outcome(EPriceType::Latest, quotePrice(0))},
            {"latest: not the user's",
             outcome(EPriceType::Latest,
                     [](CTrial& trial) { trial.host.user.invalidPriceTypes.insert(EPriceType::Latest); })},
            {"market price: none", outcome(kMarketPrice, quotePrice(kUnsetDouble))},
            {"record: order", priceOfRecord(EPriceType::Specified)},
            {"record: latest", priceOfRecord(EPriceType::Latest)}};
}

/// Whether the trading layer receives the instrument of the split. "-" if no volume is split.
std::string CFamilyProbe::splitByInstrument() const {
    CTrial trial(m_family, m_nNumber, m_strCode);
    trial.check();
    const auto& splits = trial.host.trade.splitCalls;
    if (splits.empty()) return "-";
    return splits.back().code.empty() ? "no" : "yes";
}

/// The prefix that is added to a code without a market when its quote is requested. "-" if there is none.
std::string CFamilyProbe::wordInFront() const {
    CTrial trial(m_family, m_nNumber, m_strCode);
    trial.check();
    const auto& keys = trial.host.quotes.subscribed;
    if (keys.empty()) return "-";
    const std::string key = keys.back().toStdString();
    return key == m_strCode ? "-" : "`" + key.substr(0, key.size() - m_strCode.size()) + "`";
}

/// The source of the record's price: the order, one of the quote's prices, or the instrument.
std::string CFamilyProbe::priceOfRecord(EPriceType type) const {
    CTrial trial(m_family, m_nNumber, m_strCode);
    trial.setting().m_ePriceType = type;
    trial.line().m_dAmount = kAmount;
    trial.forAllQuotes([](fake::CQuote& quote) {
        quote.otherCalc = kPrice + 1;
        quote.otherOrder = kPrice + 2;
    });
    trial.check();
    if (trial.records.empty()) return "-";
    const double price = trial.records.front().m_dPrice;
    const std::map<double, std::string> names{{kPrice, "order"},
                                              {kPrice + 1, "for calculation"},
                                              {kPrice + 2, "for orders"},
                                              {kReference, "reference"},
                                              {1.0, "1"},
                                              {kUnsetDouble, "none"}};
    const auto found = names.find(price);
    return found != names.end() ? found->second : std::to_string(price);
}

CFamilyProbe::CAnswers CFamilyProbe::volumes() const {
    const auto outcome = [this](int volume, bool usesAmount) {
        CTrial trial(m_family, m_nNumber, m_strCode);
        trial.line().m_nVolume = volume;
        trial.line().m_dAmount = isUnset(volume) ? kUnsetDouble : volume;
        trial.strategy.m_bUseAmount = usesAmount;
        trial.strategy.m_dAmount = kAmount;
        // A basket divides the volume over its rows by weight. This basket has one row.
        trial.line().m_dWeight = 1;
        trial.forAllQuotes([](auto& quote) { quote.m_dLastPrice = kPrice; });
        return outcomeOfVolume(trial);
    };
    return {{"order: 150", outcome(kOrderVolume, false)},
            {"order: none", outcome(kUnsetInt, false)},
            {"order: 0", outcome(0, false)},
            {"amount, order: none", outcome(kUnsetInt, true)},
            {"amount, order: 150", outcome(kOrderVolume, true)},
            {"split by instrument", splitByInstrument()}};
}

std::vector<std::string> CFamilyProbe::record() const {
    CTrial trial(m_family, m_nNumber, m_strCode);
    trial.setting().m_eOrderType = kOtherKind;
    trial.strategy.m_ePositionType = kPositionType;
    trial.line().m_nOverFreqMode = 1;
    trial.line().m_dAmount = kAmount;
    trial.line().m_eOperationType = static_cast<int>(EOperationType::Buy);
    trial.nameAnAccount();
    trial.order.m_strTradeText1 = "contract";
    trial.order.m_strTradeText3 = "repaid";
    trial.order.m_strAccountKey = "12____main";
    trial.check();
    if (trial.records.empty()) return {};
    const CCodeOrderParam& record = trial.records.front();
    std::vector<std::string> fields;
    for (const CField& field : kFields) {
        if (field.isSet(record)) fields.push_back(field.word);
    }
    return fields;
}

namespace {

/// The broker kind of the account that receives the order, or 0 if there is none.
int kindOfAccount(const CFamilyUnderTest& family, const std::vector<int>& kinds) {
    CFakeHost host;
    CPlainService service;
    for (const int kind : kinds) {
        const auto broker = static_cast<EQDBrokerType>(kind);
        host.user.addAccount("K" + std::to_string(kind), broker);
        host.user.addGroup(broker, "kinds", {{"K" + std::to_string(kind), 1.0}});
    }
    const COrderStrategyParam strategy =
        families::strategyOf(family, EPriceType::Specified).group(QStringLiteral("kinds"));
    QString name = strategy.m_strSelectedAccount;
    std::vector<CAccountInfoPtr> accounts;
    std::vector<double> ratios;
    std::map<std::string, double> weights;
    service.checkAccountKey(COrderBuilder(family.number), strategy, name, accounts, ratios, weights, true);
    return accounts.empty() ? 0 : accounts.front()->m_nBrokerType;
}

} // namespace

std::vector<int> CFamilyProbe::brokerKinds(const CFamilyUnderTest& family) {
    std::vector<int> left;
    for (int kind = 1; kind <= 20; ++kind)
        left.push_back(kind);
    std::vector<int> kinds;
    while (const int kind = kindOfAccount(family, left)) {
        kinds.push_back(kind);
        left.erase(std::find(left.begin(), left.end(), kind));
    }
    return kinds;
}

std::string CFamilyProbe::saidToTwoLines(const CFamilyUnderTest& family) {
    CTrial trial(family, family.number, family.code);
    trial.order.m_orders.push_back(trial.line());
    trial.check();
    const auto texts = trial.host.errorTexts();
    return texts.empty() ? std::string() : texts.front().toStdString();
}
