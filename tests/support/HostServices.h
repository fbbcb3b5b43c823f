#pragma once

#include "orderservice/platform/Host.h"

namespace fake {

/// The services of a host in memory. The host must have a member with the usual name for each service, and
/// must outlive the result.
template<typename Host>
TC::CHost servicesOf(Host& host) {
    TC::CHost services;
    services.userManager = &host.user;
    services.orderClient = &host.orders;
    services.tradeClient = &host.trade;
    services.quoteClient = &host.quotes;
    services.exchangeClient = &host.exchange;
    services.msgService = &host.messages;
    services.timeService = &host.time;
    services.tradingRules = &host.rules;
    services.algorithmTradeHelper = &host.algorithms;
    services.intakeAudit = &host.audit;
    services.instrumentTypes = &host.types;
    services.traderCenter = &host.tasks;
    services.tradeFrameworkSource = &host.framework;
    services.luaModuleCtrl = &host.switches;
    return services;
}

} // namespace fake
