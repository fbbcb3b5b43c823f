#pragma once

#include <QObject>

class QDockWidget;
class QMainWindow;

namespace desk {

/// Keeps the width of the left panels when the window becomes wider or narrower: the tables on the right use
/// the room, because their texts are longer. Qt would give each side a half. Does nothing before the window
/// is shown, or if the user has moved one of the two panels to another side. Main thread only.
class CLeftColumn : public QObject {
    Q_OBJECT
public:
    /// `left` and `right`: one panel of each side. The window owns all of them, also this object.
    CLeftColumn(QMainWindow& window, QDockWidget& left, QDockWidget& right);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    bool isKept() const;
    void restoreWidth();

    QMainWindow& m_window;
    QDockWidget& m_left;
    QDockWidget& m_right;
    int m_nWidth = 0; ///< before the change; 0 if the window does not change
};

} // namespace desk
