#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/gates/OrderConfirmer.h"

namespace TC {

/// Asks by the dialog (COrdersMessageBox). A host with a window installs one with setOrderConfirmer. The
/// parent of the dialog is the window that the active window belongs to. If no window is active, it is the
/// largest one that can be seen and is not minimized.
class ORDERSERVICE_EXPORT COrdersConfirmer : public IOrderConfirmer {
public:
    /// Nobody is asked if the process has no QApplication, or if a dialog is open already. The answer is also
    /// NotAsked if the dialog ends without the user: it is destroyed, or the application quits. Main thread.
    CConfirmAnswer confirm(const CConfirmQuestion& question) override;
    /// Closes the dialog. The answer is NotAsked.
    void withdraw() override;
};

} // namespace TC
