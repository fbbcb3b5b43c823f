#pragma once

#include <nlohmann/json_fwd.hpp>

namespace desk {

/// JSON that keeps its keys in the order in which they were written. Whoever makes or reads one includes
/// <nlohmann/json.hpp>.
using CJson = nlohmann::ordered_json;

} // namespace desk
