// The markets that have their own instrument lists: both connects, gold and the share-transfer market.
#include "orderservice/base/FindRow.h"
#include "orderservice/check/CheckFrame.h"
#include "orderservice/check/CodeLookup.h"
#include "orderservice/platform/ExchangeClient.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/TradingRules.h"
#include "orderservice/records/OrderTypes.h"

namespace TC {
namespace {

/// Replaces the code by the market's key: the market word joined with the code. A code that is already a key
/// is only changed to upper case. If neither key is known, it reports and returns false.
template<auto kIsKnown>
bool resolveMarketCode(CCheckRun& run, const QString& word) {
    const QString key = qdStockKey(word, run.code);
    const QString upper = run.code.toUpper();
    if (hostCall<kIsKnown>(key)) {
        run.code = key;
    } else if (run.code.size() == kFullCodeLength && hostCall<kIsKnown>(upper)) {
        run.code = upper;
    } else {
        return failCode(run);
    }
    return true;
}

bool resolveSgt(CCheckRun& run) {
    return resolveMarketCode<&CExchangeClient::hasSkstock>(run, QStringLiteral("SGT"));
}

bool resolveHgt(CCheckRun& run) {
    return resolveMarketCode<&CExchangeClient::hasHkstock>(run, QStringLiteral("HGT"));
}

bool resolveGold(CCheckRun& run) {
    return resolveMarketCode<&CExchangeClient::hasGold>(run, QStringLiteral("GOLD"));
}

/// On the share-transfer market, the plain buy and sell orders name stocks of the two exchanges.
bool resolveNeeq(CCheckRun& run) {
    if (run.order.m_nOrderType == kOrderBuy || run.order.m_nOrderType == kOrderSell)
        return resolveStockCode(run.code, EKeyJoin::Plain, EFullCode::Refused) || failCode(run);
    return resolveMarketCode<&CExchangeClient::hasNeeq>(run, QStringLiteral("NEEQ"));
}

constexpr CFamilyCheck marketCheck(EOrderStrategyTradeType tradeType, bool (*resolve)(CCheckRun&)) {
    CFamilyCheck family{tradeType};
    family.m_pfnResolveCode = resolve;
    return family;
}

constexpr CFamilyCheck kSgtCheck = marketCheck(EOrderStrategyTradeType::SGT, resolveSgt);
constexpr CFamilyCheck kHgtCheck = marketCheck(EOrderStrategyTradeType::HGT, resolveHgt);
constexpr CFamilyCheck kGoldCheck = marketCheck(EOrderStrategyTradeType::Gold, resolveGold);
// This family only runs the first steps: it checks whether the order may be sent, and builds no records.
constexpr CFamilyCheck kNeeqCheck = marketCheck(EOrderStrategyTradeType::Neeq, resolveNeeq);

/// The kinds of transfer that some orders require, numbered as in the instruments of the share-transfer
/// market.
constexpr int kTransferKind2 = 2;
constexpr int kTransferKind4 = 4;

/// A range of order numbers that is allowed only for instruments of certain kinds of transfer.
struct CTransferRule {
    int m_nFirst;
    int m_nLast;
    bool m_bKind2;
    bool m_bKind4;
};

constexpr CTransferRule kTransferRules[] = {
    {74, 74, true, false}, {72, 73, false, true}, {76, 77, false, true}, {78, 79, true, true}};

bool isTransferAllowed(int orderType, int kind) {
    const CTransferRule* rule = utils::findRow(kTransferRules, [&](const CTransferRule& row) {
        return orderType >= row.m_nFirst && orderType <= row.m_nLast;
    });
    if (rule == nullptr) return true;
    return (kind == kTransferKind2 && rule->m_bKind2) || (kind == kTransferKind4 && rule->m_bKind4);
}

} // namespace

bool checkSgt(const COrderParam& order, const COrderStrategyParam& strategy,
              std::vector<CCodeOrderParam>& codes, std::map<std::string, double>& weights) {
    return runFamilyCheck(kSgtCheck, order, strategy, codes, weights);
}

bool checkHgt(const COrderParam& order, const COrderStrategyParam& strategy,
              std::vector<CCodeOrderParam>& codes, std::map<std::string, double>& weights) {
    return runFamilyCheck(kHgtCheck, order, strategy, codes, weights);
}

bool checkGold(const COrderParam& order, const COrderStrategyParam& strategy,
               std::vector<CCodeOrderParam>& codes, std::map<std::string, double>& weights) {
    return runFamilyCheck(kGoldCheck, order, strategy, codes, weights);
}

bool checkNeeq(const COrderParam& order, const COrderStrategyParam& strategy,
               std::vector<CCodeOrderParam>& codes, std::map<std::string, double>& weights) {
    CCheckRun run{{}, kNeeqCheck, order, strategy, codes, weights};
    if (!beginCheck(run)) return false;
    const int kind = run.detail ? run.detail->m_tradeInfo.m_nTransferKind : 0;
    if (isTransferAllowed(order.m_nOrderType, kind)) return true;
    return failCheck(run, QStringLiteral("[%1]　通道号: %2, [NEEQ]下单代码 [%3] 该交易方式对此代码已过滤!"),
                     run.code);
}

} // namespace TC
