// Compares the tables of docs/desk-reference.md with the keys and words that the desk reads.
#include "desk/config/ConfigLoader.h"
#include "desk/config/Words.h"
#include "orderservice/records/Families.h"
#include "orderservice/records/OrderSetting.h"
#include "tests/docs/PageTable.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace {

using CKeys = std::set<std::string>;

const std::string kDeskPage = std::string(SOURCE_DIR) + "/docs/desk-reference.md";

/// A folder with an unknown key in each table. The resulting mistakes list the known keys.
const char* const kDeskToml = R"(no_key = 1
user = { no_key = 1 }
desk = { no_key = 1 }
socket = { no_key = 1 }
switches = { no_key = 1 }
settings = { no_key = 1, stock = { no_key = 1 } }
account = [{ no_key = 1 }]
group = [{ no_key = 1, members = [{ no_key = 1 }] }]
basket = [{ no_key = 1, rows = [{ no_key = 1 }] }]
portfolio = [{ no_key = 1, rows = [{ no_key = 1 }] }]
)";
const char* const kStrategiesToml = "strategy = [{ no_key = 1, setting = [{ no_key = 1 }] }]\n";

/// The keys that the desk knows, grouped by the name of their table.
std::map<std::string, CKeys> keysOfTheCode() {
    const CTempFolder folder;
    folder.write("desk.toml", kDeskToml);
    folder.write("strategies.toml", kStrategiesToml);
    std::map<std::string, CKeys> keys;
    const std::string middle = ": unknown key \"no_key\"; expected one of ";
    for (const desk::CDiagnostic& mistake : desk::loadDeskConfig(folder.path()).mistakes) {
        const std::size_t place = mistake.message.find(middle);
        if (place == std::string::npos) continue;
        for (const std::string& key : listOf(mistake.message.substr(place + middle.size())))
            keys[mistake.message.substr(0, place)].insert(key);
    }
    return keys;
}

void insertSpans(const std::string& cell, CKeys& keys) {
    for (const std::string& key : codeSpans(cell))
        keys.insert(key);
}

/// The code spans in a column.
CKeys column(const std::string& heading, const std::string& head) {
    CKeys keys;
    for (const CTableRow& row : readTable(kDeskPage, heading))
        insertSpans(row.at(head), keys);
    return keys;
}

/// The keys of desk.toml on the page, grouped by their table as the page writes it. An empty cell means the
/// table of the row above.
std::map<std::string, CKeys> keysOfThePage() {
    std::map<std::string, CKeys> keys;
    std::string table;
    for (const CTableRow& row : readTable(kDeskPage, "### desk.toml")) {
        if (!row.at("Table").empty()) table = codeSpans(row.at("Table")).at(0);
        insertSpans(row.at("Key"), keys[table]);
    }
    return keys;
}

TEST(DeskPage, HasTheKeysOfDeskToml) {
    const std::map<std::string, CKeys> code = keysOfTheCode();
    const std::map<std::string, CKeys> page = keysOfThePage();
    const std::map<std::string, std::string> tables = {{"[user]", "user"},
                                                       {"[desk]", "desk"},
                                                       {"[socket]", "socket"},
                                                       {"[settings.NAME]", "settings.stock"},
                                                       {"[[group]]", "group"},
                                                       {"[[basket]]", "basket"},
                                                       {"[[portfolio]]", "portfolio"}};
    for (const auto& [onPage, inCode] : tables)
        EXPECT_EQ(page.at(onPage), code.at(inCode)) << onPage;
    CKeys names;
    for (const auto& [table, keys] : page)
        names.insert(table.substr(table.find_first_not_of('['),
                                  table.find_first_of(".]") - table.find_first_not_of('[')));
    EXPECT_EQ(names, code.at("desk.toml"));
    EXPECT_EQ(column("### Accounts and positions", "Key of `[[account]]`"), code.at("account"));
}

TEST(DeskPage, HasTheKeysOfRows) {
    const std::map<std::string, CKeys> code = keysOfTheCode();
    CKeys basket, portfolio;
    for (const CTableRow& row : readTable(kDeskPage, "### Baskets and portfolios")) {
        if (!row.at("Of a basket").empty()) insertSpans(row.at("Key of a row"), basket);
        if (!row.at("Of a portfolio").empty()) insertSpans(row.at("Key of a row"), portfolio);
    }
    EXPECT_EQ(basket, code.at("basket.rows"));
    EXPECT_EQ(portfolio, code.at("portfolio.rows"));
}

TEST(DeskPage, HasTheKeysOfStrategies) {
    EXPECT_EQ(column("## Strategies", "Key"), keysOfTheCode().at("strategy"));
}

TEST(DeskPage, HasTheSwitches) {
    EXPECT_EQ(column("### Switches", "Switch"), desk::switchNames());
}

/// The page's words for the initial values of a family's setting.
std::string startOf(const std::string& family, TC::EOrderStrategyTradeType tradeType) {
    static const std::map<TC::EDefaultSetting, std::string> tables = {
        {TC::EDefaultSetting::Stock, "`[settings.stock]`"},
        {TC::EDefaultSetting::Future, "`[settings.future]`"},
        {TC::EDefaultSetting::Basket, "`[settings.basket]`"},
        {TC::EDefaultSetting::Option, "`[settings.option]`"}};
    const TC::EDefaultSetting start = TC::defaultForSlot(TC::findFamily(tradeType)->m_eSlot);
    if (start == TC::EDefaultSetting::None)
        return "none: it starts at the latest price, whatever `desk.toml` says";
    const auto named = tables.find(start);
    return named != tables.end() ? named->second : "`[settings." + family + "]`";
}

TEST(DeskPage, HasTheSettingsThatFamiliesStartFrom) {
    std::map<std::string, std::string> onPage, inCode;
    for (const CTableRow& row : readTable(kDeskPage, "### Settings of the families")) {
        for (const std::string& family : codeSpans(row.at("`family`")))
            onPage[family] = row.at("Starts from");
    }
    for (const auto& [word, number] : desk::familyWords())
        inCode[word] = startOf(word, static_cast<TC::EOrderStrategyTradeType>(number));
    EXPECT_EQ(onPage, inCode);
}

/// The numbers of a cell. "4, 3" gives these two, "30 to 34" gives all numbers of the range.
std::vector<int> numbersOfCell(const std::string& cell) {
    const std::size_t to = cell.find(" to ");
    return numbersOf(to == std::string::npos ? cell : cell.substr(0, to) + "-" + cell.substr(to + 4));
}

/// The words of a cell. "`sell6` to `sell10`" gives all words of the range.
std::vector<std::string> wordsOfCell(const std::string& cell) {
    std::vector<std::string> words = codeSpans(cell);
    if (words.size() < 2) return words;
    const std::size_t digits = words[0].find_first_of("0123456789");
    const std::string stem = words[0].substr(0, digits);
    const int last = std::stoi(words[1].substr(digits));
    const int first = std::stoi(words[0].substr(digits));
    words.clear();
    for (int level = first; level <= last; ++level)
        words.push_back(stem + std::to_string(level));
    return words;
}

TEST(DeskPage, HasThePriceTypesWithTheirNumbers) {
    std::map<std::string, int> onPage;
    for (const CTableRow& row : readTable(kDeskPage, "### Price types")) {
        const std::vector<std::string> words = wordsOfCell(row.at("Word"));
        const std::vector<int> numbers = numbersOfCell(row.at("Number"));
        ASSERT_EQ(words.size(), numbers.size()) << row.at("Word");
        for (std::size_t i = 0; i < words.size(); ++i)
            onPage[words[i]] = numbers[i];
    }
    EXPECT_EQ(onPage, desk::priceTypeWords());
}

} // namespace
