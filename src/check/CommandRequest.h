#pragma once

#include "orderservice/base/Bson.h"
#include "orderservice/base/Unset.h"
#include "orderservice/check/CommandSource.h"
#include "orderservice/records/CommandParam.h"
#include "orderservice/records/Enums.h"
#include "orderservice/records/OrderParam.h"
#include "orderservice/records/StrategyParam.h"

#include <map>
#include <string>
#include <vector>

namespace TC {

/// Which parts a command has.
enum class ECommandForm {
    Full,
    /// Without creation time, tag, platform and algorithm text, also for an order that an algorithm executes.
    Bare,
};

/// What a variant asks for a command. The order and its strategy give the rest. The defaults are those of a
/// command without any extra.
struct CCommandRequest {
    EQdTraderType m_eTraderType = unsetEnum<EQdTraderType>();
    EQdHedgeType m_eHedgeType = EQdHedgeType::None;
    EFtSpecBtnBarType m_eBtnType = EFtSpecBtnBarType::None;
    std::vector<CCodeOrderParam> m_codes{};    ///< the checked records
    std::map<std::string, double> m_weights{}; ///< account key to weight
    EQdStopLossType m_eStopLossType = EQdStopLossType::None;
    bool m_bUnion = false;
    bson::BSONObj m_extra{};
    std::string m_strTag{};
    ETradePlatform m_ePlatform = ETradePlatform::Plain; ///< replaced if an algorithm executes the order
    std::string m_strAlgoParam{}; ///< replaced if an algorithm executes the order; may become empty
    bool m_bCommandFlag = false;
    bool m_bForceConfirm = false;
    ECommandForm m_eForm = ECommandForm::Full;
};

/// Makes the one command of an order. The remark is the order's. A full command has the source of the
/// strategy, a bare one that of the order. If the command guard is on, a full command first leaves out the
/// records of a sale of all positions that cannot be sold. Returns null, after a report, if no record is left
/// then. Does not send anything. Any thread.
COrderComandParamPtr makeCommand(CCommandRequest request, const COrderParam& order,
                                 const COrderStrategyParam& strategy);

/// Passes a finished command to COrderClient::orderCommands. Every command leaves the library here. If the
/// command guard is on, a command is refused with a report if a record lacks a value (check/CommandGuard.h).
/// Any thread; the command must not be null.
void sendCommand(const COrderComandParamPtr& command, const CCommandSource& source);

/// Makes the command and sends it, unless the guard left nothing to send.
void issueCommand(CCommandRequest request, const COrderParam& order, const COrderStrategyParam& strategy);

/// The parameters of a basket's hedge leg, with its price kind: one for buying, another for all other
/// operations.
bson::BSONObj hedgeDocument(EOperationType operation, const COrderStrategyParam& strategy);

/// The parameter text of an algorithm order, or an empty text.
std::string algoParamOf(const COrderParam& order, const std::vector<CCodeOrderParam>& codes,
                        const COrderStrategyParam& strategy);

} // namespace TC
