#pragma once

#include "orderservice/gates/OrderConfirmer.h"
#include "orderservice/ui/OrdersConfirmer.h"

#include <QPointer>
#include <QWidget>

#include <functional>

namespace desk {

/// Asks by the dialog of the order service. While it is open, the main window cannot be used. So the dialog
/// gets a button that halts the desk. Main thread.
class CConfirmDialog final : public TC::IOrderConfirmer {
public:
    /// The window that shows that a question waits, and what the button that halts does.
    void setWindow(QWidget* window, std::function<void()> halt);

    TC::CConfirmAnswer confirm(const TC::CConfirmQuestion& question) override;
    void withdraw() override { m_confirmer.withdraw(); }

    static bool isOpen();
    /// Closes the open dialog without an answer of the user, and ends the pause of the intake that it has
    /// set. A caller that wants the order files to wait has a pause of its own. The desk declines the batch.
    static void close();
    /// Does the same if the widget is the dialog. Returns whether it is.
    static bool close(QWidget& widget);
    /// Takes no answer for half a second, because the user has just answered another question.
    static void restartGuard();

private:
    void addHaltButton() const;

    TC::COrdersConfirmer m_confirmer;
    QPointer<QWidget> m_window;
    std::function<void()> m_halt;
};

} // namespace desk
