#pragma once

#include "orderservice/base/Export.h"

#include <QColor>
#include <QFont>
#include <QLineEdit>

namespace UW {

/// A line to edit, with a hint while it is empty. Qt's textEdited is emitted if the user changes the text, by
/// keyboard, clipboard or input method, and not for setText.
class ORDERSERVICE_EXPORT CLineEdit : public QLineEdit {
    Q_OBJECT
public:
    explicit CLineEdit(QWidget* parent = nullptr);

    void setEmptyHintText(const QString& text);
    void setEmptyHintColor(const QColor& color);
    /// The font of the hint. The text has the font that the line had before.
    void setEmptyHintFont(const QFont& font);

private:
    void showFont();

    QFont m_textFont;
    QFont m_hintFont;
};

} // namespace UW
