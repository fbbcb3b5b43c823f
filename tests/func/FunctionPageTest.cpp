// Does what docs/function-trading.md says: each example of the page goes through doParserOrder.
#include "orderservice/func/FuncTables.h"
#include "tests/func/FunctionPageHost.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

#include <boost/lexical_cast/bad_lexical_cast.hpp>

#include <map>
#include <numeric>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace function_page {
namespace {

using namespace TC;

/// The value of a cell: between backquotes, or the word "empty", or "-" for none.
std::string valueOf(const std::string& cell) {
    return cell.empty() || cell == "empty" ? std::string() : codeOf(cell);
}

/// Keys that hold for one family of the page.
std::string groupOf(const std::string& family) {
    static const std::map<std::string, std::string> kGroups = {
        {"futures", "futures"},       {"stock", "stocks"},        {"credit", "credits"},
        {"option", "options"},        {"stock basket", "stocks"}, {"credit basket", "credits"},
        {"futures basket", "futures"}};
    return kGroups.at(family);
}

EFuncFamily familyOf(const std::string& word) {
    static const std::map<std::string, EFuncFamily> kFamilies = {
        {"futures", EFuncFamily::Future},
        {"stock", EFuncFamily::Stock},
        {"credit", EFuncFamily::Credit},
        {"option", EFuncFamily::StockOption},
        {"stock basket", EFuncFamily::StockBasket},
        {"credit basket", EFuncFamily::CreditBasket},
        {"futures basket", EFuncFamily::FutureBasket},
        {"none", EFuncFamily::None}};
    return kFamilies.at(word);
}

TEST(FunctionPage, EveryExampleCallIsSent) {
    for (const char* example :
         {"stock", "futures", "credit", "option", "stock basket", "credit basket", "futures basket"}) {
        CPageHost page;
        page.order(example, "{}");
        EXPECT_EQ(page.host.commands().size(), 1u) << example;
        EXPECT_FALSE(page.records().empty()) << example;
        EXPECT_TRUE(page.heard.empty()) << example;
    }
}

TEST(FunctionPage, NamesArePerformedOrIgnored) {
    for (const CTableRow& row : rowsOf("### How a name is written", 10)) {
        const std::string name = codeOf(row.at("Written"));
        const bool isCancel = QString::fromStdString(name).toLower() == QStringLiteral("cancel");
        CPageHost page;
        page.addOrder("10001", 50);
        page.call(name, isCancel ? blockOf("cancel") : callText("stock", "{}"));
        const bool isDone = !page.host.commands().empty() || !page.host.trade.cancelledOrders.empty();
        EXPECT_EQ(isDone, row.at("Result") == "performed") << name;
        EXPECT_EQ(page.panel().empty(), row.at("Result") == "ignored") << name;
    }
}

/// What the group of the expression matches in the text, in order.
std::vector<std::string> foundIn(const std::string& text, const std::string& expression) {
    std::vector<std::string> found;
    const std::regex pattern(expression);
    for (std::sregex_iterator match(text.begin(), text.end(), pattern), end; match != end; ++match)
        found.push_back((*match)[1]);
    return found;
}

TEST(FunctionPage, KeysAreThoseOfTheParserInItsOrder) {
    std::vector<std::string> onPage;
    for (const CTableRow& row : rowsOf("## The parameter text", 11))
        onPage.push_back(codeOf(row.at("Key")));
    EXPECT_EQ(onPage, foundIn(sourceOf("func/FuncParser.cpp"), "\\{\"(\\w+)\", read"));
}

TEST(FunctionPage, AValueOfAnotherTypeIsRefused) {
    bool isTradeKeyRead = false;
    for (const CTableRow& row : rowsOf("## The parameter text", 11)) {
        const std::string key = codeOf(row.at("Key"));
        CPageHost page;
        page.order("stock", "{\"" + key + (row.at("Type") == "integer" ? "\": \"1\"}" : "\": 1}"));
        EXPECT_EQ(page.heardTexts(),
                  std::vector<std::string>{"[函数交易]　函数: passorder, parserParam error"})
            << key;
        ASSERT_FALSE(page.heard.empty());
        EXPECT_EQ(page.heard[0].id, isTradeKeyRead ? 7 : -1) << key;
        isTradeKeyRead = isTradeKeyRead || key == "tradeKey";
    }
}

TEST(FunctionPage, DefaultsAreThoseOfTheRecord) {
    const COrderFuncParam made;
    const auto number = [](double value) { return QString::number(value).toStdString(); };
    const std::map<std::string, std::string> expected = {{"opType", number(made.m_nOpType)},
                                                         {"orderType", number(made.m_nOrderType)},
                                                         {"prType", number(made.m_nPrType)},
                                                         {"modelPrice", number(made.m_dModelPrice)},
                                                         {"modelVolume", number(made.m_dModelVolume)},
                                                         {"accountID", made.m_strAccountID},
                                                         {"orderCode", made.m_strOrderCode},
                                                         {"strategyName", made.m_strStrategyName},
                                                         {"tradeKey", made.m_strTradeKey},
                                                         {"note", made.m_strNote},
                                                         {"modelName", made.m_strModelName}};
    std::map<std::string, std::string> onPage;
    for (const CTableRow& row : rowsOf("## The parameter text", 11)) {
        const std::string& cell = row.at("Default");
        onPage[codeOf(row.at("Key"))] = cell.compare(0, 5, "empty") == 0 ? std::string() : codeOf(cell);
    }
    EXPECT_EQ(onPage, expected);
}

TEST(FunctionPage, FamiliesOfOperationsAreThoseOfTheCode) {
    std::map<int, CTableRow> rows;
    for (const CTableRow& row : rowsOf("## opType", 44))
        rows[std::stoi(row.at("opType"))] = row;
    constexpr int kSingleType = 1101;
    constexpr int kBasketTypeNumber = 2101;
    for (int number = -10; number <= 2000; ++number) {
        const auto row = rows.find(number);
        const std::string single = row == rows.end() ? "none" : row->second.at("Family");
        const std::string basket =
            row == rows.end() ? "none" : row->second.at("With an order type of baskets");
        EXPECT_EQ(funcFamilyOf(number, kSingleType), familyOf(single)) << number;
        EXPECT_EQ(funcFamilyOf(number, kBasketTypeNumber), familyOf(basket)) << number;
    }
}

TEST(FunctionPage, OperationsSendTheNumberOfThePage) {
    for (const CTableRow& row : rowsOf("## opType", 44)) {
        for (const std::string& family :
             std::set<std::string>{row.at("Family"), row.at("With an order type of baskets")}) {
            if (family == "none") continue;
            CPageHost page;
            page.order(family, codeOf(row.at("Example")));
            EXPECT_FALSE(page.records().empty()) << row.at("opType") << ' ' << family;
            for (const CCodeOrderParam& record : page.records())
                EXPECT_EQ(static_cast<int>(record.m_eOperationType), std::stoi(row.at("Operation")))
                    << row.at("opType") << ' ' << family;
            EXPECT_TRUE(page.heard.empty()) << row.at("opType") << ' ' << family;
        }
    }
}

std::string unitWord(EFuncUnit unit) {
    if (unit == EFuncUnit::Volume) return "volume";
    return unit == EFuncUnit::Money ? "money" : "ratio";
}

TEST(FunctionPage, OrderTypesAreThoseOfTheCode) {
    std::map<int, std::string> onPage, inCode;
    for (const CTableRow& row : rowsOf("## orderType", 21)) {
        const std::string& unit = row.at("`modelVolume` is");
        onPage[std::stoi(row.at("orderType"))] =
            row.at("Accounts") + ' ' + unit.substr(0, unit.find(' ')) + ' ' + row.at("Futures leg");
    }
    for (int number = -10; number <= 3000; ++number) {
        const CFuncOrderType* const row = findFuncOrderType(number);
        if (row == nullptr) continue;
        const bool isGroup = row->m_eAccounts == ESelectedAccountType::Group;
        inCode[number] =
            (isGroup ? "group " : "account ") + unitWord(row->m_eUnit) + (row->m_bHedge ? " yes" : " no");
    }
    EXPECT_EQ(onPage, inCode);
}

TEST(FunctionPage, OrderTypesSendTheOrdersOfThePage) {
    for (const CTableRow& row : rowsOf("## orderType", 21)) {
        const std::string example = codeOf(row.at("Example"));
        EXPECT_EQ(objectOf(example)[QStringLiteral("orderType")].toInt(), std::stoi(row.at("orderType")));
        CPageHost page;
        page.order(row.at("Call"), example);
        EXPECT_EQ(page.orders(), row.at("Orders")) << row.at("orderType");
        EXPECT_TRUE(page.heard.empty()) << row.at("orderType");
    }
}

/// A family that the page names for an order type is not refused with it.
TEST(FunctionPage, OrderTypesAreForTheFamiliesOfThePage) {
    for (const CTableRow& row : rowsOf("## orderType", 21)) {
        for (const std::string& family : listOf(row.at("For"))) {
            QJsonObject change = objectOf(codeOf(row.at("Example")));
            change.remove(QStringLiteral("accountID"));
            change.remove(QStringLiteral("orderCode"));
            if (row.at("Accounts") == "group")
                change[QStringLiteral("accountID")] = QString::fromStdString(groupOf(family));
            CPageHost page;
            page.order(family, textOf(change));
            EXPECT_EQ(page.host.commands().size(), 1u) << row.at("orderType") << ' ' << family;
        }
    }
}

TEST(FunctionPage, PriceTypesAreThoseOfTheOrder) {
    std::size_t count = 0;
    for (const CTableRow& row : rowsOf("## prType", 10)) {
        for (const int number : numbersOf(row.at("prType"))) {
            CPageHost page;
            page.order(row.at("Example call"), "{\"prType\": " + std::to_string(number) + "}");
            ASSERT_EQ(page.records().size(), 1u) << number;
            const int latest = static_cast<int>(EPriceType::Latest); // of the user's setting
            EXPECT_EQ(static_cast<int>(page.records()[0].m_ePriceType), number == -1 ? latest : number);
            ++count;
        }
    }
    EXPECT_EQ(count, 26u);
}

TEST(FunctionPage, CodesAreTheInstrumentsOfThePage) {
    for (const CTableRow& row : rowsOf("## Codes", 12)) {
        CPageHost page;
        page.order(row.at("Call"), changeOf({{"orderCode", codeOf(row.at("`orderCode`"))},
                                             {"accountID", row.at("Account")}}));
        std::string traded = "refused";
        for (const CCodeOrderParam& record : page.records())
            traded = record.m_stock.m_strMarket + ' ' + record.m_stock.m_strCode;
        EXPECT_EQ(traded, row.at("Instrument")) << row.at("`orderCode`");
        EXPECT_EQ(page.heard.empty(), row.at("Instrument") != "refused") << row.at("`orderCode`");
    }
}

TEST(FunctionPage, StrategyNamesHaveNotes) {
    for (const CTableRow& row : rowsOf("## Strategy name and note", 8)) {
        QJsonObject change = objectOf(changeOf({{"strategyName", codeOf(row.at("`strategyName`"))}}));
        if (row.at("`note`") != "-")
            change[QStringLiteral("note")] = QString::fromStdString(valueOf(row.at("`note`")));
        CPageHost page;
        page.order("stock", textOf(change));
        ASSERT_EQ(page.host.commands().size(), 1u);
        const COrderComandParamPtr command = page.host.commands()[0];
        EXPECT_EQ(command->m_strStrategyName, row.at("Name")) << row.at("`strategyName`");
        EXPECT_EQ(command->m_strRemark, row.at("Note") == "-" ? "" : row.at("Note"));
    }
}

TEST(FunctionPage, TradeKeysComeBackWithAFailure) {
    for (const CTableRow& row : rowsOf("## The trade key and the call-back", 12)) {
        const std::string change =
            changeOf({{"orderCode", "999999"}, {"tradeKey", valueOf(row.at("`tradeKey`"))}});
        CPageHost page;
        if (row.at("Number") == "exception") {
            EXPECT_THROW(page.order("stock", change), boost::bad_lexical_cast) << row.at("`tradeKey`");
            EXPECT_TRUE(page.heard.empty());
            EXPECT_EQ(page.windows().size(), 1u);
            EXPECT_EQ(page.orders(), "nothing is sent");
            continue;
        }
        page.order("stock", change);
        ASSERT_EQ(page.heard.size(), 1u) << row.at("`tradeKey`");
        EXPECT_EQ(page.heard[0].id, std::stoi(row.at("Number"))) << row.at("`tradeKey`");
        EXPECT_EQ(page.heard[0].key, row.at("Text")) << row.at("`tradeKey`");
    }
}

TEST(FunctionPage, LaterRefusalsComeBackWithTheNumberOfThePage) {
    for (const CTableRow& row : rowsOf("### Refused later", 6)) {
        CPageHost page;
        page.setUp("refuses");
        page.call(codeOf(row.at("Function")), callText(row.at("Call"), "{}"), blockOf("algorithm"));
        ASSERT_EQ(page.heard.size(), 1u) << row.at("Call");
        EXPECT_EQ(page.heard[0].id, std::stoi(row.at("Number"))) << row.at("Call");
        EXPECT_EQ(page.heard[0].key, row.at("Text")) << row.at("Call");
        EXPECT_EQ(page.heard[0].text, "refused");
    }
}

/// The only command of the example call with these settings of an algorithm.
COrderComandParamPtr algorithmCommand(CPageHost& page, const std::string& settings) {
    page.call("SMARTALGOPYPASSORDER", callText("stock", "{}"), settings);
    const auto commands = page.host.commands();
    if (commands.size() != 1) throw std::runtime_error("the order of an algorithm was not sent");
    return commands[0];
}

QStringList pairsOf(const COrderComandParamPtr& command) {
    return QString::fromStdString(command->m_strAlgoParam).split(QLatin1Char('\x01'));
}

TEST(FunctionPage, MessageOfAnAlgorithmHasTheTagsOfThePage) {
    CPageHost page;
    const COrderComandParamPtr command = algorithmCommand(page, blockOf("algorithm"));
    EXPECT_EQ(static_cast<int>(command->m_ePlatform), 11);
    EXPECT_EQ(static_cast<int>(command->m_codes.at(0).m_eOrderType), 13);
    EXPECT_EQ(command->m_codes.at(0).m_nValidTimeEnd, 150000);
    const std::vector<CTableRow> rows = rowsOf("### The message", 15);
    const QStringList pairs = pairsOf(command);
    ASSERT_EQ(static_cast<std::size_t>(pairs.size()), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const QString& pair = pairs[static_cast<int>(i)];
        EXPECT_TRUE(
            expressionOf(rows[i].at("Tag") + '=' + codeOf(rows[i].at("Example"))).match(pair).hasMatch())
            << pair.toStdString();
    }
}

TEST(FunctionPage, EntriesOfTag23001AreThoseOfThePage) {
    for (const CTableRow& row : rowsOf("### Tag 23001", 3)) {
        CPageHost page;
        const COrderComandParamPtr command =
            algorithmCommand(page, changeOf({{"m_strategyType", codeOf(row.at("Algorithm"))}}));
        std::string expected;
        for (const std::string& name : codeSpans(row.at("Entries")))
            expected += (expected.empty() ? "23001=" : "||") + name + "&&";
        EXPECT_EQ(pairsOf(command).at(2).toStdString(), expected) << row.at("Algorithm");
    }
}

TEST(FunctionPage, SettingsOfAlgorithmsAreThoseOfTheCode) {
    std::set<std::string> onPage;
    for (const CTableRow& row : rowsOf("## Smart-algorithm orders", 12))
        onPage.insert(codeOf(row.at("Key")));
    const auto inCode = foundIn(sourceOf("func/AlgoMessage.cpp"), "read\\(\"(\\w+)\"");
    EXPECT_EQ(onPage, std::set<std::string>(inCode.begin(), inCode.end()));
}

TEST(FunctionPage, SettingsThatCannotBeReadLeaveAnEmptyMessage) {
    CPageHost page;
    const COrderComandParamPtr command = algorithmCommand(page, "TWAP");
    EXPECT_EQ(static_cast<int>(command->m_ePlatform), 11);
    EXPECT_EQ(command->m_strAlgoParam, "");
    EXPECT_TRUE(page.heard.empty());
}

/// The values of a document by path, as JSON.
void addValues(const QJsonObject& object, const QString& path, std::map<std::string, std::string>& values) {
    for (auto field = object.begin(); field != object.end(); ++field) {
        if (field.value().isObject())
            addValues(field.value().toObject(), path + field.key() + QLatin1Char('.'), values);
        else
            values[(path + field.key()).toStdString()] =
                QJsonDocument(QJsonArray{field.value()}).toJson(QJsonDocument::Compact).toStdString();
    }
}

TEST(FunctionPage, DocumentOfTheFuturesLegHasTheKeysOfThePage) {
    std::map<std::string, std::string> onPage, sent;
    for (const CTableRow& row : rowsOf("## The futures leg", 18)) {
        const QByteArray value = '[' + QByteArray::fromStdString(codeOf(row.at("Example"))) + ']';
        onPage[codeOf(row.at("Key"))] =
            QJsonDocument::fromJson(value).toJson(QJsonDocument::Compact).toStdString();
    }
    CPageHost page;
    page.setUp("hedge");
    for (const CTableRow& row : rowsOf("## orderType", 21)) {
        if (row.at("orderType") == "2331") page.order(row.at("Call"), codeOf(row.at("Example")));
    }
    ASSERT_EQ(page.host.commands().size(), 1u);
    addValues(objectOf(page.host.commands()[0]->m_extra.jsonString()), {}, sent);
    EXPECT_EQ(sent, onPage);
}

TEST(FunctionPage, CancelTakesTheFirstOrderOfTheNumber) {
    CPageHost page;
    page.addOrder("10000", 50);
    page.addOrder("10001", 50);
    page.addOrder("10001", 50);
    page.call("cancel", blockOf("cancel"));
    ASSERT_EQ(page.host.trade.cancelledOrders.size(), 1u);
    EXPECT_EQ(page.host.trade.cancelledOrders[0], page.accounts.at("8001")->m_orders[1]);
    EXPECT_EQ(page.panel().size(), 1u);
    EXPECT_TRUE(page.heard.empty());
}

TEST(FunctionPage, CancelOfAllTakesTheOpenOrders) {
    CPageHost page;
    for (int status = -5; status <= 70; ++status)
        page.addOrder(std::to_string(status), status);
    QJsonObject keys = objectOf(blockOf("cancel"));
    keys.remove(QStringLiteral("orderId"));
    page.call("cancel", textOf(keys));
    std::vector<int> cancelled;
    for (const knservice::COrderDetailPtr& order : page.host.trade.cancelledOrders)
        cancelled.push_back(order->m_nStatus);
    EXPECT_EQ(cancelled, numbersOf(rowsOf("### Open orders", 1)[0].at("Open statuses")));
}

TEST(FunctionPage, KindsOfAccountsAreThoseOfTheCode) {
    for (const CTableRow& row : rowsOf("### Kinds of accounts", 14))
        EXPECT_EQ(tranAccountType(codeOf(row.at("`accountType`"))), std::stoi(row.at("Number")));
    const auto inCode = foundIn(sourceOf("func/FuncTables.cpp"), "\\{\"([A-Z0-9_]+)\", *[0-9]");
    EXPECT_EQ(rowsOf("### Kinds of accounts", 14).size(), inCode.size() + 1); // and an unknown one
}

TEST(FunctionPage, CallsWaitAsLongAsThePageSays) {
    for (const CTableRow& row : rowsOf("## The caller's thread", 9)) {
        CPageHost page;
        page.setUp("no quotes");
        page.order(row.at("Call"), codeOf(row.at("Example")));
        const std::vector<double> sleeps = page.clock.sleeps();
        EXPECT_EQ(std::accumulate(sleeps.begin(), sleeps.end(), 0.0), std::stod(row.at("Seconds")))
            << row.at("Call") << ' ' << row.at("Example");
    }
}

TEST(FunctionPage, SilentCasesAreSilent) {
    for (const CTableRow& row : rowsOf("## What is silent", 14)) {
        CPageHost page;
        page.setUp(row.at("Host"));
        page.order(row.at("Call"), codeOf(row.at("Example")));
        EXPECT_EQ(page.orders(), row.at("Orders")) << row.at("What");
        EXPECT_TRUE(page.heard.empty()) << row.at("What");
        EXPECT_TRUE(page.windows().empty()) << row.at("What");
        EXPECT_EQ(page.panel().size(), 1u) << row.at("What"); // the announcement
    }
}

} // namespace
} // namespace function_page
