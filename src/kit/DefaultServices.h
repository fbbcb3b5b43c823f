#pragma once

#include "kit/AlgorithmTradeHelperBase.h"
#include "kit/IntakeAuditBase.h"
#include "kit/LuaModuleCtrlBase.h"
#include "kit/TimeServiceBase.h"
#include "kit/TradeFrameworkSourceBase.h"
#include "kit/TraderCenterBase.h"
#include "kit/TradingRulesBase.h"
#include "platform/Host.h"

namespace kit {

/// The services that a simple stock host can use unchanged. The host keeps this object alive until
/// releaseHost.
struct CDefaultServices {
    CTradingRulesBase tradingRules;
    CAlgorithmTradeHelperBase algorithmTradeHelper;
    CIntakeAuditBase intakeAudit;
    CTimeServiceBase timeService;
    CTraderCenterBase traderCenter;
    CTradeFrameworkSourceBase tradeFrameworkSource;
    CLuaModuleCtrlBase luaModuleCtrl;

    /// Returns a CHost that points to these services. The caller adds the other services, and may replace any
    /// of these, before it calls TC::installHost.
    TC::CHost services();
};

} // namespace kit
