#pragma once

#include "orderservice/base/Export.h"

#include <QDialog>
#include <QString>

class QVBoxLayout;

namespace UW {

/// A dialog with a title and one inner widget. Its own frame is drawn around the inner widget.
class ORDERSERVICE_EXPORT CCommonDialog : public QDialog {
    Q_OBJECT
public:
    static constexpr int kFrameWidth = 1; ///< pixels on each side

    explicit CCommonDialog(QWidget* parent = nullptr);

    void setTitle(const QString& title);
    /// Shows this widget instead of an earlier one. The dialog owns it.
    void setInnerWidget(QWidget* widget);

    /// Reacts to an event of a part of the dialog. The dialog's class defines the numbers. The base ignores
    /// all of them.
    virtual void handleEvent(int event, int value);

private:
    QVBoxLayout* const m_pLayout;
    QWidget* m_pInner = nullptr;
};

} // namespace UW
