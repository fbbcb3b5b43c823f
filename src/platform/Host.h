#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/base/KNError.h"

namespace knservice {
class CInstrumentTypes;
class CTradeFrameworkSource;
class TraderCenter;
} // namespace knservice

namespace luawrapper {
class LuaModuleCtrl;
}

namespace TC {

class CAlgorithmTradeHelper;
class CExchangeClient;
class CFormulaManager;
class CIntakeAudit;
class CMsgService;
class COrderClient;
class CQuoteClient;
class CTimeService;
class CTradeClient;
class CTradingRules;
class CUserManager;

/// All services of a host. The host owns each service and keeps it alive until releaseHost.
struct CHost {
    CUserManager* userManager = nullptr;
    COrderClient* orderClient = nullptr;
    CTradeClient* tradeClient = nullptr;
    CQuoteClient* quoteClient = nullptr;
    CExchangeClient* exchangeClient = nullptr;
    CMsgService* msgService = nullptr;
    CTimeService* timeService = nullptr;
    CTradingRules* tradingRules = nullptr;
    CAlgorithmTradeHelper* algorithmTradeHelper = nullptr;
    CIntakeAudit* intakeAudit = nullptr;
    knservice::CInstrumentTypes* instrumentTypes = nullptr;
    knservice::TraderCenter* traderCenter = nullptr;
    knservice::CTradeFrameworkSource* tradeFrameworkSource = nullptr;
    luawrapper::LuaModuleCtrl* luaModuleCtrl = nullptr;
    CFormulaManager* formulaManager = nullptr; ///< null: the host has no formula models
};

/// Installs the host's services. Main thread, before any other use of the library. If a host is installed
/// already, or if a service is missing that may not be null, it installs nothing and returns an error with
/// the reason.
[[nodiscard]] ORDERSERVICE_EXPORT utils::KNError installHost(const CHost& host);

/// Uninstalls the services. Main thread, after COrderService::release. Does nothing if no host is installed.
/// A call inside a callback of the library or while a COrderService or a COrderFuncService exists is refused:
/// it shows a message and the host stays installed. Otherwise the next call of a service would end the
/// process.
ORDERSERVICE_EXPORT void releaseHost();

/// Keeps the host installed during its lifetime. COrderService and
/// COrderFuncService hold one each. Any thread.
class ORDERSERVICE_EXPORT CHostLease {
public:
    CHostLease();
    ~CHostLease();
    CHostLease(const CHostLease&) = delete;
    CHostLease& operator=(const CHostLease&) = delete;
};

/// Whether a host is installed. Any thread.
ORDERSERVICE_EXPORT bool isHostInstalled();

} // namespace TC
