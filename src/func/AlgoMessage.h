#pragma once

#include "orderservice/records/CommandParam.h"

#include <string>
#include <vector>

namespace TC {

/// The message for the algorithm platform: one group for each record, joined by "@". A group is a list of
/// "tag=value" pairs, joined by the byte 0x01. docs/function-trading.md lists the tags.
///
/// text: the settings of the algorithm, a JSON object of texts in UTF-8. They are copied without any check. A
/// key that is missing is an empty text. If the text cannot be read, the message is empty; the reason is in
/// the log.
///
/// Any thread. An exception of the host leaves it as a CHostError. It uses the C library's rand().
std::string getAlgParamsStr(const std::string& text, std::vector<CCodeOrderParam> records);

/// Reads the end of the time range in the settings into `time`. Returns false and does not change it if the
/// settings have no end. Throws an exception with the reason if the settings or the number cannot be read.
bool readValidTimeEnd(const std::string& text, int& time);

} // namespace TC
