#pragma once

#include "desk/paper/OrderRules.h"

#include <string>

namespace desk {

/// The rules about positions, debts, credit and money. Returns why the order is rejected, or an empty text.
/// These rules run last because they rely on the rules about the order itself.
std::string coverRejection(const CAcceptance& acceptance);

} // namespace desk
