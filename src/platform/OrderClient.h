#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/platform/HostService.h"
#include "orderservice/records/CommandParam.h"

#include <QString>

namespace TC {

/// Receives finished commands and the reasons of refused orders. Both operations must be thread-safe. They
/// are called on the service thread, for the two-pass variant also on the main thread, and on the threads of
/// function calls.
class ORDERSERVICE_EXPORT COrderClient : public CHostService<COrderClient> {
public:
    static constexpr const char* kServiceName = "COrderClient";

    /// Receives one finished command; the library keeps no reference to it. If m_bForceConfirm is set, the
    /// host must ask the user first. A command without records is not an error; it means that nothing was
    /// left to trade. While the operation waits, all later orders and cancels wait too. There is no return
    /// value: the host tells the user about the progress of the command. Volumes are shares or lots, prices
    /// are currency units.
    virtual void orderCommands(const COrderComandParamPtr& command) = 0;

    /// Shows why an order was refused, or what is left out of it: rows of a basket, or accounts of a function
    /// call. For those there can be several calls, and the rest may still be sent. For any other order there
    /// is at most one call, and that order is refused. May be called while the lock of an account's data is
    /// held (CAccountData::Lock).
    virtual void showTradeError(const QString& text, const QString& title) = 0;
};

} // namespace TC
