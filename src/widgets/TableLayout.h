#pragma once

#include <QString>

#include <functional>

class QHeaderView;

namespace UW {

/// The name of a column in a saved layout: ASCII letters, digits and underscores, at most 64. The number of a
/// column is a name too.
using CColumnKeyOf = std::function<QString(int column)>;

/// The order and the widths in pixels of the visible columns, such as "1;0:80,2:60". The first number is the
/// version of the text. Main thread.
QString saveLayout(const QHeaderView& header, const CColumnKeyOf& keyOf);

/// Applies a text of saveLayout. Does nothing if the text is damaged or has another version. A column that
/// the text does not have keeps its width and moves behind the others.
void loadLayout(QHeaderView& header, const QString& layout, const CColumnKeyOf& keyOf);

} // namespace UW
