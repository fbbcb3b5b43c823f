#pragma once

#include <nlohmann/json_fwd.hpp>

namespace kit {

/// JSON that keeps its keys in the order in which they were written. Include <nlohmann/json.hpp> to make or
/// read one.
using CJson = nlohmann::ordered_json;

} // namespace kit
