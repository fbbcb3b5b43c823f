#pragma once

#include "orderservice/func/OrderFuncService.h"
#include "orderservice/platform/HostCall.h"
#include "tests/docs/FencedBlocks.h"
#include "tests/docs/PageTable.h"
#include "tests/func/AccountFakes.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeHost.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <boost/make_shared.hpp>

#include <cstddef>
#include <fstream>
#include <functional>
#include <initializer_list>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

/// The host that docs/function-trading.md describes, and the examples of the page.
namespace function_page {

inline const std::string kPage = std::string(ORDERSERVICE_SOURCE_DIR) + "/docs/function-trading.md";

/// The rows of a table, which must have at least so many.
inline std::vector<CTableRow> rowsOf(const std::string& heading, std::size_t atLeast) {
    const std::vector<CTableRow> rows = readTable(kPage, heading);
    if (rows.size() < atLeast) throw std::runtime_error("rows are missing behind \"" + heading + '"');
    return rows;
}

/// The text of a source file of the library.
inline std::string sourceOf(const std::string& path) {
    std::ifstream file(std::string(ORDERSERVICE_SOURCE_DIR) + "/src/" + path);
    if (!file) throw std::runtime_error("cannot read src/" + path);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

/// The expression of a text whose words in braces may be anything.
inline QRegularExpression expressionOf(const std::string& text) {
    static const QRegularExpression kBraces(QStringLiteral("\\{[a-z]+\\}"));
    QStringList parts;
    for (const QString& part : QString::fromStdString(text).split(kBraces))
        parts.append(QRegularExpression::escape(part));
    return QRegularExpression(QStringLiteral("\\A") + parts.join(QStringLiteral("(.*)")) +
                                  QStringLiteral("\\z"),
                              QRegularExpression::DotMatchesEverythingOption);
}

/// The text between the first backquotes of a cell.
inline std::string codeOf(const std::string& cell) {
    const std::vector<std::string> spans = codeSpans(cell);
    if (spans.empty()) throw std::runtime_error("no text between backquotes in \"" + cell + '"');
    return spans[0];
}

inline QJsonObject objectOf(const std::string& text) {
    const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromStdString(text));
    if (!document.isObject()) throw std::runtime_error("no JSON object: " + text);
    return document.object();
}

inline std::string textOf(const QJsonObject& object) {
    return QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString();
}

/// A change of keys to texts.
inline std::string changeOf(std::initializer_list<std::pair<const char*, std::string>> texts) {
    QJsonObject object;
    for (const auto& [key, value] : texts)
        object[QString::fromUtf8(key)] = QString::fromStdString(value);
    return textOf(object);
}

/// The fenced block of the page with this word.
inline std::string blockOf(const std::string& word) {
    for (const CFencedBlock& block : readFencedBlocks(kPage)) {
        if (block.info == "json " + word) return block.text;
    }
    throw std::runtime_error("no block \"" + word + "\" in " + kPage);
}

/// The parameter text of an example: the call with some keys replaced, or, for the call "text", the example
/// itself.
inline std::string callText(const std::string& call, const std::string& change) {
    if (call == "text") return change;
    QJsonObject keys = objectOf(blockOf(call));
    const QJsonObject changes = objectOf(change);
    for (auto key = changes.begin(); key != changes.end(); ++key)
        keys[key.key()] = key.value();
    return textOf(keys);
}

/// What the failure call-back got.
struct CHeard {
    int id;
    std::string key, text;
};

class CPageHost {
public:
    CPageHost() {
        addAccounts();
        addInstruments();
        addBaskets();
        TC::COrderFuncService::initInstance(new TC::COrderFuncService);
        service().init();
        service().registOrderFailedCallback(
            [this](const int& id, const std::string& key, const utils::KNError& error) {
                heard.push_back({id, key, error.errorMsg()});
                if (onHeard) onHeard();
            });
    }
    ~CPageHost() { TC::COrderFuncService::release(); }
    CPageHost(const CPageHost&) = delete;
    CPageHost& operator=(const CPageHost&) = delete;

    static TC::COrderFuncService& service() { return *TC::COrderFuncService::instance(); }
    static std::string keyOf(const std::string& id) { return "key of " + id; }

    /// Changes the host as the words of a cell say, which are separated by commas.
    void setUp(const std::string& cell) {
        for (const std::string& word : listOf(cell))
            changes().at(word)();
    }

    /// Calls the function. An exception of the host is expected if the page says that the host throws.
    void call(const std::string& function, const std::string& text, const std::string& settings = {}) {
        try {
            service().doParserOrder(function, text, settings);
        } catch (const TC::CHostError&) {
            hasThrown = true;
        }
        if (isRefusing) refuseCommands();
    }
    void order(const std::string& example, const std::string& change) {
        call("passorder", callText(example, change));
    }

    /// Adds an order of the account 8001 at its broker.
    void addOrder(const std::string& number, int status) {
        const auto order = boost::make_shared<knservice::COrderDetail>();
        order->m_strOrderSysID = number;
        order->m_nStatus = status;
        accounts.at("8001")->m_orders.push_back(order);
        host.tasks.accountKeys[{"8001", 2}] = keyOf("8001");
    }

    /// The trading layer refuses all commands, as a host with commands of its own reports it.
    void refuseCommands() {
        constexpr int kAlgorithms = 11;
        for (const TC::COrderComandParamPtr& command : host.commands()) {
            const auto refused = boost::make_shared<knservice::COrderCommand>();
            if (static_cast<int>(command->m_ePlatform) != kAlgorithms)
                refused->m_strTradeKey = command->m_strAlgoParam;
            emit host.trade.sigOrderCheckFailed(refused, utils::KNError(9, "refused"));
        }
    }

    /// "account code volume" for each order of all commands.
    std::string orders() const {
        if (host.commands().empty()) return "nothing is sent";
        std::string text;
        for (const TC::CCodeOrderParam& record : records())
            text += (text.empty() ? "" : ", ") + describe(record);
        return text.empty() ? "empty command" : text;
    }
    std::vector<TC::CCodeOrderParam> records() const {
        std::vector<TC::CCodeOrderParam> all;
        for (const TC::COrderComandParamPtr& command : host.commands())
            all.insert(all.end(), command->m_codes.begin(), command->m_codes.end());
        return all;
    }
    std::vector<std::string> panel() const { return textsOf(host.messageTexts()); }
    std::vector<std::string> windows() const { return textsOf(host.errorTexts()); }
    std::vector<std::string> heardTexts() const {
        std::vector<std::string> texts;
        for (const CHeard& failure : heard)
            texts.push_back(failure.text);
        return texts;
    }

    CFakeClock clock;
    CFakeHost host;
    std::map<std::string, boost::shared_ptr<CFakeFuncAccount>> accounts; ///< by display id
    std::vector<CHeard> heard;
    std::function<void()> onHeard;
    bool hasThrown = false;
    bool isRefusing = false;

private:
    static std::vector<std::string> textsOf(const std::vector<QString>& texts) {
        std::vector<std::string> result;
        for (const QString& text : texts)
            result.push_back(text.toStdString());
        return result;
    }
    std::string describe(const TC::CCodeOrderParam& record) const {
        return host.rules.displayIds.at(record.m_account->getKey()).toStdString() + ' ' +
               record.m_stock.m_strCode + ' ' + std::to_string(record.m_nVolume);
    }

    void addAccounts() {
        for (const CTableRow& row : rowsOf("## The examples of this page", 6)) {
            const auto kind = static_cast<TC::EQDBrokerType>(std::stoi(row.at("Number")));
            std::vector<std::pair<std::string, double>> members;
            for (const std::string& id : listOf(row.at("Accounts"))) {
                addAccount(id, kind);
                members.emplace_back(keyOf(id), 1);
            }
            host.user.addGroup(kind, row.at("Group"), members);
        }
    }
    void addAccount(const std::string& id, TC::EQDBrokerType kind) {
        const std::string key = keyOf(id);
        host.user.addAccount(key, kind);
        host.user.accounts.at(key)->m_nPlatformId = 21;
        host.rules.displayIds[key] = QString::fromStdString(id);
        const auto account = boost::make_shared<CFakeFuncAccount>(host.user.accounts.at(key));
        account->m_dUsable = 10000;
        account->m_detail = boost::make_shared<knservice::CAccountDetail>();
        account->m_detail->m_dAssetForRatio = account->m_detail->m_dAssetCheck = 100000;
        account->m_detail->m_dBasketAsset = 50000;
        host.tasks.accountData[key] = account;
        accounts[id] = account;
    }

    void addInstruments() {
        for (const char* key : {"SH600000", "SZ000001"}) {
            addQuote(QString::fromUtf8(key), 10.5, 9, 11);
            host.types.types.insert({kBasketType, key});
        }
        addOther("hgt", "HGT00700", "HGT", "00700");
        addOther("sgt", "SGT00700", "SGT", "00700");
        addQuote(QStringLiteral("HGT00700"), 10.5, 9, 11);
        addQuote(QStringLiteral("SGT00700"), 10.5, 9, 11);
        addOther("option", "10005001", "SHO", "10005001");
        addQuote(QStringLiteral("10005001"), 0.5, 0.1, 0.9);
        for (const char* key : {"IF2609", "IFIF2609"}) { // a row of a basket has its market in front
            addOther("future", key, "IF", "IF2609", 300);
            addQuote(QString::fromUtf8(key), 4000, 3600, 4400);
        }
    }
    void addOther(const char* list, const char* key, const std::string& market, const std::string& code,
                  double multiplier = TC::kUnsetDouble) {
        const auto detail = boost::make_shared<TC::CInstrumentDetail>();
        detail->m_strMarket = market;
        detail->m_strCode = code;
        detail->m_strName = "name of " + code;
        detail->m_strProductId = "product of " + code;
        detail->m_dMultiplier = multiplier;
        host.exchange.others[QString::fromUtf8(key)] = detail;
        host.exchange.lists.insert({list, QString::fromUtf8(key)});
    }
    void addQuote(const QString& key, double price, double low, double high) {
        const auto quote = boost::make_shared<fake::CQuote>();
        quote->all(price);
        quote->m_nDayCount = 1;
        quote->m_dFallbackPrice = low;
        quote->m_dUpperLimit = high;
        host.quotes.quotes[key] = quote;
    }

    void addBaskets() {
        blueChips() = {rowOf("SH", "600000", 100, 0.6), rowOf("SZ", "000001", 200, 0.4)};
        host.user.baskets[QStringLiteral("index")].m_rows = {rowOf("IF", "IF2609", 1, 1)};
    }
    QVector<TC::CBasketStockData>& blueChips() {
        return host.user.baskets[QStringLiteral("blue chips")].m_rows;
    }
    static TC::CBasketStockData rowOf(const char* market, const char* code, int volume, double weight) {
        TC::CBasketStockData row;
        row.m_strMarket = QString::fromUtf8(market);
        row.m_strCode = QString::fromUtf8(code);
        row.m_nVolume = volume;
        row.m_dWeight = weight;
        return row;
    }

    /// What the words of the page do.
    std::map<std::string, std::function<void()>> changes() {
        return {
            {"guard", [this] { host.switches.on.insert("mdl_order_command_guard"); }},
            {"hedge", [this] { host.switches.on.insert("mdl_order_compose_hedge"); }},
            {"kind 1", [this] { host.user.kind = 1; }},
            {"no quotes", [this] { host.quotes.quotes.clear(); }},
            {"wide limits", [this] { widenLimits(); }},
            {"no assets", [this] { accounts.at("8001")->m_detail->m_dBasketAsset = TC::kUnsetDouble; }},
            {"8002 not logged in", [this] { host.trade.loginStatus[keyOf("8002")] = 2; }},
            {"split fails", [this] { failSplits(); }},
            {"throws",
             [this] {
                 host.quotes.onRead = [](const QString&, int) { throw std::runtime_error("no line"); };
             }},
            {"refuses", [this] { isRefusing = true; }},
            {"call-back throws", [this] { onHeard = [] { throw std::runtime_error("not today"); }; }},
            {"call-back repeats",
             [this] { onHeard = [] { service().doParserOrder("passorder", "{}", {}); }; }},
            {"call-back releases", [this] { onHeard = [] { TC::COrderFuncService::release(); }; }},
            {"10005001 without data", [this] { host.exchange.others.erase(QStringLiteral("10005001")); }},
            {"000001 unknown", [this] { host.exchange.stocks.erase(QStringLiteral("SZ000001")); }},
            {"000001 suspended",
             [this] { host.quotes.quotes.at(QStringLiteral("SZ000001"))->m_nDayCount = 0; }},
            {"000001 of another type",
             [this] {
                 host.types.types.erase({kBasketType, "SZ000001"});
             }},
            {"000001 without volume", [this] { blueChips()[1].m_nVolume = 0; }},
            {"basket on a connect", [this] { blueChips()[0] = rowOf("HGT", "00700", 100, 0.6); }},
        };
    }
    void widenLimits() {
        for (const auto& [key, quote] : host.quotes.quotes) {
            quote->m_dFallbackPrice = -10;
            quote->m_dUpperLimit = 5000;
        }
    }
    void failSplits() {
        host.trade.split = [](const fake::CSplitCall&, utils::KNError& error) {
            error = utils::KNError(1, "资金不足");
            return std::vector<int>();
        };
    }

    static constexpr int kBasketType = 100003;
};

} // namespace function_page
