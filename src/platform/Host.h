#pragma once

#include "base/KNError.h"

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
class CIntakeAudit;
class CMsgService;
class COrderClient;
class CQuoteClient;
class CTimeService;
class CTradeClient;
class CTradingRules;
class CUserManager;

/// All services of a host. Each belongs to the host, which keeps it alive until releaseHost.
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
};

/// Installs the host's services. Main thread, before anything else of the library is used. If a service is
/// missing or a host is installed already, installs nothing and fails with a text that names what is wrong.
[[nodiscard]] utils::KNError installHost(const CHost& host);

/// Forgets the services. Main thread, after COrderService::release. Does nothing without a host. Refused with
/// a message, and the host stays, in a call-back of the library and while a COrderService lives: the next
/// call of a service would end the process.
void releaseHost();

/// Keeps the host installed for as long as it lives; the order service has one. Any thread.
class CHostLease {
public:
    CHostLease();
    ~CHostLease();
    CHostLease(const CHostLease&) = delete;
    CHostLease& operator=(const CHostLease&) = delete;
};

/// Whether a host is installed. Main thread.
bool isHostInstalled();

} // namespace TC
