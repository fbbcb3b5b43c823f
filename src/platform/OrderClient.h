#pragma once

#include "platform/HostService.h"
#include "records/CommandParam.h"

#include <QString>

namespace TC {

/// Takes finished commands and trade errors. Service thread; with function trading later also other threads,
/// so both operations must be safe from any thread.
class COrderClient : public CHostService<COrderClient> {
public:
    static constexpr const char* kServiceName = "COrderClient";

    /// Takes one finished command over; the library keeps no reference. A command without codes can arrive
    /// and must not be taken for an error of the library's. m_bForceConfirm asks the host to confirm with the
    /// user first. There is no answer: what becomes of the command is the host's business from here on.
    virtual void orderCommands(const COrderComandParamPtr& command) = 0;

    /// Shows why an order was refused, or what a basket leaves out: a basket can bring several calls, for its
    /// rows, and go out all the same. Any other order brings one at most.
    virtual void showTradeError(const QString& text, const QString& title) = 0;
};

} // namespace TC
