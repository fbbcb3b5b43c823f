#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/widgets/LineEdit.h"

namespace TC {

/// The line for the remark of an order. The user can enter letters of any language, digits, the underscore,
/// blanks, and the usual punctuation; other characters are not accepted, by keyboard, clipboard or input
/// method. Main thread.
class ORDERSERVICE_EXPORT CRemarkLine : public UW::CLineEdit {
    Q_OBJECT
public:
    /// Whether the deployment and the user's kind have remarks.
    static bool isAllowed();

    explicit CRemarkLine(QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
};

} // namespace TC
