#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/kit/AlgorithmTradeHelperBase.h"
#include "orderservice/kit/IntakeAuditBase.h"
#include "orderservice/kit/LuaModuleCtrlBase.h"
#include "orderservice/kit/TimeServiceBase.h"
#include "orderservice/kit/TradeFrameworkSourceBase.h"
#include "orderservice/kit/TraderCenterBase.h"
#include "orderservice/kit/TradingRulesBase.h"
#include "orderservice/platform/Host.h"

namespace kit {

/// The services that a simple stock host can use unchanged. The host keeps this object alive until
/// releaseHost.
struct ORDERSERVICE_EXPORT CDefaultServices {
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
