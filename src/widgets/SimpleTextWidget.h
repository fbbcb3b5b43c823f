#pragma once

#include "orderservice/base/Export.h"

#include <QLabel>

namespace UW {

/// One line of plain text. A text never contains markup.
class ORDERSERVICE_EXPORT CSimpleTextWidget : public QLabel {
    Q_OBJECT
public:
    explicit CSimpleTextWidget(const QString& text = QString(), QWidget* parent = nullptr);
};

} // namespace UW
