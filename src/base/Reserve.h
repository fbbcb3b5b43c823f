#pragma once

#include <exception>

namespace utils {

/// Reserves room for that many elements if the memory is there. A reservation only saves moves: without it
/// the container grows as elements are added, so a failure is no error.
template<typename Container>
void reserveIfPossible(Container& container, int elements) {
    try {
        container.reserve(elements);
    } catch (const std::exception&) {
        // No memory for so many: fewer may still fit.
    }
}

} // namespace utils
