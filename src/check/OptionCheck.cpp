// Stock options, with the locking and unlocking of their underlying stocks.
#include "check/CheckFrame.h"
#include "check/CodeLookup.h"
#include "platform/ExchangeClient.h"

namespace TC {
namespace {

constexpr int kLockUnderlying = 56;
constexpr int kUnlockUnderlying = 57;

bool resolveCode(CCheckRun& run) {
    (void)resolveStockCode(run.code, EKeyJoin::Plain); // an option's code is none of a stock and stays
    const int number = run.order.m_nOrderType;
    const bool isOfStock = number == kLockUnderlying || number == kUnlockUnderlying;
    auto& exchange = CExchangeClient::instance();
    return (isOfStock ? exchange.hasStock(run.code) : exchange.hasOption(run.code)) || failCode(run);
}

bool checkPrice(const CCheckRun& run) {
    return checkPriceType(run) ||
           failPrice(run, QStringLiteral("[%1]　证券 [%2] %3无效, 无法下单!"), run.stock().m_strCode);
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
    checkPrice,
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
