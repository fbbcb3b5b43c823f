#pragma once

#include <vector>

namespace desk {

/// The words of records that the window translates, in the context "words": operations, families, sources,
/// price types and states. A test checks that no word of the desk is missing.
const std::vector<const char*>& translatedWords();

} // namespace desk
