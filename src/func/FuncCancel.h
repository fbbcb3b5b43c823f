#pragma once

#include <string>

namespace TC {

/// Cancels orders of an account: the first one with the broker's number, or all open ones if no number is
/// given. func: the function's name, for messages; param: a JSON object in UTF-8 with the texts `accountId`,
/// `accountType` and `orderId`. The user gets a message for each order; that nothing was found is only in the
/// log. Throws bson::CError if the text cannot be read. Any thread. An exception of the host leaves it as a
/// CHostError. If the cancel of one order throws, the others are still cancelled; the first error is thrown
/// at the end.
void doCancelOrder(const std::string& func, const std::string& param);

} // namespace TC
