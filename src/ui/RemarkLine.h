#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/widgets/LineEdit.h"

#include <QString>

namespace TC {

/// The line for the remark of an order. The user can enter letters of any language, digits, the underscore,
/// blanks, and the usual punctuation; other characters are not accepted, by keyboard, clipboard or input
/// method. A text of the caller with such characters is shown, and no more of them can be entered. Main
/// thread.
class ORDERSERVICE_EXPORT CRemarkLine : public UW::CLineEdit {
    Q_OBJECT
public:
    /// Whether the deployment and the user's kind have remarks. No if the host fails to answer, with a
    /// report.
    static bool isAllowed();

    explicit CRemarkLine(QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

private:
    void check(const QString& edited);

    QString m_strLast; ///< the text before the present edit
};

} // namespace TC
