#pragma once

#include "orderservice/records/Basket.h"
#include "orderservice/records/Enums.h"
#include "orderservice/records/FuncParam.h"
#include "orderservice/records/StrategyParam.h"

#include <QString>

#include <string>

/// The strategy of one function call. It is made for the call from the user's default settings and is never
/// stored. Any thread. An exception of the host leaves these functions as a CHostError.
namespace TC {

/// The kind of account that a trade type of function trading trades on.
EQDBrokerType brokerTypeOfCall(EOrderStrategyTradeType tradeType);

/// Makes the strategy: accounts, volume, amount or ratio, and settings. Clears `error` first. On failure it
/// gets the text for the user, in Chinese.
COrderStrategyParam getStrategy(const COrderFuncParam& param, std::string& error);

/// The key of the user's first account of the trade type's kind that has this display id. If no account has
/// it, returns the text unchanged: it may be the name of a group, or already a key. UTF-8.
std::string translateAccountID(std::string id, EOrderStrategyTradeType tradeType);

/// Fills the record of a basket's futures leg: the first account, the instrument, the hedge ratio and the
/// strategy's setting for futures. The keys of its document are in docs/function-trading.md. Clears `error`
/// first. On failure it gets the text for the user, and the record keeps what was filled before.
void fillHedgeParam(CBasketHedgeParam& hedge, COrderStrategyParam& strategy, QString& futuresAccount,
                    QString& futuresCode, double ratio, std::string& error);

/// Whether the group or account of the strategy exists.
bool checkAccount(const COrderStrategyParam& strategy);
/// Whether every account of the strategy is logged in.
bool checkAccountStatus(const COrderStrategyParam& strategy);

} // namespace TC
