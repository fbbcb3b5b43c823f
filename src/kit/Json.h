#pragma once

#include <nlohmann/json_fwd.hpp>

namespace kit {

/// JSON that keeps its keys in the order in which they were written. Include <nlohmann/json.hpp> to create or
/// read a value.
using CJson = nlohmann::ordered_json;

} // namespace kit
