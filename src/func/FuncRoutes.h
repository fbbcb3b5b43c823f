#pragma once

#include "orderservice/func/FuncFrame.h"
#include "orderservice/records/FuncParam.h"
#include "orderservice/records/StrategyParam.h"

#include <string>

namespace TC {

/// Runs the order routine of the strategy's trade type and the call's order type. A trade type without a
/// routine is reported plainly. algoParam: the settings of an algorithm, used for stocks and connects.
void routeCall(const COrderFuncParam& param, const COrderStrategyParam& strategy,
               const CFuncReporter& reporter, const std::string& algoParam);

} // namespace TC
