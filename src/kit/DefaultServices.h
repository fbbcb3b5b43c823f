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

/// The services that a plain stock host takes as they are. The host keeps the object alive until releaseHost.
struct CDefaultServices {
    CTradingRulesBase tradingRules;
    CAlgorithmTradeHelperBase algorithmTradeHelper;
    CIntakeAuditBase intakeAudit;
    CTimeServiceBase timeService;
    CTraderCenterBase traderCenter;
    CTradeFrameworkSourceBase tradeFrameworkSource;
    CLuaModuleCtrlBase luaModuleCtrl;

    /// A host with these services in their places. The caller puts in the others, and may replace any of
    /// these, before TC::installHost.
    TC::CHost services();
};

} // namespace kit
