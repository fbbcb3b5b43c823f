// The stock family: buying and selling, and the fund operations that share its course.
#include "check/CheckFrame.h"
#include "check/CodeLookup.h"
#include "platform/InstrumentTypes.h"

namespace TC {
namespace {

/// Order numbers of the fund operations, whose records carry a quantity beside the volume.
constexpr int kFundPlainFirst = 86;
constexpr int kFundPricedFirst = 90; // 90 and 91 go out at a price of 1 whatever the setting says
constexpr int kFundPricedLast = 91;
constexpr int kFundLast = 92;

/// What one unit of the par-priced instruments on SH costs.
constexpr double kParPrice = 100.0;

bool resolveCode(CCheckRun& run) {
    return resolveStockCode(run.code, EKeyJoin::StockKey) || failCode(run);
}

bool checkPrice(const CCheckRun& run) {
    if (!run.code.isEmpty()) return checkStockPrice(run);
    return checkPriceType(run) || failCheck(run, QStringLiteral("[%1]　证券代码为空, 无法下单!"));
}

int unitVolumeOfAmount(const CCheckRun& run) {
    const CStockInfo& stock = run.stock();
    // The type is kept for SH alone, and the same six digits on SZ are another instrument with a real price.
    const bool isParPriced = stock.m_strMarket == "SH" &&
                             knservice::isTypedStock(knservice::kTypeParPriced, "SH", stock.m_strCode, {});
    return roundToUnit(run, volumeOfAmount(run, isParPriced ? kParPrice : kUnsetDouble));
}

void finishFundRecord(const CCheckRun& run, int volume, CCodeOrderParam& record) {
    const int number = run.order.m_nOrderType;
    if (number < kFundPlainFirst || number > kFundLast) return;
    record.m_nQuantityKind = kQuantityKindPlain;
    record.m_dQuantity = volume;
    if (number < kFundPricedFirst || number > kFundPricedLast) return;
    record.m_eOrderType = EOrderType::Plain;
    record.m_dPrice = 1.0;
    record.m_ePriceType = EPriceType::Specified;
}

constexpr CFamilyCheck kStockCheck = {
    EOrderStrategyTradeType::Stock,
    kTooManyLines,
    ESettingText::OrderKindThenPlain,
    EQuoteWait::UnlessSpecified,
    ESplitInstrument::Named,
    nullptr,
    resolveCode,
    nullptr,
    checkPrice,
    unitVolumeOfAmount,
    nullptr,
    finishFundRecord,
};

} // namespace

bool COrderServiceBase::checkAndFillOrderStock(COrderParam order, COrderStrategyParam strategy,
                                               std::vector<CCodeOrderParam>& codes,
                                               std::map<std::string, double>& weights) const {
    CCheckRun run{kStockCheck, *this, order, strategy, codes, weights};
    return runFamilyCheck(run);
}

} // namespace TC
