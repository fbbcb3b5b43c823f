#pragma once

#include "orderservice/base/KNError.h"

namespace desk {

/// Raises the number of files that the process may have open to the allowed maximum, because each connection
/// of an order socket needs one. A failure names the cause and leaves the limit unchanged.
[[nodiscard]] utils::KNError raiseFileLimit();

} // namespace desk
