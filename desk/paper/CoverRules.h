#pragma once

#include "desk/paper/OrderRules.h"

#include <string>

namespace desk {

/// The rules about positions, debts, credit and money. Returns why the order is rejected, or an empty text.
/// These rules run last because they rely on the rules about the order itself.
std::string coverRejection(const CAcceptance& acceptance);

/// Only the rules about multipliers: an order is rejected if the account's position in the instrument, or the
/// shares that it owes, have another multiplier.
std::string multiplierRejection(const CPaperBook& book, const CPaperOrder& order);

} // namespace desk
