// Compares the failures of docs/function-trading.md with the code: their texts, and who hears them.
#include "tests/func/FunctionPageHost.h"

#include <QRegularExpression>
#include <QString>

#include <gtest/gtest.h>

#include <cctype>
#include <cstddef>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace function_page {
namespace {

constexpr char kFailures[] = "## Failures";
constexpr char kOtherMessages[] = "### Messages that are not failures";

/// The texts of a table, with the row's other cells.
std::vector<CTableRow> textRows(const std::string& heading, std::size_t atLeast) {
    std::vector<CTableRow> rows = rowsOf(heading, atLeast);
    for (CTableRow& row : rows)
        row["Text"] = codeOf(row.at("Text"));
    return rows;
}

const std::vector<CTableRow>& failureRows() {
    static const std::vector<CTableRow> kRows = textRows(kFailures, 50);
    return kRows;
}

bool isMatch(const CTableRow& row, const std::string& text) {
    return expressionOf(row.at("Text")).match(QString::fromStdString(text)).hasMatch();
}

bool endsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

/// Whether the row is for calls of the family.
bool isFor(const CTableRow& row, const std::string& family) {
    for (const std::string& word : listOf(row.at("Call"))) {
        const bool isBasket = word == "baskets" && endsWith(family, "basket");
        if (word == "all" || word == family || isBasket) return true;
    }
    return false;
}

/// The row of a text that a call of the family has caused, or null.
const CTableRow* rowOfText(const std::string& text, const std::string& family) {
    for (const CTableRow& row : failureRows()) {
        if (isFor(row, family) && isMatch(row, text)) return &row;
    }
    return nullptr;
}

/// A call whose parameters are no example of a family has no family: any will do.
std::string familyOfCall(const CTableRow& row) {
    return row.at("Call") == "text" ? "stock" : row.at("Call");
}

bool isOneOf(const std::vector<std::string>& texts, const std::string& text) {
    for (const std::string& one : texts) {
        if (one == text) return true;
    }
    return false;
}

/// The texts of the panel without announcements.
std::vector<std::string> failuresOnPanel(const CPageHost& page) {
    static const std::vector<CTableRow> kOthers = textRows(kOtherMessages, 2);
    std::vector<std::string> texts;
    for (const std::string& text : page.panel()) {
        bool isOther = false;
        for (const CTableRow& row : kOthers)
            isOther = isOther || isMatch(row, text);
        if (!isOther) texts.push_back(text);
    }
    return texts;
}

/// Everything that anybody hears must be a text of the page.
void expectTextsOfThePage(const CPageHost& page, const std::string& family) {
    for (const auto& texts : {failuresOnPanel(page), page.windows(), page.heardTexts()}) {
        for (const std::string& text : texts)
            EXPECT_NE(rowOfText(text, family), nullptr) << text;
    }
}

TEST(FunctionFailuresPage, ExamplesAreHeardByThoseOfThePage) {
    for (const CTableRow& example : textRows("### Examples of failures", 60)) {
        const std::string& text = example.at("Text");
        const CTableRow* const row = rowOfText(text, familyOfCall(example));
        ASSERT_NE(row, nullptr) << text;
        CPageHost page;
        page.setUp(example.at("Host"));
        page.order(example.at("Call"), codeOf(example.at("Example")));
        const std::vector<std::string> heardBy = listOf(row->at("Heard by"));
        const std::string where = example.at("Example") + ' ' + text;
        EXPECT_EQ(isOneOf(failuresOnPanel(page), text), isOneOf(heardBy, "user")) << where;
        EXPECT_EQ(isOneOf(page.windows(), text), isOneOf(heardBy, "window")) << where;
        EXPECT_EQ(isOneOf(page.heardTexts(), text), isOneOf(heardBy, "call-back")) << where;
        expectTextsOfThePage(page, familyOfCall(example));
    }
}

TEST(FunctionFailuresPage, ExamplesEndWhatThePageSays) {
    for (const CTableRow& example : textRows("### Examples of failures", 60)) {
        const CTableRow* const row = rowOfText(example.at("Text"), familyOfCall(example));
        ASSERT_NE(row, nullptr) << example.at("Text");
        if (row->at("Ends") == "nothing") continue; // something else may have ended the call
        CPageHost page;
        page.setUp(example.at("Host"));
        page.order(example.at("Call"), codeOf(example.at("Example")));
        const bool isSent = page.orders() != "nothing is sent";
        EXPECT_EQ(isSent, row->at("Ends") != "the call") << example.at("Example") << example.at("Text");
        EXPECT_EQ(page.hasThrown, example.at("Host") == "throws") << example.at("Example");
    }
}

TEST(FunctionFailuresPage, EveryFailureHasAnExampleUnlessNoCallReachesIt) {
    std::set<const CTableRow*> shown;
    for (const CTableRow& example : textRows("### Examples of failures", 60))
        shown.insert(rowOfText(example.at("Text"), familyOfCall(example)));
    for (const CTableRow& row : failureRows()) {
        const bool isReached = row.at("When").find("no call can reach it") == std::string::npos;
        EXPECT_EQ(shown.count(&row) > 0, isReached) << row.at("Text");
        EXPECT_EQ(row.at("Call") == "none", !isReached) << row.at("Text");
    }
}

TEST(FunctionFailuresPage, TitleOfAWindowIsThatOfThePage) {
    CPageHost page;
    page.order("stock", changeOf({{"orderCode", "999999"}}));
    ASSERT_EQ(page.host.orders.errors.size(), 1u);
    EXPECT_EQ(page.host.orders.errors[0].title, QStringLiteral("参数错误"));
}

/// A text constant of a source file.
struct CLiteral {
    std::string text;
    bool isConstant; ///< it initialises an array
};

/// Reads the text from its opening quote on, and texts that directly follow it. `at` is moved behind them.
std::string readLiteral(const std::string& source, std::size_t& at) {
    std::string text;
    for (;;) {
        for (++at; at < source.size() && source[at] != '"'; ++at) {
            if (source[at] == '\\') text += source[at++];
            text += source[at];
        }
        std::size_t next = at + 1;
        while (next < source.size() && std::isspace(static_cast<unsigned char>(source[next])) != 0)
            ++next;
        if (next >= source.size() || source[next] != '"') return text;
        at = next;
    }
}

/// All text constants of a source file, without its comments.
std::vector<CLiteral> literalsOf(const std::string& source) {
    std::vector<CLiteral> literals;
    for (std::size_t at = 0; at < source.size(); ++at) {
        if (source.compare(at, 2, "//") == 0) {
            at = source.find('\n', at);
            if (at == std::string::npos) break;
        } else if (source[at] == '\'' && std::isalnum(static_cast<unsigned char>(source[at - 1])) == 0) {
            at += source[at + 1] == '\\' ? 3u : 2u; // a character, and not a sign between digits
        } else if (source[at] == '"') {
            const bool isConstant =
                endsWith(source.substr(0, at), "[] = ") || endsWith(source.substr(0, at), "[] =\n    ");
            const std::string text = readLiteral(source, at);
            literals.push_back({text, isConstant});
        }
    }
    return literals;
}

bool hasChinese(const std::string& text) {
    for (const char letter : text) {
        if (static_cast<unsigned char>(letter) >= 0x80) return true;
    }
    return false;
}

/// Placeholders of the code and of the page in one form.
std::string normal(const std::string& text) {
    static const QRegularExpression kPlaceholder(QStringLiteral("%[0-9]|\\{[a-z]+\\}"));
    return QString::fromStdString(text).replace(kPlaceholder, QStringLiteral("%")).toStdString();
}

/// The texts for users in a file. The reasons of two files are constants, of which one is not in Chinese.
std::set<std::string> textsOfFile(const std::string& path) {
    const bool hasReasons = endsWith(path, "FuncParser.cpp") || endsWith(path, "FuncStrategy.cpp");
    std::set<std::string> texts;
    for (const CLiteral& literal : literalsOf(sourceOf(path))) {
        if (hasChinese(literal.text) || (hasReasons && literal.isConstant))
            texts.insert(normal(literal.text));
    }
    return texts;
}

std::set<std::string> textsOfTheCode() {
    std::set<std::string> texts;
    const std::string folder = std::string(ORDERSERVICE_SOURCE_DIR) + "/src/func";
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        const std::string name = entry.path().filename().string();
        if (endsWith(name, ".cpp") || endsWith(name, ".h")) texts.merge(textsOfFile("func/" + name));
    }
    return texts;
}

/// The part of the text between begin and end, or an empty text.
std::string between(const std::string& text, const std::string& begin, const std::string& end) {
    const bool isInside = text.size() >= begin.size() + end.size() &&
                          text.compare(0, begin.size(), begin) == 0 && endsWith(text, end);
    return isInside ? text.substr(begin.size(), text.size() - begin.size() - end.size()) : std::string();
}

/// The constants of the code that a text of the page may be made of.
std::set<std::string> constantsOf(const std::string& text) {
    const std::string shown = normal(text);
    const std::string head = "[函数交易]　函数: %, ";
    std::set<std::string> constants = {shown};
    constants.insert(between(shown, "%", ""));             // behind the title of options
    constants.insert(between(shown, "[接口单]　", ": %")); // an exception
    if (!between(shown, head, "").empty()) {
        constants.insert(between(shown, head, "")); // a reason of the parser
        constants.insert(head + '%');
    }
    return constants;
}

std::vector<std::string> textsOfThePage() {
    std::vector<std::string> texts;
    for (const CTableRow& row : failureRows())
        texts.push_back(row.at("Text"));
    for (const CTableRow& row : textRows(kOtherMessages, 2))
        texts.push_back(row.at("Text"));
    for (const CTableRow& row : rowsOf("## The command guard", 4))
        texts.push_back(codeOf(row.at("Reason")));
    return texts;
}

TEST(FunctionFailuresPage, HasEveryTextOfTheCode) {
    const std::set<std::string> inCode = textsOfTheCode();
    EXPECT_GT(inCode.size(), 40u);
    std::set<std::string> onPage;
    for (const std::string& text : textsOfThePage())
        onPage.merge(constantsOf(text));
    for (const std::string& text : inCode)
        EXPECT_EQ(onPage.count(text), 1u) << text;
}

TEST(FunctionFailuresPage, HasNoTextThatNoCodeHas) {
    std::set<std::string> inCode = textsOfTheCode();
    inCode.erase("[函数交易]　函数: %, %"); // it is part of other texts
    inCode.merge(textsOfFile("check/CommandGuard.cpp"));
    for (const std::string& text : textsOfThePage()) {
        bool isInCode = false;
        for (const std::string& constant : constantsOf(text))
            isInCode = isInCode || inCode.count(constant) > 0;
        EXPECT_TRUE(isInCode) << text;
    }
}

} // namespace
} // namespace function_page
