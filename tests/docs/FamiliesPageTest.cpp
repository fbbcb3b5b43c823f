// Compares docs/families.md with the tables of the code. Sends the line next to each text of the page to the
// real service.
#include "orderservice/records/Families.h"
#include "tests/docs/FamilyProbe.h"
#include "tests/docs/FamilyService.h"
#include "tests/docs/Pages.h"

#include <gtest/gtest.h>

#include <QRegularExpression>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>

namespace {

using namespace TC;

std::vector<CTableRow> texts() {
    return readTable(kFamiliesPage, "## Texts");
}

const CFamily& familyOf(const std::string& number) {
    const CFamily* family = findFamily(static_cast<EOrderStrategyTradeType>(std::stoi(number)));
    if (family == nullptr) throw std::runtime_error("no family has the number " + number);
    return *family;
}

TEST(FamiliesPage, HasEveryFamilyOfTheCode) {
    std::set<int> onPage, inCode;
    for (const CTableRow& row : familyRows()) {
        for (const int number : numbersOf(row.at("Number")))
            onPage.insert(number);
    }
    for (std::size_t i = 0; i < kFamilyCount; ++i)
        inCode.insert(static_cast<int>(kFamilies[i].m_eTradeType));
    EXPECT_EQ(onPage, inCode);
    EXPECT_EQ(familyRows().size(), 10u);
}

TEST(FamiliesPage, NumbersAreThoseThatTheChecksAccept) {
    for (const CTableRow& row : familyRows()) {
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

TEST(FamiliesPage, TraderAndSlotAreThoseOfTheCode) {
    for (const CTableRow& row : familyRows()) {
        for (const std::string& number : listOf(row.at("Number"))) {
            const CFamily& family = familyOf(number);
            EXPECT_EQ(static_cast<int>(family.m_eTraderType), std::stoi(row.at("Trader")))
                << row.at("Family");
            EXPECT_EQ(static_cast<int>(family.m_eSlot), std::stoi(row.at("Slot"))) << row.at("Family");
        }
    }
}

/// How to provoke a text: words of the strategy, and statements that set up the host after its default setup.
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
        {"closing", {"price=11", {{"split", "0 100"}}}},
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

/// One family of the page and the fields of its example line.
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

/// A text of the page as a pattern. The words that the host or the trading layer adds match anything.
QRegularExpression patternOf(const std::string& text, const std::vector<const char*>& openHoles) {
    QString pattern = QRegularExpression::escape(QString::fromStdString("error 参数错误: " + text));
    for (const char* hole : openHoles)
        pattern.replace(QRegularExpression::escape(QString::fromLatin1(hole)), QStringLiteral(".*"));
    return QRegularExpression(QRegularExpression::anchoredPattern(pattern));
}

bool isSaid(const QRegularExpression& pattern, const std::string& said) {
    return pattern.match(QString::fromStdString(said)).hasMatch();
}

/// The pattern of the text, with the values of the example's line.
QRegularExpression patternFor(const CExample& example, const CTableRow& text) {
    return patternOf(example.fill(codeSpans(text.at("Said")).at(0)), {"{price}", "{reason}"});
}

/// The pattern of the text, with any values of the line.
QRegularExpression anyPatternOf(const CTableRow& text) {
    return patternOf(codeSpans(text.at("Said")).at(0),
                     {"{channel}", "{code}", "{key}", "{price}", "{reason}", "999999"});
}

/// The family's message when a text is provoked. For an order with several lines the check is called
/// directly.
std::string saidFor(const CExample& example, const std::string& family, const CTableRow& text) {
    const std::string& name = text.at("Text");
    if (name == "lines") {
        const auto type = static_cast<EOrderStrategyTradeType>(std::stoi(family));
        const std::string said = CFamilyProbe::saidToTwoLines(families::find(type));
        return said.empty() ? said : "error 参数错误: " + said;
    }
    const CCause& cause = causes().at(name);
    CFamilyService run;
    for (const auto& [word, rest] : cause.statements)
        run.set(word, example.fill(rest));
    run.addStrategy(3, family, cause.words);
    std::string lines = example.fill(codeSpans(text.at("Line")).at(0)) + "\n";
    if (name == "account") lines += "orderParam=where\n";
    return findLine(run.drop(3, lines), "error ");
}

/// Whether the message is one of these texts of the page, for any line.
bool isOneOf(const std::vector<CTableRow>& all, const std::vector<std::string>& names,
             const std::string& said) {
    return std::any_of(all.begin(), all.end(), [&](const CTableRow& text) {
        return std::count(names.begin(), names.end(), text.at("Text")) > 0 &&
               isSaid(anyPatternOf(text), said);
    });
}

/// Provokes each text of the page in each family. If the text is listed for the family, the family must
/// report it. Otherwise its message must be one of its own texts.
TEST(FamiliesPage, EveryTextIsSaidByItsFamiliesAndByNoOther) {
    const std::vector<CTableRow> all = texts();
    std::set<std::string> used, known;
    for (const CTableRow& row : familyRows()) {
        const CExample example(row);
        const std::vector<std::string> listed = listOf(row.at("Texts"));
        used.insert(listed.begin(), listed.end());
        for (const CTableRow& text : all) {
            known.insert(text.at("Text"));
            const bool isListed = std::count(listed.begin(), listed.end(), text.at("Text")) > 0;
            const std::string said = saidFor(example, listOf(row.at("Number")).at(0), text);
            EXPECT_EQ(isSaid(patternFor(example, text), said), isListed)
                << row.at("Family") << ", " << text.at("Text") << ": " << said;
            EXPECT_TRUE(said.empty() || isOneOf(all, listed, said)) << row.at("Family") << ": " << said;
        }
    }
    EXPECT_EQ(used, known);
}

/// The texts in the code of the checks, with their placeholders (%1 and so on).
std::set<QString> textsOfTheCode() {
    static const QRegularExpression kLiteral(QStringLiteral("\"([^\"]*\\p{Han}[^\"]*)\""));
    static const std::regex kFile(".*Checks?\\.cpp|CheckFrame\\.(cpp|h)");
    std::set<QString> found;
    for (const auto& entry : std::filesystem::directory_iterator(std::string(SOURCE_DIR) + "/src/check")) {
        if (!std::regex_match(entry.path().filename().string(), kFile)) continue;
        std::ifstream file(entry.path());
        const std::string content{std::istreambuf_iterator<char>(file), {}};
        auto match = kLiteral.globalMatch(QString::fromStdString(content));
        while (match.hasNext())
            found.insert(match.next().captured(1));
    }
    return found;
}

TEST(FamiliesPage, EveryTextOfTheCodeIsOnThePage) {
    std::vector<CTableRow> all = texts();
    const std::vector<CTableRow> special = readTable(kFamiliesPage, "## Texts of special cases");
    all.insert(all.end(), special.begin(), special.end());
    const std::set<QString> ofTheCode = textsOfTheCode();
    EXPECT_GE(ofTheCode.size(), 15u);
    for (const QString& text : ofTheCode) {
        QString pattern = QRegularExpression::escape(text);
        pattern.replace(QRegularExpression(QStringLiteral("\\\\%\\d")), QStringLiteral(".*"));
        const QRegularExpression expected(pattern);
        EXPECT_TRUE(std::any_of(all.begin(), all.end(), [&](const CTableRow& row) {
            return expected.match(QString::fromStdString(row.at("Said"))).hasMatch();
        })) << text.toStdString();
    }
}

TEST(FamiliesPage, EveryLineOfTheTableGoesOut) {
    for (const CTableRow& row : familyRows()) {
        for (const std::string& family : listOf(row.at("Number"))) {
            CFamilyService run;
            run.addStrategy(3, family);
            const auto log = run.drop(3, CExample(row).line + "\n");
            EXPECT_EQ(findLine(log, "command "), log.back()) << row.at("Family");
            EXPECT_NE(findLine(log, "command trader " + row.at("Trader") + " "), "") << row.at("Family");
        }
    }
}

TEST(FamiliesPage, OtherTradeTypesAreReported) {
    CFamilyService run;
    run.addStrategy(3, "7", "account=A1");
    const auto log = run.drop(3, "23,0,10,600000,100\n");
    EXPECT_EQ(log.back(), "message [文件单]　通道号: 3, 交易类型错误!");
}

} // namespace
