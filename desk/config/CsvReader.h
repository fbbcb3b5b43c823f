#pragma once

#include "desk/config/Diagnostics.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace desk {

/// A row of a table: its line, and its cells by column name.
struct CCsvRow {
    int line = 0;
    std::map<std::string, std::string> cells;

    /// The cell, or an empty text where the row ends before its column or the table has none.
    std::string text(const std::string& column) const {
        const auto found = cells.find(column);
        return found != cells.end() ? found->second : std::string();
    }
};

/// A comma separated table as people and their programs write it: UTF-8 with or without a byte order mark,
/// LF or CR LF line ends, the first line naming the columns, cells in double quotes where they hold a comma,
/// "" for a quote inside, lines that begin with # and empty lines passed over, blanks around a cell dropped.
///
/// Column names are `columns`; those in `required` must be there. What does not fit goes to the diagnostics,
/// and the rows that can be read are given back. A missing file is a mistake only where it is `mandatory`;
/// one that is there and cannot be read always is.
std::vector<CCsvRow> readCsv(const std::string& folder, const std::string& file,
                             const std::vector<std::string>& columns,
                             const std::vector<std::string>& required, bool mandatory,
                             CDiagnostics& diagnostics);

/// The cells of one line; nothing where a quote is not closed.
std::optional<std::vector<std::string>> splitCsvLine(const std::string& line);

} // namespace desk
