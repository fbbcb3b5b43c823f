#pragma once

#include "orderservice/base/Export.h"

#include <QWidget>

namespace UW {

/// Base of the widgets of the confirmation. Main thread only, like every class of this folder.
class ORDERSERVICE_EXPORT CBaseWidget : public QWidget {
    Q_OBJECT
public:
    explicit CBaseWidget(QWidget* parent = nullptr);
};

} // namespace UW
