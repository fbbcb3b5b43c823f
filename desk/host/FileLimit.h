#pragma once

#include "base/KNError.h"

namespace desk {

/// Raises the number of files that the process may have open as far as it is allowed to: each connection of
/// an order socket is one. A failure names the cause and leaves the limit as it was.
[[nodiscard]] utils::KNError raiseFileLimit();

} // namespace desk
