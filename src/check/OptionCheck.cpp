// Stock options, with the locking and unlocking of their underlying stocks.
#include "orderservice/check/CheckFrame.h"
#include "orderservice/check/CodeLookup.h"
#include "orderservice/platform/ExchangeClient.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/records/OrderTypes.h"

namespace TC {
namespace {

/// Resolves the code. Locking and unlocking name a stock; the code of an option is not changed. The result is
/// checked here, because only codes from the order are checked, not those from the strategy.
bool resolveOptionCode(CCheckRun& run) {
    (void)resolveStockCode(run.code, EKeyJoin::Plain);
    const bool isKnown = isStockLockOrder(run.order.m_nOrderType)
                             ? hostCall<&CExchangeClient::hasStock>(run.code)
                             : hostCall<&CExchangeClient::hasOption>(run.code);
    return isKnown || failCode(run);
}

constexpr CFamilyCheck optionCheck() {
    CFamilyCheck family{EOrderStrategyTradeType::StockOption};
    family.m_pfnResolveCode = resolveOptionCode;
    return family;
}

constexpr CFamilyCheck kOptionCheck = optionCheck();

} // namespace

bool checkOption(const COrderParam& order, const COrderStrategyParam& strategy,
                 std::vector<CCodeOrderParam>& codes, std::map<std::string, double>& weights) {
    return runFamilyCheck(kOptionCheck, order, strategy, codes, weights);
}

} // namespace TC
