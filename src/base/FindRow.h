#pragma once

#include <cstddef>

namespace utils {

/// The first row of a table for which `isWanted(row)` is true; null if there is none.
template<typename Row, std::size_t N, typename Condition>
constexpr const Row* findRow(const Row (&table)[N], const Condition& isWanted) {
    for (const Row& row : table) {
        if (isWanted(row)) return &row;
    }
    return nullptr;
}

} // namespace utils
