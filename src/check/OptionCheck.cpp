// Stock options, with the locking and unlocking of their underlying stocks.
#include "check/CheckFrame.h"
#include "check/CodeLookup.h"
#include "platform/ExchangeClient.h"
#include "platform/HostCall.h"

namespace TC {
namespace {

/// Resolves the code of a stock, which locking and unlocking name, and tests it here as well, since only
/// codes that come with the order are tested. Any other code stays as it came.
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

bool COrderServiceBase::checkAndFillOrderOption(COrderParam order, COrderStrategyParam strategy,
                                                std::vector<CCodeOrderParam>& codes,
                                                std::map<std::string, double>& weights) const {
    return runFamilyCheck({kOptionCheck, *this, order, strategy, codes, weights});
}

} // namespace TC
