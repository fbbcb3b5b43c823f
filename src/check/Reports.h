#pragma once

#include "records/Enums.h"

#include <QString>

namespace TC {

/// Reports of the checks. Each failed order is reported once, in the words that stand beside the rule: by
/// showCheckFailure or, for the frame checks, by showServiceMsg. Baskets also report rows that they leave
/// out, and go on.

/// The label of a source kind at the head of every message; file and signal orders keep the plain label for
/// users without the right to them.
QString orderStrategyText(EOrderStrategyType type);

/// The same for reports of failures: a user whose rights cannot be read gets the plain label.
QString safeOrderStrategyText(EOrderStrategyType type) noexcept;

/// In a catch block: reports the order that the exception in hand has ended. A report that the order client
/// does not take goes to the message panel. Never throws.
void reportOrderFailure(EOrderStrategyType type, int channel) noexcept;

/// A refused order, or a row that a basket leaves out, under the title of wrong parameters.
void showCheckFailure(const QString& text);

} // namespace TC
