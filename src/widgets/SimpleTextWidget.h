#pragma once

#include "orderservice/base/Export.h"

#include <QLabel>

namespace UW {

/// One line of plain text. A text never contains markup.
class ORDERSERVICE_EXPORT CSimpleTextWidget : public QLabel {
    Q_OBJECT
public:
    explicit CSimpleTextWidget(const QString& text = QString(), QWidget* parent = nullptr);

    /// If it is set, a text that is too long for the place ends with dots, and the place may have no width.
    void setElided(bool isElided);
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    bool m_bElided = false;
};

} // namespace UW
