#pragma once

#include "orderservice/func/FuncFrame.h"
#include "orderservice/records/FuncParam.h"
#include "orderservice/records/StrategyParam.h"

#include <string>

/// The order routines of function trading, one for each family. They check a call on all its accounts and
/// then send one command, or report a failure and send nothing. They block for up to two seconds for each
/// instrument without a quote.
namespace TC {

/// Futures.
void orderSpec(const COrderFuncParam& param, const COrderStrategyParam& strategy,
               const CFuncReporter& reporter);
/// Stocks and the connects. algoParam: the settings of an algorithm, or empty.
void orderStock(const COrderFuncParam& param, const COrderStrategyParam& strategy,
                const CFuncReporter& reporter, const std::string& algoParam);
/// Baskets of stocks, of credit and of futures.
void orderCompose(const COrderFuncParam& param, const COrderStrategyParam& strategy,
                  const CFuncReporter& reporter);
/// Margin trading, with the direct repayment of money.
void orderCredit(const COrderFuncParam& param, const COrderStrategyParam& strategy,
                 const CFuncReporter& reporter);
/// Options on stocks.
void orderOption(const COrderFuncParam& param, const COrderStrategyParam& strategy,
                 const CFuncReporter& reporter);

} // namespace TC
