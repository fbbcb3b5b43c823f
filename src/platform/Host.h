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

/// All services of a host. Each stays the host's, which keeps it alive until releaseHost.
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

/// Puts the host's services in place, on the main thread, before anything else of the library is used. Fails,
/// and installs nothing, where a service is missing or a host is installed already; the text names what is
/// wrong.
[[nodiscard]] utils::KNError installHost(const CHost& host);

/// Forgets the services, after COrderService is gone. Without a host it does nothing.
void releaseHost();

/// Whether a host is installed.
bool isHostInstalled();

} // namespace TC
