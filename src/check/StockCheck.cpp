// The stock family: buying and selling, and the operations on funds that use the same steps.
#include "orderservice/check/CheckFrame.h"
#include "orderservice/check/CodeLookup.h"
#include "orderservice/platform/InstrumentTypes.h"
#include "orderservice/records/OrderTypes.h"

namespace TC {
namespace {

bool resolveKeyedStockCode(CCheckRun& run) {
    return resolveStockCode(run.code, EKeyJoin::StockKey) || failCode(run);
}

bool checkStockOrFundPrice(const CCheckRun& run) {
    if (!run.code.isEmpty()) return checkStockPrice(run);
    return checkPriceType(run) || failCheck(run, QStringLiteral("[%1]　证券代码为空, 无法下单!"));
}

int stockVolumeOfAmount(const CCheckRun& run) {
    const CStockInfo& stock = run.stock();
    // Only instruments on SH can be par-priced. The same six digits on SZ are another instrument, which has a
    // market price.
    const bool isParPriced = stock.m_strMarket == "SH" &&
                             knservice::isTypedStock(knservice::kTypeParPriced, "SH", stock.m_strCode, {});
    return roundToUnit(run, volumeOfAmount(run, isParPriced ? knservice::kParPrice : kUnsetDouble));
}

void finishFundRecord(const CCheckRun& run, int volume, CCodeOrderParam& record) {
    if (!isFundOrder(run.order.m_nOrderType)) return;
    record.m_nQuantityKind = kQuantityKindPlain;
    record.m_dQuantity = volume;
    if (!isFixedPriceFundOrder(run.order.m_nOrderType)) return;
    record.m_eOrderType = EOrderType::Plain;
    record.m_dPrice = 1.0;
    record.m_ePriceType = EPriceType::Specified;
}

constexpr CFamilyCheck stockCheck() {
    CFamilyCheck family{EOrderStrategyTradeType::Stock};
    family.m_eSettingText = ESettingText::OrderKindThenPlain;
    family.m_pfnResolveCode = resolveKeyedStockCode;
    family.m_pfnCheckPrice = checkStockOrFundPrice;
    family.m_pfnVolumeOfAmount = stockVolumeOfAmount;
    family.m_pfnFinishRecord = finishFundRecord;
    return family;
}

constexpr CFamilyCheck kStockCheck = stockCheck();

} // namespace

bool checkStock(const COrderParam& order, const COrderStrategyParam& strategy,
                std::vector<CCodeOrderParam>& codes, std::map<std::string, double>& weights) {
    return runFamilyCheck(kStockCheck, order, strategy, codes, weights);
}

} // namespace TC
