#pragma once

#include "platform/HostService.h"
#include "records/CommandParam.h"

#include <QString>

namespace TC {

/// Takes finished commands, and the reasons of refused orders. Both operations are called on the service
/// thread today; function trading will call them on others, so both must be safe from any thread.
class COrderClient : public CHostService<COrderClient> {
public:
    static constexpr const char* kServiceName = "COrderClient";

    /// Takes over one finished command; the library keeps no reference. With m_bForceConfirm the host must
    /// ask the user first. A command without records is no error: nothing was left to trade. While the
    /// operation waits, all orders and cancels behind it wait. There is no answer: from here on the host
    /// tells the user what becomes of the command. Volumes are shares or lots, prices are currency units.
    virtual void orderCommands(const COrderComandParamPtr& command) = 0;

    /// Shows why an order was refused, or which rows a basket leaves out. A basket can bring several calls
    /// and still go out; any other order brings at most one, and is refused with it. Can be called with the
    /// lock of an account's data held (CAccountData::Lock).
    virtual void showTradeError(const QString& text, const QString& title) = 0;
};

} // namespace TC
