#include "desk/journal/JournalEvents.h"

#include "orderservice/kit/JsonValues.h"
#include "orderservice/kit/RecordJson.h"

#include <nlohmann/json.hpp>

#include <utility>

namespace desk {
namespace {

using kit::enumValue;
using kit::textValue;

/// Appends the keys of the second object to the first.
CJson followedBy(CJson first, CJson second) {
    for (auto& [key, value] : second.get_ref<CJson::object_t&>())
        first[key] = std::move(value);
    return first;
}

} // namespace

CJson commandFields(const TC::COrderComandParam& command, std::optional<int> task) {
    // The task must be the first key, because JournalTail searches for it there.
    return followedBy(CJson{{"task", task ? CJson(*task) : CJson()}}, kit::commandJson(command));
}

CJson intakeFields(const TC::CIntakeReport& report) {
    return kit::intakeJson(report);
}

CJson doorFields(const TC::CDoorReport& report) {
    return kit::doorJson(report);
}

CJson discardFields(const TC::CDiscardReport& report, const std::string& cause) {
    CJson fields = kit::discardJson(report);
    fields["cause"] = cause;
    return fields;
}

CJson unplacedFields(const TC::COrderParam& order) {
    return kit::orderJson(order);
}

CJson incidentFields(const TC::CIncidentReport& report) {
    return kit::incidentJson(report);
}

CJson messageFields(const QString& text, TC::EMsgTypeDef type, TC::MsgLevel level) {
    return CJson{{"text", textValue(text)}, {"type", enumValue(type)}, {"level", enumValue(level)}};
}

CJson tradeErrorFields(const QString& text, const QString& title, std::int64_t commandSeq) {
    CJson fields{{"text", textValue(text)}, {"title", textValue(title)}};
    if (commandSeq != 0) fields["command"] = commandSeq;
    return fields;
}

CJson strategyFields(const std::string& action, const TC::COrderStrategyParam& strategy) {
    return followedBy(CJson{{"action", action}}, kit::strategyJson(strategy));
}

CJson cancelTaskFields(int taskId, int operation, const std::string& text, const std::string& remark,
                       const std::string& tradingDay) {
    return CJson{{"task", taskId},
                 {"operation", operation},
                 {"text", text},
                 {"remark", remark},
                 {"trading_day", tradingDay}};
}

CJson cancelTaskFields(int taskId, const TC::CTaskOpRecord& record) {
    return followedBy(CJson{{"task", taskId}}, kit::taskOperationJson(record));
}

CJson cancelOrdersFields(const std::vector<std::string>& words) {
    return CJson{{"words", words}};
}

} // namespace desk
