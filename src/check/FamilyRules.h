#pragma once

#include "orderservice/records/CommandParam.h"
#include "orderservice/records/OrderParam.h"
#include "orderservice/records/StrategyParam.h"

#include <QVector>

#include <map>
#include <string>
#include <vector>

namespace TC {

/// The checks of the product families. COrderServiceBase offers them to hosts; the library itself calls these
/// functions, because they copy neither the order nor the strategy.
///
/// A check appends one record to `codes` for each account that gets a volume; it can return true without any
/// record. It fills `weights` by account key. If it returns false, it has reported one failure. It runs on
/// the caller's thread and may block it for up to two seconds for each instrument that waits for its quote.
/// An exception of the host leaves it as a CHostError.
using CCheckFn = bool (*)(const COrderParam& order, const COrderStrategyParam& strategy,
                          std::vector<CCodeOrderParam>& codes, std::map<std::string, double>& weights);

bool checkStock(const COrderParam& order, const COrderStrategyParam& strategy,
                std::vector<CCodeOrderParam>& codes, std::map<std::string, double>& weights);
bool checkFuture(const COrderParam& order, const COrderStrategyParam& strategy,
                 std::vector<CCodeOrderParam>& codes, std::map<std::string, double>& weights);
bool checkFutureOption(const COrderParam& order, const COrderStrategyParam& strategy,
                       std::vector<CCodeOrderParam>& codes, std::map<std::string, double>& weights);
bool checkOption(const COrderParam& order, const COrderStrategyParam& strategy,
                 std::vector<CCodeOrderParam>& codes, std::map<std::string, double>& weights);
bool checkSgt(const COrderParam& order, const COrderStrategyParam& strategy,
              std::vector<CCodeOrderParam>& codes, std::map<std::string, double>& weights);
bool checkHgt(const COrderParam& order, const COrderStrategyParam& strategy,
              std::vector<CCodeOrderParam>& codes, std::map<std::string, double>& weights);
bool checkGold(const COrderParam& order, const COrderStrategyParam& strategy,
               std::vector<CCodeOrderParam>& codes, std::map<std::string, double>& weights);
bool checkCredit(const COrderParam& order, const COrderStrategyParam& strategy,
                 std::vector<CCodeOrderParam>& codes, std::map<std::string, double>& weights);
/// Checks only whether the order may be sent; appends no record.
bool checkNeeq(const COrderParam& order, const COrderStrategyParam& strategy,
               std::vector<CCodeOrderParam>& codes, std::map<std::string, double>& weights);
bool checkBasket(const COrderParam& order, const COrderStrategyParam& strategy,
                 std::vector<CCodeOrderParam>& codes, std::map<std::string, double>& weights);
/// The same check. `rows` are the rows of the basket and may be order.m_orders itself; they need not be those
/// of the order. Target positions are replaced by the orders that change the holdings to the targets.
bool checkBasketRows(const COrderParam& order, QVector<COrderSingleParam>& rows,
                     const COrderStrategyParam& strategy, std::vector<CCodeOrderParam>& codes,
                     std::map<std::string, double>& weights);

} // namespace TC
