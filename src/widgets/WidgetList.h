#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/widgets/BaseWidget.h"

#include <QMargins>

class QHBoxLayout;

namespace UW {

/// A row of widgets.
class ORDERSERVICE_EXPORT CWidgetList : public CBaseWidget {
    Q_OBJECT
public:
    explicit CWidgetList(QWidget* parent = nullptr);

    /// Appends a widget; the list owns it. A larger `stretch` gets more of the free width.
    void addWidget(QWidget* widget, int stretch = 0);
    void addStretch();
    /// Both in pixels.
    void setMargins(const QMargins& margins);
    void setSpacing(int spacing);

private:
    QHBoxLayout* const m_pLayout;
};

} // namespace UW
