#include "orderservice/kit/DefaultServices.h"

namespace kit {

TC::CHost CDefaultServices::services() {
    TC::CHost host;
    host.tradingRules = &tradingRules;
    host.algorithmTradeHelper = &algorithmTradeHelper;
    host.intakeAudit = &intakeAudit;
    host.timeService = &timeService;
    host.traderCenter = &traderCenter;
    host.tradeFrameworkSource = &tradeFrameworkSource;
    host.luaModuleCtrl = &luaModuleCtrl;
    return host;
}

} // namespace kit
