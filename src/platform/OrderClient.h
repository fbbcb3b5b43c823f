#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/platform/HostService.h"
#include "orderservice/records/CommandParam.h"

#include <QString>

namespace TC {

/// Receives finished commands and the reasons of refused orders. Both operations must be thread-safe. Today
/// they are called on the service thread, and for the two-pass variant also on the main thread; function
/// trading will call them on other threads.
class ORDERSERVICE_EXPORT COrderClient : public CHostService<COrderClient> {
public:
    static constexpr const char* kServiceName = "COrderClient";

    /// Receives one finished command; the library keeps no reference to it. If m_bForceConfirm is set, the
    /// host must ask the user first. A command without records is not an error; it means that nothing was
    /// left to trade. While the operation waits, all later orders and cancels wait too. There is no return
    /// value: the host tells the user about the progress of the command. Volumes are shares or lots, prices
    /// are currency units.
    virtual void orderCommands(const COrderComandParamPtr& command) = 0;

    /// Shows why an order was refused, or which rows are left out of a basket. For a basket there can be
    /// several calls, and the basket may still be sent. For any other order there is at most one call, and
    /// that order is refused. May be called while the lock of an account's data is held (CAccountData::Lock).
    virtual void showTradeError(const QString& text, const QString& title) = 0;
};

} // namespace TC
