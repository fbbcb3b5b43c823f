#pragma once

#include "orderservice/records/FuncParam.h"

#include <string>

namespace TC {

/// Reads the parameter text of a placing call, a JSON object in UTF-8, into a record with its order lines.
/// The keys are listed in docs/function-trading.md. A key that is missing leaves its field as it is, and
/// unknown keys are ignored. Of a key that occurs twice the first one is used.
///
/// On failure `error` gets the text for the user, in Chinese; otherwise it does not change. The keys that
/// were read before a failure stay in the record, so that the failure can be reported to its trade key. Any
/// thread. Never throws for the content of the text.
void parserParam(COrderFuncParam& param, const std::string& text, std::string& error);

/// The basket's name: the order code, or its first part if the basket has a futures leg.
std::string basketNameOf(const COrderFuncParam& param);

/// Adds the line of an option order. Returns false and sets `error` if the volume is zero. The operation is
/// not used.
bool fillStkOptionParam(COrderFuncParam& param, PassorderFunOrderType op, std::string& error);

/// The whole part of a volume of a call. A volume beyond an int becomes the largest one, which is not the
/// number for "not set", so that the check of the usable volume refuses it. A volume that is no number is 0.
int volumeOfCall(double volume);

} // namespace TC
