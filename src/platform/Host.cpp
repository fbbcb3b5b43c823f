#include "orderservice/platform/Host.h"

#include "orderservice/base/Thread.h"
#include "orderservice/platform/AlgorithmTradeHelper.h"
#include "orderservice/platform/ExchangeClient.h"
#include "orderservice/platform/FormulaManager.h"
#include "orderservice/platform/HostReports.h"
#include "orderservice/platform/InstrumentTypes.h"
#include "orderservice/platform/IntakeAudit.h"
#include "orderservice/platform/LuaModuleCtrl.h"
#include "orderservice/platform/MsgService.h"
#include "orderservice/platform/OrderClient.h"
#include "orderservice/platform/Quote.h"
#include "orderservice/platform/TimeService.h"
#include "orderservice/platform/TradeClient.h"
#include "orderservice/platform/TradeFrameworkSource.h"
#include "orderservice/platform/TraderCenter.h"
#include "orderservice/platform/TradingRules.h"
#include "orderservice/platform/UserConfig.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace TC {

/// Only this class sets the service instances.
class CHostInstaller {
public:
    template<typename T>
    static void set(T* service) {
        CHostService<T>::s_pInstance = service;
    }
};

namespace {

std::atomic<bool> s_installed{false};
std::atomic<int> s_leases{0};

/// Calls `visit` with each service that a host must have.
template<typename Visitor>
void forEachNeeded(const CHost& host, const Visitor& visit) {
    visit(host.userManager);
    visit(host.orderClient);
    visit(host.tradeClient);
    visit(host.quoteClient);
    visit(host.exchangeClient);
    visit(host.msgService);
    visit(host.timeService);
    visit(host.tradingRules);
    visit(host.algorithmTradeHelper);
    visit(host.intakeAudit);
    visit(host.instrumentTypes);
    visit(host.traderCenter);
    visit(host.tradeFrameworkSource);
    visit(host.luaModuleCtrl);
}

/// Calls `visit` with each service of the host. Installing and releasing use this list.
template<typename Visitor>
void forEachService(const CHost& host, const Visitor& visit) {
    forEachNeeded(host, visit);
    visit(host.formulaManager);
}

struct CNameMissing {
    std::string& names;
    template<typename T>
    void operator()(T* service) const {
        if (service == nullptr) names += (names.empty() ? "" : ", ") + std::string(T::kServiceName);
    }
};

struct CSetService {
    template<typename T>
    void operator()(T* service) const {
        CHostInstaller::set(service);
    }
};

constexpr int kMissingService = 1;
constexpr int kAlreadyInstalled = 2;

} // namespace

utils::KNError installHost(const CHost& host) {
    if (s_installed) return {kAlreadyInstalled, "installHost: a host is installed already"};
    std::string missing;
    forEachNeeded(host, CNameMissing{missing});
    if (!missing.empty()) return {kMissingService, "installHost: missing service: " + missing};
    forEachService(host, CSetService{});
    s_installed = true;
    return {};
}

void releaseHost() {
    if (!s_installed) return;
    if (s_leases > 0 || utils::CLibraryCall::isInProgress())
        return reportSafely(QStringLiteral("[接口单]　下单服务仍在使用主机服务, 请先在主线程释放下单服务!"));
    forEachService(CHost{}, CSetService{});
    s_installed = false;
}

CHostLease::CHostLease() {
    ++s_leases;
}

CHostLease::~CHostLease() {
    --s_leases;
}

bool isHostInstalled() {
    return s_installed;
}

void reportMissingHost(const char* service) {
    std::fprintf(stderr, "order service: %s was used while no host is installed\n", service);
    std::abort();
}

} // namespace TC
