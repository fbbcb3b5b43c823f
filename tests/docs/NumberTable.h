#pragma once

#include "tests/docs/Pages.h"

#include <set>

/// An example of one order number from a page's table of all numbers, and its result.
struct CNumberExample {
    int number;
    std::string family; ///< the name in families.md
    std::string lines;  ///< each with its line feed
    std::string order;  ///< the order as text
    bool goesOut;
};

/// Reads the table. Each number of each row gives one example. source: the kind of source that the order
/// names.
inline std::vector<CNumberExample> readNumbers(const std::string& page, const std::string& heading,
                                               const std::string& source) {
    std::vector<CNumberExample> examples;
    for (const CTableRow& row : readTable(page, heading)) {
        const std::vector<std::string> order = codeSpans(row.at("Order"));
        for (const int number : numbersOf(row.at("Numbers"))) {
            const std::string text = std::to_string(number);
            std::string lines;
            for (const std::string& line : codeSpans(row.at("Line")))
                lines += (line.compare(0, 2, "N,") == 0 ? text + line.substr(1) : line) + "\n";
            examples.push_back({number, row.at("Family"), lines,
                                "order_type=" + text + " channel=3 strategy_type=" + source +
                                    (order.empty() ? "" : " " + order.front()) + "\n",
                                row.at("Goes out").compare(0, 3, "yes") == 0});
        }
    }
    return examples;
}

/// All numbers that the grammar accepts.
inline std::set<int> grammarNumbers() {
    const std::vector<int> numbers = numbersOf("0-15, 23-39, 48-57, 66-92, 100, 110-119");
    return {numbers.begin(), numbers.end()};
}

/// The trade types of the families that families.md names.
inline std::map<std::string, std::string> familyNumbers() {
    std::map<std::string, std::string> numbers;
    for (const CTableRow& row : familyRows())
        numbers[row.at("Family")] = listOf(row.at("Number")).at(0);
    return numbers;
}
