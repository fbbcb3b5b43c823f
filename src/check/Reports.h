#pragma once

#include "orderservice/records/Enums.h"
#include "orderservice/records/OrderParam.h"

#include <QString>

namespace TC {

/// Reports of the checks. Each failed order is reported once, with the text that is defined beside its rule.
/// Most checks report with showCheckFailure, the frame checks with showServiceMsg. Baskets also report rows
/// that they leave out, and continue.

/// The label of a source kind at the start of every message. Users without the right to file or signal orders
/// see the general label for these orders.
QString orderStrategyText(EOrderStrategyType type);

/// The same, for reports of failures. If the user's rights cannot be read, it returns the general label.
QString safeOrderStrategyText(EOrderStrategyType type) noexcept;

/// Call it in a catch block: reports that the current exception has ended the order. If the order client
/// throws, the report is shown on the message panel instead. Never throws.
void reportOrderFailure(EOrderStrategyType type, int channel) noexcept;

/// Tells the user that orders which passed their checks are not executed, and reports them as dropped to the
/// audit. first: the first of the orders; reason: for the user, in Chinese; cause: for the audit. The
/// label is the general one if the user has left.
void reportNotExecuted(const COrderParam& first, int orders, const QString& reason, const QString& cause);

/// Shows the text under the title of wrong parameters, for a refused order or a row that a basket leaves out.
void showCheckFailure(const QString& text);

} // namespace TC
