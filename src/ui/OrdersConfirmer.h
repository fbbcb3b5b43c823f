#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/gates/OrderConfirmer.h"

namespace TC {

/// Asks by the dialog (COrdersMessageBox). A host with a window installs one with setOrderConfirmer. The
/// parent of the dialog is the active window of the application.
class ORDERSERVICE_EXPORT COrdersConfirmer : public IOrderConfirmer {
public:
    /// Nobody is asked if the process has no QApplication, or if a dialog is open already. Main thread.
    CConfirmAnswer confirm(const CConfirmQuestion& question) override;
};

} // namespace TC
