#pragma once

#include "desk/config/Diagnostics.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace desk {

/// A row of a table: its line number, and its cells by column name.
struct CCsvRow {
    int line = 0;
    std::map<std::string, std::string> cells;

    /// Returns the cell, or an empty text if the row is too short or the table does not have the column.
    std::string text(const std::string& column) const {
        const auto found = cells.find(column);
        return found != cells.end() ? found->second : std::string();
    }
};

/// Reads a comma separated table. The text is UTF-8 with or without a byte order mark; lines end in LF or CR
/// LF. The first line names the columns. A cell that contains a comma is in double quotes, and "" inside
/// means one quote. Lines that begin with # and empty lines are skipped. Blanks around a cell are removed.
///
/// `columns` are the allowed column names; those in `required` must be present. Mistakes go to the
/// diagnostics, and the rows that can be read are returned. A missing file is a mistake only if it is
/// `mandatory`. A file that exists and cannot be read is always a mistake.
std::vector<CCsvRow> readCsv(const std::string& folder, const std::string& file,
                             const std::vector<std::string>& columns,
                             const std::vector<std::string>& required, bool mandatory,
                             CDiagnostics& diagnostics);

/// Returns the cells of one line; nothing if a quote is not closed.
std::optional<std::vector<std::string>> splitCsvLine(const std::string& line);

} // namespace desk
