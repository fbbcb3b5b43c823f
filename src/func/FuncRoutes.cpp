#include "orderservice/func/FuncRoutes.h"

#include "orderservice/base/Text.h"
#include "orderservice/func/FuncTables.h"
#include "orderservice/func/OrderRoutines.h"

#include <iterator>

namespace TC {
namespace {

constexpr char kBadTradeType[] = "[函数交易]　函数: %1, 交易类型错误";

using CRoutine = void (*)(const COrderFuncParam&, const COrderStrategyParam&, const CFuncReporter&,
                          const std::string&);

/// Calls a routine that knows no algorithms.
template<void (*kRoutine)(const COrderFuncParam&, const COrderStrategyParam&, const CFuncReporter&)>
void runPlain(const COrderFuncParam& param, const COrderStrategyParam& strategy,
              const CFuncReporter& reporter, const std::string&) {
    kRoutine(param, strategy, reporter);
}

/// The routines of one trade type.
struct CRoutes {
    CRoutine m_pfnSingle; ///< null if the trade type has no routine
    CRoutine m_pfnBasket; ///< for the order types of baskets
};

constexpr CRoutine kStock = orderStock;
constexpr CRoutine kBasket = runPlain<orderCompose>;

/// By trade type.
constexpr CRoutes kRoutes[] = {
    {kStock, kStock},                               // 0 stocks
    {runPlain<orderSpec>, runPlain<orderSpec>},     // 1 futures
    {kBasket, kBasket},                             // 2 baskets of stocks
    {runPlain<orderCredit>, kBasket},               // 3 margin trading
    {runPlain<orderOption>, runPlain<orderOption>}, // 4 options on stocks
    {nullptr, nullptr},                             // 5
    {kBasket, kBasket},                             // 6
    {nullptr, nullptr},                             // 7
    {kBasket, kBasket},                             // 8 baskets of futures
    {kStock, kBasket},                              // 9 Shenzhen connect
    {kStock, kBasket},                              // 10 Shanghai connect
};

CRoutine routineOf(const COrderFuncParam& param, EOrderStrategyTradeType tradeType) {
    const auto number = static_cast<int>(tradeType);
    if (number < 0 || number >= static_cast<int>(std::size(kRoutes))) return nullptr;
    const CRoutes& routes = kRoutes[number];
    return isComposeOrderType(param.m_nOrderType) ? routes.m_pfnBasket : routes.m_pfnSingle;
}

} // namespace

void routeCall(const COrderFuncParam& param, const COrderStrategyParam& strategy,
               const CFuncReporter& reporter, const std::string& algoParam) {
    if (const CRoutine routine = routineOf(param, strategy.m_eTradeType))
        return routine(param, strategy, reporter, algoParam);
    reporter.reportPlainly(utils::fillText(QString::fromUtf8(kBadTradeType), {param.m_strFuncName}));
}

} // namespace TC
