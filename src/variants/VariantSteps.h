#pragma once

#include "orderservice/base/Bson.h"
#include "orderservice/check/CommandRequest.h"
#include "orderservice/records/OrderParam.h"
#include "orderservice/records/StrategyParam.h"
#include "orderservice/variants/FamilyTable.h"

#include <iterator>
#include <map>
#include <string>
#include <vector>

/// Steps that every variant of the order service needs, whether it processes a batch in one pass or in two.
/// They run on the caller's thread. An exception of the host leaves them as a CHostError.
namespace TC {

/// Keeps the first `limit` strategies of one kind, in key order, and erases the others of this kind. `counts`
/// tells whether a strategy is of the kind.
template<typename Predicate>
void keepFirst(COrderStrategyMap& strategies, int limit, const Predicate& counts) {
    int count = 0;
    for (auto it = strategies.begin(); it != strategies.end();) {
        const bool over = counts(it.value()) && count++ >= limit;
        it = over ? strategies.erase(it) : std::next(it);
    }
}

/// Keeps the first `limit` strategies of one source, in key order, and erases the others of this source.
void keepFirstOfType(COrderStrategyMap& strategies, int limit, EOrderStrategyType type);

/// Writes one line to the log if logging is on. The object and the name of the function are the line's start.
void logCommand(const void* object, const char* function, const char* text);

/// Shows the message that announces an order before its family's check.
void announceOrder(const COrderParam& order, const COrderStrategyParam& strategy);
/// Shows the message for a trade type that has no family.
void showUnknownFamily(const COrderParam& order);

/// Whether the user may send commands. If not, the audit gets the number of dropped orders of the channel;
/// the user sees no message.
bool mayIssue(int channel, int orders);

/// Whether the command of a basket may have the strategy's command flag. Sales, target positions and single
/// positions never have it.
bool mayHaveCommandFlag(int orderType);
/// The request for the command of a checked basket. It has everything except what differs by variant (union
/// flag, tag and confirmation) and the parameters of the hedge leg. If its hedge type is Hedge, the caller
/// sets these with hedgeLeg.
CCommandRequest makeBasketRequest(const COrderParam& order, const COrderStrategyParam& strategy,
                                  std::vector<CCodeOrderParam> codes, std::map<std::string, double> weights);
/// The request for the command of a checked order of any other family, without what differs by variant.
CCommandRequest makeFamilyRequest(const CVariantFamily& family, const COrderParam& order,
                                  std::vector<CCodeOrderParam> codes, std::map<std::string, double> weights);
/// The parameters of the hedge leg, with its price kind: one for buying, another for all other operations.
bson::BSONObj hedgeLeg(int orderType, const COrderStrategyParam& strategy);

} // namespace TC
