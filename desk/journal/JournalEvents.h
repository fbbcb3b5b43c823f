#pragma once

#include "desk/journal/JournalRecord.h"
#include "desk/journal/Json.h"
#include "orderservice/gates/OrderConfirmer.h"
#include "orderservice/platform/IntakeAudit.h"
#include "orderservice/records/CommandParam.h"
#include "orderservice/records/StrategyParam.h"
#include "orderservice/records/Task.h"

#include <optional>
#include <string>
#include <vector>

/// The keys of each kind of event in the journal. Records are written as in kit/RecordJson.h; the journal
/// adds some keys. Pure functions; any thread.
namespace desk {

/// Kind `command`: the task, then the command. `task` is the number that cancels the command. If it is not
/// set, the command was refused and the key is null. Kinds that each order has are made as texts at once,
/// because that is faster; their keys are in kit/RecordKeys.h.
CJournalRecord commandRecord(const TC::COrderComandParam& command, std::optional<int> task);

/// Kind `intake`.
CJournalRecord intakeRecord(const TC::CIntakeReport& report);
/// Kind `door`. The key `loopback` tells whether only this machine can reach the listener.
CJson doorFields(const TC::CDoorReport& report);

/// Kind `confirmation`, event `asked`: the title, and one row for each order with its record and remark. The
/// key `order` of a row is the index of the order in its batch.
CJournalRecord confirmationRecord(const TC::CConfirmQuestion& question);
/// Kind `confirmation`, event `accepted`, `declined` or `not_asked`. `by` is who answered. `question` is the
/// journal number of the question.
CJson answerFields(TC::EConfirmResult result, const std::string& by, std::int64_t question);

/// Kind `discarded`. `cause` tells why the file is not read.
CJson discardFields(const TC::CDiscardReport& report, const std::string& cause);
/// Kind `unplaced`. The key `order` has the whole order as one text.
CJson unplacedFields(const TC::COrderParam& order);

/// Kind `incident`.
CJson incidentFields(const TC::CIncidentReport& report);

/// Kind `message`.
CJournalRecord messageRecord(const QString& text, TC::EMsgTypeDef type, TC::MsgLevel level);

/// Kind `trade_error`. `commandSeq` is the journal number of the command that caused the error; 0 if there is
/// none.
CJson tradeErrorFields(const QString& text, const QString& title, std::int64_t commandSeq = 0);

/// Kind `strategy`. `action` is add, change, remove, start, stop or not_saved. The socket's password is left
/// out.
CJson strategyFields(const std::string& action, const TC::COrderStrategyParam& strategy);

/// Kind `cancel_task`, for a cancel through the trade client.
CJson cancelTaskFields(int taskId, int operation, const std::string& text, const std::string& remark,
                       const std::string& tradingDay);
/// Kind `cancel_task`, for a cancel through the task centre.
CJson cancelTaskFields(int taskId, const TC::CTaskOpRecord& record);

/// Kind `control`: what the user of the window has done with the desk. `action` is halt, halted, resume,
/// resumed, resume_intake or cancel.
CJson controlFields(const std::string& action);

/// Kind `cancel_orders`: the words of the line.
CJson cancelOrdersFields(const std::vector<std::string>& words);

} // namespace desk
