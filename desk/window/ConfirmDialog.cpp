#include "desk/window/ConfirmDialog.h"

#include "desk/window/StateBar.h"
#include "desk/window/Theme.h"
#include "orderservice/gates/IntakePause.h"
#include "orderservice/ui/OrdersConfirmWidget.h"
#include "orderservice/ui/OrdersMessageBox.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace desk {
namespace {

TC::COrdersMessageBox* openDialog() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        auto* dialog = qobject_cast<TC::COrdersMessageBox*>(window);
        if (dialog != nullptr && dialog->isVisible()) return dialog;
    }
    return nullptr;
}

/// Makes room for another line, so that it takes nothing from the rows. The dialog stays on the screen.
void grow(TC::COrdersMessageBox& dialog, int height) {
    if (height <= 0) return;
    const QRect area = dialog.screen()->availableGeometry();
    const QSize frame = dialog.frameGeometry().size() - dialog.size();
    dialog.resize(TC::COrdersMessageBox::boundedSize(dialog.size() + QSize(0, height), area.size(), frame));
    const QRect whole = dialog.frameGeometry();
    if (whole.bottom() > area.bottom())
        dialog.move(whole.left(), std::max(area.top(), area.bottom() + 1 - whole.height()));
}

} // namespace

void CConfirmDialog::setWindow(QWidget* window, std::function<void()> halt) {
    m_window = window;
    m_halt = std::move(halt);
}

TC::CConfirmAnswer CConfirmDialog::confirm(const TC::CConfirmQuestion& question) {
    if (m_window != nullptr) {
        // A dialog of a minimized window may not be seen.
        m_window->setWindowState(m_window->windowState() & ~Qt::WindowMinimized);
        QApplication::alert(m_window);
    }
    QTimer::singleShot(0, qApp, [this] { addHaltButton(); }); // in the event loop of the dialog
    return m_confirmer.confirm(question);
}

bool CConfirmDialog::isOpen() {
    return TC::COrdersMessageBox::isOpen();
}

void CConfirmDialog::close() {
    if (TC::COrdersMessageBox* const dialog = openDialog()) close(*dialog);
}

/// With its pause the dialog would say that it was closed without a button.
bool CConfirmDialog::close(QWidget& widget) {
    auto* const dialog = qobject_cast<TC::COrdersMessageBox*>(&widget);
    if (dialog == nullptr) return false;
    TC::setConfirmationPause(false);
    dialog->reject();
    return true;
}

void CConfirmDialog::restartGuard() {
    if (TC::COrdersMessageBox* const dialog = openDialog()) dialog->restartGuard();
}

/// Far from the two other buttons, so that it is not hit by accident.
void CConfirmDialog::addHaltButton() const {
    TC::COrdersMessageBox* const dialog = openDialog();
    auto* const layout = dialog == nullptr ? nullptr : qobject_cast<QVBoxLayout*>(dialog->layout());
    if (layout == nullptr || !m_halt) return;
    auto* const button = new QPushButton(QCoreApplication::translate("desk::CStateBar", "HALT"), dialog);
    button->setObjectName(QStringLiteral("halt"));
    button->setFocusPolicy(Qt::NoFocus);
    button->setAutoDefault(false);
    button->setToolTip(haltTip());
    button->setStyleSheet(badgeStyle(CTheme::current().danger()));
    QObject::connect(button, &QPushButton::clicked, button, [halt = m_halt] { halt(); });
    auto* const line = new QHBoxLayout;
    line->setContentsMargins(15, 4, 15, 0);
    line->addWidget(button);
    line->addStretch();
    layout->insertLayout(0, line);
    button->show(); // the layout leaves hidden widgets out
    layout->activate();
    grow(*dialog, dialog->table()->tableHeight() - dialog->table()->height());
}

} // namespace desk
