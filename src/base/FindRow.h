#pragma once

#include <cstddef>

namespace utils {

/// Returns the first row of a table for which `isWanted(row)` is true, or null.
template<typename Row, std::size_t N, typename Condition>
constexpr const Row* findRow(const Row (&table)[N], const Condition& isWanted) {
    for (const Row& row : table) {
        if (isWanted(row)) return &row;
    }
    return nullptr;
}

} // namespace utils
