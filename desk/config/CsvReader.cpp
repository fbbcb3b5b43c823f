#include "desk/config/CsvReader.h"

#include "desk/config/TextFile.h"
#include "desk/config/Words.h"
#include "orderservice/base/Text.h"

#include <boost/algorithm/string.hpp>

#include <algorithm>
#include <sstream>
#include <utility>

namespace desk {
namespace {

const std::string kByteOrderMark = "\xEF\xBB\xBF";

bool contains(const std::vector<std::string>& list, const std::string& word) {
    return std::find(list.begin(), list.end(), word) != list.end();
}

/// Reads the rows of one table, line by line.
class CTable {
public:
    CTable(std::string file, const std::vector<std::string>& known, const std::vector<std::string>& required,
           CDiagnostics& diagnostics)
        : m_strFile(std::move(file)), m_known(known), m_required(required), m_diagnostics(diagnostics) {}

    void addLine(int number, const std::string& line) {
        // Spreadsheet programs on Chinese desktops often write GBK, and names would be read wrong.
        if (!utils::isValidUtf8(line.data(), line.size())) {
            if (std::exchange(m_bIsUtf8, false))
                m_diagnostics.add(m_strFile, number, "is not UTF-8; expected the table saved as UTF-8");
        }
        const auto cells = splitCsvLine(line);
        if (!cells) {
            m_diagnostics.add(m_strFile, number,
                              "a quote is not closed; expected a second \" on the same line");
        } else if (m_columns.empty()) {
            takeHeader(number, *cells);
        } else {
            takeRow(number, *cells);
        }
    }

    /// Returns no rows if a required column is missing, because each row would then cause another mistake.
    std::vector<CCsvRow> take() {
        if (m_columns.empty())
            m_diagnostics.add(m_strFile, 1, "no line with column names; expected " + joined(m_required));
        if (m_bHasAllColumns) return std::move(m_rows);
        return {};
    }

private:
    static std::string joined(const std::vector<std::string>& words) { return boost::join(words, ", "); }

    void takeHeader(int number, const std::vector<std::string>& cells) {
        m_columns = cells;
        for (std::size_t i = 0; i < cells.size(); ++i) {
            if (!contains(m_known, cells[i])) {
                m_diagnostics.add(m_strFile, number,
                                  "unknown column \"" + cells[i] + "\"; expected one of " + joined(m_known));
            } else if (std::find(cells.begin(), cells.begin() + static_cast<std::ptrdiff_t>(i), cells[i]) !=
                       cells.begin() + static_cast<std::ptrdiff_t>(i)) {
                m_diagnostics.add(m_strFile, number, "column \"" + cells[i] + "\" is defined twice");
            }
        }
        for (const std::string& column : m_required) {
            if (contains(cells, column)) continue;
            m_bHasAllColumns = false;
            const bool isMisspelt = std::any_of(cells.begin(), cells.end(), [&](const std::string& cell) {
                return !contains(m_known, cell) && isLike(cell, column);
            });
            if (isMisspelt) continue;
            m_diagnostics.add(m_strFile, number, "column \"" + column + "\" is missing");
        }
    }

    void takeRow(int number, const std::vector<std::string>& cells) {
        if (cells.size() > m_columns.size()) {
            m_diagnostics.add(m_strFile, number,
                              std::to_string(cells.size()) + " cells; expected at most " +
                                  std::to_string(m_columns.size()) + ", one for each column");
            return;
        }
        CCsvRow row;
        row.line = number;
        for (std::size_t i = 0; i < cells.size(); ++i)
            row.cells[m_columns[i]] = cells[i];
        m_rows.push_back(std::move(row));
    }

    const std::string m_strFile;
    const std::vector<std::string>& m_known;
    const std::vector<std::string>& m_required;
    CDiagnostics& m_diagnostics;
    std::vector<std::string> m_columns;
    std::vector<CCsvRow> m_rows;
    bool m_bHasAllColumns = true;
    bool m_bIsUtf8 = true; ///< a wrong encoding is reported once for a table
};

} // namespace

std::optional<std::vector<std::string>> splitCsvLine(const std::string& line) {
    std::vector<std::string> cells(1);
    bool quoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '"' && quoted && i + 1 < line.size() && line[i + 1] == '"') {
            cells.back() += line[i++];
        } else if (line[i] == '"') {
            quoted = !quoted;
        } else if (line[i] == ',' && !quoted) {
            cells.emplace_back();
        } else {
            cells.back() += line[i];
        }
    }
    if (quoted) return std::nullopt;
    for (std::string& cell : cells)
        boost::trim(cell);
    return cells;
}

std::vector<CCsvRow> readCsv(const std::string& folder, const std::string& file,
                             const std::vector<std::string>& columns,
                             const std::vector<std::string>& required, bool mandatory,
                             CDiagnostics& diagnostics) {
    std::string text;
    const EFileRead outcome = readTextFile(folder + "/" + file, text);
    if (outcome != EFileRead::Whole) {
        if (mandatory || outcome == EFileRead::Unreadable)
            diagnostics.add(
                file, 0, "cannot be read; expected a table with the columns " + boost::join(required, ", "));
        return {};
    }
    CTable table(file, columns, required, diagnostics);
    std::istringstream stream(text);
    int number = 0;
    for (std::string line; std::getline(stream, line);) {
        ++number;
        if (number == 1 && boost::starts_with(line, kByteOrderMark)) line.erase(0, kByteOrderMark.size());
        boost::trim(line);
        if (!line.empty() && line[0] != '#') table.addLine(number, line);
    }
    return table.take();
}

} // namespace desk
