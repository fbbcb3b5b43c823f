#pragma once

#include <QString>

class QHeaderView;

namespace UW {

/// The order and the widths in pixels of the visible columns, such as "1;0:80,2:60". The first number is the
/// version of the text. Main thread.
QString saveLayout(const QHeaderView& header);

/// Applies a text of saveLayout. Does nothing if the text is damaged or has another version. A column that
/// the text does not have keeps its width and moves behind the others.
void loadLayout(QHeaderView& header, const QString& layout);

} // namespace UW
