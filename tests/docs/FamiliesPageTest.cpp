// Compares docs/families.md with the tables of the code, and takes the lines beside its texts down the real
// road.
#include "records/Families.h"
#include "tests/docs/FamilyRoad.h"
#include "tests/docs/PageTable.h"

#include <gtest/gtest.h>

#include <QRegularExpression>

#include <set>

namespace {

using namespace TC;

const std::string kPage = std::string(SOURCE_DIR) + "/docs/families.md";

std::vector<CTableRow> families() {
    return readTable(kPage, "## Side by side");
}

std::vector<CTableRow> texts() {
    return readTable(kPage, "## Texts");
}

const CFamily& familyOf(const std::string& number) {
    const CFamily* family = findFamily(static_cast<EOrderStrategyTradeType>(std::stoi(number)));
    if (family == nullptr) throw std::runtime_error("no family has the number " + number);
    return *family;
}

TEST(FamiliesPage, HasEveryFamilyOfTheCode) {
    std::set<int> onPage, inCode;
    for (const CTableRow& row : families()) {
        for (const int number : numbersOf(row.at("Number")))
            onPage.insert(number);
    }
    for (std::size_t i = 0; i < kFamilyCount; ++i)
        inCode.insert(static_cast<int>(kFamilies[i].m_eTradeType));
    EXPECT_EQ(onPage, inCode);
    EXPECT_EQ(families().size(), 10u);
}

TEST(FamiliesPage, NumbersAreThoseThatTheChecksAccept) {
    for (const CTableRow& row : families()) {
        const std::vector<int> listed = numbersOf(row.at("Order numbers"));
        const std::set<int> onPage(listed.begin(), listed.end());
        for (const std::string& number : listOf(row.at("Number"))) {
            for (int order = 0; order <= 130; ++order) {
                EXPECT_EQ(familyOf(number).accepts(order), onPage.count(order) > 0)
                    << row.at("Family") << ' ' << order;
            }
        }
    }
}

TEST(FamiliesPage, TraderAccountsAndSlotAreThoseOfTheCode) {
    for (const CTableRow& row : families()) {
        for (const std::string& number : listOf(row.at("Number"))) {
            const CFamily& family = familyOf(number);
            EXPECT_EQ(static_cast<int>(family.m_eTraderType), std::stoi(row.at("Trader")))
                << row.at("Family");
            EXPECT_EQ(static_cast<int>(family.m_eBrokerType), std::stoi(row.at("Accounts")))
                << row.at("Family");
            EXPECT_EQ(static_cast<int>(family.m_eSlot), std::stoi(row.at("Slot"))) << row.at("Family");
        }
    }
}

/// How the order comes to a text: words of its strategy, and what is set up behind the host's own.
struct CCause {
    std::string words;
    std::vector<std::pair<std::string, std::string>> statements;
};

const std::map<std::string, CCause>& causes() {
    static const std::map<std::string, CCause> kCauses{
        {"number", {}},
        {"account", {"", {{"param", "where => part1=no part2=where"}}}},
        {"code", {}},
        {"contract code", {}},
        {"price", {"price=5", {{"quote", "{key} none"}}}},
        {"contract price", {"price=11", {{"quote", "{key} none"}}}},
        {"no code", {"price=5", {}}},
        {"closing", {"price=11", {{"closes", "3"}, {"split", "0 100"}}}},
        {"split", {"price=11", {{"split", "100"}}}},
        {"zero", {"", {{"record", "11 0"}}}},
        {"transfer", {}},
        {"switch", {"", {{"noswitch", "mdl_order_compose_basket_buy_sell"}}}},
        {"row price", {"", {{"quote", "{key} none"}}}},
        {"star", {"volume=1", {}}},
        {"far sale", {"price=3", {}}},
        {"far purchase", {"price=7", {}}},
    };
    return kCauses;
}

/// One family of the page, with the fields of its line.
struct CExample {
    explicit CExample(const CTableRow& row)
        : line(codeSpans(row.at("Line")).at(0)), number(listOf(line).at(0)) {
        const std::vector<std::string> fields = listOf(line);
        code = fields.size() > 3 ? fields[3] : "600000";
        static const std::map<std::string, std::string> kHeads{
            {"600000", "SH"}, {"00700", "SGT"}, {"00005", "HGT"}, {"AUTD", "GOLD"}, {"430003", "NEEQ"}};
        key = (kHeads.count(code) > 0 ? kHeads.at(code) : "") + code;
    }
    std::string fill(const std::string& text) const {
        std::string filled = replaced(text, "{line}", line);
        filled = replaced(replaced(filled, "{number}", number), "{channel}", "3");
        return replaced(replaced(filled, "{code}", code), "{key}", key);
    }

    std::string line, number, code, key;
};

/// The text as a pattern for what was said.
QRegularExpression patternOf(const CExample& example, const std::string& text) {
    const std::string said = example.fill(text);
    QString pattern = QRegularExpression::escape(QString::fromStdString("error 参数错误: " + said));
    for (const char* hole : {"{price}", "{reason}"})
        pattern.replace(QRegularExpression::escape(QString::fromLatin1(hole)), QStringLiteral(".+"));
    return QRegularExpression(QRegularExpression::anchoredPattern(pattern));
}

std::string saidFor(const CExample& example, const std::string& family, const CTableRow& text) {
    const CCause& cause = causes().at(text.at("Text"));
    CFamilyRoad road;
    for (const auto& [word, rest] : cause.statements)
        road.set(word, example.fill(rest));
    road.addStrategy(3, family, cause.words);
    std::string lines = example.fill(codeSpans(text.at("Line")).at(0)) + "\n";
    if (text.at("Text") == "account") lines += "orderParam=where\n";
    return findLine(road.drop(3, lines), "error ");
}

TEST(FamiliesPage, EveryTextIsSaidByItsFamilies) {
    std::map<std::string, CTableRow> byName;
    for (const CTableRow& text : texts())
        byName[text.at("Text")] = text;
    std::set<std::string> used;
    for (const CTableRow& row : families()) {
        const CExample example(row);
        for (const std::string& name : listOf(row.at("Texts"))) {
            ASSERT_EQ(byName.count(name), 1u) << name;
            const CTableRow& text = byName.at(name);
            const std::string family = listOf(row.at("Number")).at(0);
            const std::string said = saidFor(example, family, text);
            const QRegularExpression pattern = patternOf(example, codeSpans(text.at("Said")).at(0));
            EXPECT_TRUE(pattern.match(QString::fromStdString(said)).hasMatch())
                << row.at("Family") << ", " << name << ": " << said << " is not "
                << pattern.pattern().toStdString();
            used.insert(name);
        }
    }
    EXPECT_EQ(used.size(), byName.size());
}

TEST(FamiliesPage, EveryLineOfTheTableGoesOut) {
    for (const CTableRow& row : families()) {
        for (const std::string& family : listOf(row.at("Number"))) {
            CFamilyRoad road;
            road.addStrategy(3, family);
            const auto log = road.drop(3, CExample(row).line + "\n");
            EXPECT_EQ(findLine(log, "command "), log.back()) << row.at("Family");
            EXPECT_NE(findLine(log, "command trader " + row.at("Trader") + " "), "") << row.at("Family");
        }
    }
}

TEST(FamiliesPage, OtherTradeTypesAreTold) {
    CFamilyRoad road;
    road.addStrategy(3, "7", "account=A1");
    const auto log = road.drop(3, "23,0,10,600000,100\n");
    EXPECT_EQ(log.back(), "message [文件单]　通道号: 3, 交易类型错误!");
}

} // namespace
