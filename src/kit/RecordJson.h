#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/kit/Json.h"
#include "orderservice/platform/IntakeAudit.h"
#include "orderservice/records/CommandParam.h"
#include "orderservice/records/OrderParam.h"
#include "orderservice/records/StrategyParam.h"
#include "orderservice/records/Task.h"

/// The library's records as JSON objects, for a host's journal or log. A key is the record's field name in
/// snake_case without the type letter. The keys are in the order of the fields. Enumerations are written as
/// numbers, and values that are not set as null. Pure; any thread.
namespace kit {

/// Every field of a command and of its codes. An account is written as its key.
ORDERSERVICE_EXPORT CJson commandJson(const TC::COrderComandParam& command);

/// The report about one source of orders.
ORDERSERVICE_EXPORT CJson intakeJson(const TC::CIntakeReport& report);

/// The report about an order socket. `event` is opened, closed, stuck or refused. `loopback` tells whether
/// only this machine can reach the listener.
ORDERSERVICE_EXPORT CJson doorJson(const TC::CDoorReport& report);

/// A file that is deleted unread. `lines` and `bytes` are null if they could not be counted.
ORDERSERVICE_EXPORT CJson discardJson(const TC::CDiscardReport& report);

/// A failure that was not shown as a message. `event` is orders_dropped, orders_interrupted, cancel_not_done,
/// host_failed, rows_left_out, strategy_not_loaded or strategy_not_started. Only rows_left_out has `rows` and
/// `code`.
ORDERSERVICE_EXPORT CJson incidentJson(const TC::CIncidentReport& report);

/// The source of an order, and the whole order as one text in `order`.
ORDERSERVICE_EXPORT CJson orderJson(const TC::COrderParam& order);

/// A strategy with the setting of its family. The socket's password is left out.
ORDERSERVICE_EXPORT CJson strategyJson(const TC::COrderStrategyParam& strategy);

/// An operation on a task, such as a cancel.
ORDERSERVICE_EXPORT CJson taskOperationJson(const TC::CTaskOpRecord& record);

} // namespace kit
