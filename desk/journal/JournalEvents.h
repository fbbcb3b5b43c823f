#pragma once

#include "desk/journal/Json.h"
#include "platform/IntakeAudit.h"
#include "records/CommandParam.h"
#include "records/StrategyParam.h"
#include "records/Task.h"

#include <optional>
#include <string>
#include <vector>

/// The keys of each kind of event in the journal. Records are written as in kit/RecordJson.h; the journal
/// adds keys of its own. Pure; any thread.
namespace desk {

/// Kind `command`: the task, then the command. `task` is the number that cancels the command; none: it was
/// refused, and the key is null.
CJson commandFields(const TC::COrderComandParam& command, std::optional<int> task);

/// Kind `intake`.
CJson intakeFields(const TC::CIntakeReport& report);
/// `loopback` tells whether only this machine can reach the listener.
CJson doorFields(const TC::CDoorReport& report);

/// Kind `discarded`; `cause` tells why the file is not read.
CJson discardFields(const TC::CDiscardReport& report, const std::string& cause);
/// Kind `unplaced`; `order` is all of the order as one text.
CJson unplacedFields(const TC::COrderParam& order);

/// Kind `incident`.
CJson incidentFields(const TC::CIncidentReport& report);

/// Kind `message`.
CJson messageFields(const QString& text, TC::EMsgTypeDef type, TC::MsgLevel level);

/// Kind `trade_error`. `commandSeq` is the journal number of the command that it is about; 0: of none.
CJson tradeErrorFields(const QString& text, const QString& title, std::int64_t commandSeq = 0);

/// Kind `strategy`. action: add, change, remove, start or stop. The socket's password is left out.
CJson strategyFields(const std::string& action, const TC::COrderStrategyParam& strategy);

/// Kind `cancel_task`, as it came through the trade client.
CJson cancelTaskFields(int taskId, int operation, const std::string& text, const std::string& remark,
                       const std::string& tradingDay);
/// Kind `cancel_task`, as it came through the task centre.
CJson cancelTaskFields(int taskId, const TC::CTaskOpRecord& record);

/// Kind `cancel_orders`: the words of the line.
CJson cancelOrdersFields(const std::vector<std::string>& words);

} // namespace desk
