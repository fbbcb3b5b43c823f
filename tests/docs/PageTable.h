#pragma once

#include <cstddef>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

/// One row of a page's table. The keys are the column heads.
using CTableRow = std::map<std::string, std::string>;

inline std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

/// The cells of "| a | b |". A bar after a backslash belongs to its cell.
inline std::vector<std::string> readCells(const std::string& line) {
    std::vector<std::string> cells;
    std::string cell;
    for (std::size_t i = 1; i < line.size(); ++i) {
        if (line[i] == '\\' && i + 1 < line.size() && line[i + 1] == '|') {
            cell += line[++i];
        } else if (line[i] == '|') {
            cells.push_back(trimmed(cell));
            cell.clear();
        } else {
            cell += line[i];
        }
    }
    return cells;
}

/// The rows of the first table after the line `heading`. Throws if there is no table.
inline std::vector<CTableRow> readTable(const std::string& path, const std::string& heading) {
    std::ifstream page(path);
    std::string line;
    while (std::getline(page, line) && line != heading) {
    }
    while (std::getline(page, line) && line.compare(0, 1, "|") != 0) {
    }
    if (!page) throw std::runtime_error("no table behind \"" + heading + "\" in " + path);
    const std::vector<std::string> heads = readCells(line);
    std::getline(page, line); // the separator line below the heads
    std::vector<CTableRow> rows;
    while (std::getline(page, line) && line.compare(0, 1, "|") == 0) {
        const std::vector<std::string> cells = readCells(line);
        if (cells.size() != heads.size()) throw std::runtime_error("cells are missing: " + line);
        rows.emplace_back();
        for (std::size_t i = 0; i < heads.size(); ++i)
            rows.back()[heads[i]] = cells[i];
    }
    return rows;
}

/// All texts between backquotes in a cell, in their order.
inline std::vector<std::string> codeSpans(const std::string& cell) {
    std::vector<std::string> spans;
    std::istringstream stream(cell);
    bool inside = false;
    for (std::string part; std::getline(stream, part, '`'); inside = !inside) {
        if (inside) spans.push_back(part);
    }
    return spans;
}

/// The parts of "a, b".
inline std::vector<std::string> listOf(const std::string& cell) {
    std::vector<std::string> parts;
    std::istringstream stream(cell);
    for (std::string part; std::getline(stream, part, ',');)
        parts.push_back(trimmed(part));
    return parts;
}

/// All numbers of "0-15, 100".
inline std::vector<int> numbersOf(const std::string& cell) {
    std::vector<int> numbers;
    for (const std::string& run : listOf(cell)) {
        const std::size_t dash = run.find('-', 1);
        const int first = std::stoi(run);
        const int last = dash == std::string::npos ? first : std::stoi(run.substr(dash + 1));
        for (int number = first; number <= last; ++number)
            numbers.push_back(number);
    }
    return numbers;
}

inline std::string replaced(std::string text, const std::string& what, const std::string& with) {
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size()))
        text.replace(at, what.size(), with);
    return text;
}
