#pragma once

#include "tests/docs/PageTable.h"

// Pages that more than one test reads.
inline const std::string kFamiliesPage = std::string(SOURCE_DIR) + "/docs/families.md";
inline const std::string kOrderFilePage = std::string(SOURCE_DIR) + "/docs/order-file.md";

/// The families with their numbers, codes, prices and volumes.
inline std::vector<CTableRow> familyRows() {
    return readTable(kFamiliesPage, "## Side by side");
}
