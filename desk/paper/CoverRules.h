#pragma once

#include "desk/paper/OrderRules.h"

#include <string>

namespace desk {

/// The rules of positions, debts, credit and money: why an order is rejected, or an empty text. They come
/// last: they rely on those of the order itself.
std::string coverRejection(const CAcceptance& acceptance);

} // namespace desk
