// Compares the words of docs/families.md with the results of the family checks.
#include "tests/docs/FamilyProbe.h"
#include "tests/docs/Pages.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <set>

namespace {

using namespace TC;

/// The parts of "word; 3-4, 7 other word; ...".
std::vector<std::string> partsOf(const std::string& cell) {
    std::vector<std::string> parts;
    std::istringstream stream(cell);
    for (std::string part; std::getline(stream, part, ';');)
        parts.push_back(trimmed(part));
    return parts;
}

/// The word of a cell for an order number. It is in the part that names the number, otherwise in the first
/// part.
std::string wordFor(const std::string& cell, int number) {
    const std::vector<std::string> parts = partsOf(cell);
    for (std::size_t i = 1; i < parts.size(); ++i) {
        const std::size_t end = parts[i].find_first_not_of("0123456789-, ");
        const std::vector<int> numbers = numbersOf(trimmed(parts[i].substr(0, end)));
        if (std::count(numbers.begin(), numbers.end(), number) > 0) return parts[i].substr(end);
    }
    return parts.at(0);
}

/// The numbers that a cell names after its first word.
std::set<int> numbersIn(const std::string& cell) {
    std::set<int> all;
    const std::vector<std::string> parts = partsOf(cell);
    for (std::size_t i = 1; i < parts.size(); ++i) {
        const std::size_t end = parts[i].find_first_not_of("0123456789-, ");
        for (const int number : numbersOf(trimmed(parts[i].substr(0, end))))
            all.insert(number);
    }
    return all;
}

/// The words in a section's table. Each word has its row, without the column of the word.
std::map<std::string, CTableRow> vocabulary(const std::string& heading) {
    std::map<std::string, CTableRow> words;
    for (CTableRow row : readTable(kFamiliesPage, heading)) {
        const std::string word = row.at("Word");
        row.erase("Word");
        EXPECT_TRUE(words.emplace(word, row).second) << word << " stands twice under " << heading;
    }
    return words;
}

std::string textOf(const CTableRow& row) {
    std::string text;
    for (const auto& [head, cell] : row)
        text += head + " = " + cell + "\n";
    return text;
}

using CProbed = std::function<CTableRow(const CFamilyProbe&)>;

/// Every number of every family must do what the row of its word says, and every word must be used.
void expectWords(const std::string& column, const std::string& heading, const CProbed& probed) {
    const std::map<std::string, CTableRow> words = vocabulary(heading);
    std::set<std::string> used;
    for (const CTableRow& row : familyRows()) {
        const std::vector<int> numbers = numbersOf(row.at("Order numbers"));
        for (const int number : numbersIn(row.at(column)))
            EXPECT_EQ(std::count(numbers.begin(), numbers.end(), number), 1) << row.at("Family") << number;
        for (const std::string& family : listOf(row.at("Number"))) {
            const auto type = static_cast<EOrderStrategyTradeType>(std::stoi(family));
            for (const int number : numbers) {
                const std::string word = wordFor(row.at(column), number);
                ASSERT_EQ(words.count(word), 1u) << row.at("Family") << ": " << word;
                const CFamilyProbe probe(families::find(type), number);
                EXPECT_EQ(textOf(probed(probe)), textOf(words.at(word)))
                    << row.at("Family") << ' ' << number << ", " << column << ": " << word;
                used.insert(word);
            }
        }
    }
    EXPECT_EQ(used.size(), words.size()) << "a word under " << heading << " is nobody's";
}

TEST(FamilyWords, OfCodesAreWhatTheChecksTake) {
    expectWords("Code", "## Codes", [](const CFamilyProbe& probe) { return probe.codes(); });
}

TEST(FamilyWords, OfPricesAreWhatTheChecksTake) {
    expectWords("Price", "## Prices", [](const CFamilyProbe& probe) { return probe.prices(); });
}

TEST(FamilyWords, OfVolumesAreWhatComesOut) {
    expectWords("Volume", "## Volumes", [](const CFamilyProbe& probe) { return probe.volumes(); });
}

TEST(FamilyWords, OfRecordsAreTheirFields) {
    expectWords("Record", "## Records", [](const CFamilyProbe& probe) {
        std::string fields;
        for (const std::string& field : probe.record())
            fields += (fields.empty() ? "" : ", ") + field;
        return CTableRow{{"Fields", fields.empty() ? "no record" : fields}};
    });
}

/// In "2, then 3; 6: 2" the trade type 6 has the text "2".
std::string accountsFor(const std::string& cell, const std::string& family) {
    const std::vector<std::string> parts = partsOf(cell);
    for (std::size_t i = 1; i < parts.size(); ++i) {
        if (parts[i].compare(0, family.size() + 2, family + ": ") == 0)
            return parts[i].substr(family.size() + 2);
    }
    return parts.at(0);
}

TEST(FamilyWords, AccountsAreLookedUpUnderThoseKindsOneAfterTheOther) {
    for (const CTableRow& row : familyRows()) {
        for (const std::string& family : listOf(row.at("Number"))) {
            std::string kinds;
            const auto type = static_cast<EOrderStrategyTradeType>(std::stoi(family));
            for (const int kind : CFamilyProbe::brokerKinds(families::find(type)))
                kinds += (kinds.empty() ? "" : ", then ") + std::to_string(kind);
            EXPECT_EQ(accountsFor(row.at("Accounts"), family), kinds) << row.at("Family") << ' ' << family;
        }
    }
}

} // namespace
