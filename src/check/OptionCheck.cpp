// Stock options, with the locking and unlocking of their underlying stocks.
#include "check/CheckFrame.h"
#include "check/CodeLookup.h"
#include "platform/ExchangeClient.h"

namespace TC {
namespace {

constexpr int kLockUnderlying = 56;
constexpr int kUnlockUnderlying = 57;

/// Resolves the code of a stock, which locking and unlocking name, and tests it here as well, since only
/// codes that come with the order are tested. Any other code stays as it came.
bool resolveCode(CCheckRun& run) {
    (void)resolveStockCode(run.code, EKeyJoin::Plain);
    const int number = run.order.m_nOrderType;
    const bool isOfStock = number == kLockUnderlying || number == kUnlockUnderlying;
    auto& exchange = CExchangeClient::instance();
    return (isOfStock ? exchange.hasStock(run.code) : exchange.hasOption(run.code)) || failCode(run);
}

constexpr CFamilyCheck kOptionCheck = {
    EOrderStrategyTradeType::StockOption,
    kTooManyLines,
    ESettingText::Always,
    EQuoteWait::UnlessSpecified,
    ESplitInstrument::Named,
    nullptr,
    resolveCode,
    nullptr,
    checkStockPrice,
    plainVolumeOfAmount,
    nullptr,
    nullptr,
};

} // namespace

bool COrderServiceBase::checkAndFillOrderOption(COrderParam order, COrderStrategyParam strategy,
                                                std::vector<CCodeOrderParam>& codes,
                                                std::map<std::string, double>& weights) const {
    CCheckRun run{kOptionCheck, *this, order, strategy, codes, weights};
    return runFamilyCheck(run);
}

} // namespace TC
