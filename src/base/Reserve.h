#pragma once

#include <exception>

namespace utils {

/// Reserves space for the elements if there is enough memory. A failure is not an error: the reservation only
/// saves reallocations, and without it the container grows when elements are added.
template<typename Container>
void reserveIfPossible(Container& container, int elements) {
    try {
        container.reserve(elements);
    } catch (const std::exception&) {
        // Out of memory for this number of elements. The real number may be smaller.
    }
}

} // namespace utils
