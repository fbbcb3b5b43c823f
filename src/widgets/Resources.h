#pragma once

#include "orderservice/base/Export.h"

#include <QColor>
#include <QFont>
#include <QString>

namespace UW {

/// Sizes, colours and fonts by their resource names. The colours follow the palette of the application, so
/// they fit a light and a dark desktop. An unknown name gives 0 pixels, the colour of texts, or the font of
/// the application. Main thread.
ORDERSERVICE_EXPORT int resourceSize(const QString& name);
ORDERSERVICE_EXPORT QColor resourceColor(const QString& name);
ORDERSERVICE_EXPORT QFont resourceFont(const QString& name);

} // namespace UW
