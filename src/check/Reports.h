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

/// A refused order, or a row that a basket leaves out, under the title of wrong parameters.
void showCheckFailure(const QString& text);

} // namespace TC
