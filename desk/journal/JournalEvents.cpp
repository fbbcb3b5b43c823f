#include "desk/journal/JournalEvents.h"

#include "desk/journal/FieldText.h"
#include "orderservice/kit/JsonValues.h"
#include "orderservice/kit/RecordJson.h"
#include "orderservice/kit/RecordKeys.h"

#include <nlohmann/json.hpp>

#include <utility>

namespace desk {
namespace {

using kit::textValue;

/// Appends the keys of the second object to the first.
CJson followedBy(CJson first, CJson second) {
    for (auto& [key, value] : second.get_ref<CJson::object_t&>())
        first[key] = std::move(value);
    return first;
}

} // namespace

CJournalRecord commandRecord(const TC::COrderComandParam& command, std::optional<int> task) {
    CFieldText fields;
    // The task must be the first key, because JournalTail searches for it there.
    if (task)
        fields.add("task", *task);
    else
        fields.addNull("task");
    kit::writeCommandKeys(command, fields);
    return {"command", fields.takeText(), {{}, task, {}, {}}};
}

CJournalRecord intakeRecord(const TC::CIntakeReport& report) {
    CFieldText fields;
    kit::writeIntakeKeys(report, fields);
    return {"intake", fields.takeText(), {}};
}

CJson doorFields(const TC::CDoorReport& report) {
    return kit::doorJson(report);
}

CJournalRecord confirmationRecord(const TC::CConfirmQuestion& question) {
    CFieldText fields;
    fields.add("event", "asked");
    fields.add("title", question.m_strTitle.toStdString());
    fields.add("trader_type", question.m_eTraderType);
    fields.beginList("rows");
    for (const auto& [order, remark] : question.m_remarks) {
        fields.beginObject(nullptr);
        fields.add("order", std::int64_t{order});
        fields.add("remark", remark);
        const auto code = question.m_rows.find(order); // an order of the host may have no record
        if (code != question.m_rows.end()) kit::writeCodeKeys(code->second, fields);
        fields.endObject();
    }
    fields.endList();
    return {"confirmation", fields.takeText(), {}};
}

CJson answerFields(TC::EConfirmResult result, const std::string& by, std::int64_t question) {
    static constexpr const char* kEvents[] = {"declined", "accepted", "not_asked"}; // by EConfirmResult
    return CJson{{"event", kEvents[static_cast<int>(result)]}, {"by", by}, {"question", question}};
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

CJournalRecord messageRecord(const QString& text, TC::EMsgTypeDef type, TC::MsgLevel level) {
    CFieldText fields;
    fields.add("text", text.toStdString());
    fields.add("type", type);
    fields.add("level", level);
    return {"message", fields.takeText(), {}};
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

CJson controlFields(const std::string& action) {
    return CJson{{"action", action}};
}

CJson cancelOrdersFields(const std::vector<std::string>& words) {
    return CJson{{"words", words}};
}

} // namespace desk
