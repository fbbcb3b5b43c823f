#include "desk/journal/JournalRecord.h"

#include <nlohmann/json.hpp>

namespace desk {
namespace {

template<typename N>
void keep(const CJson& fields, const char* key, std::optional<N>& number) {
    const auto value = fields.find(key);
    if (value != fields.end() && value->is_number_integer()) number = value->get<N>();
}

} // namespace

CJournalRecord makeRecord(const std::string& kind, const CJson& fields) {
    CJournalRecord record;
    record.m_strKind = kind;
    if (!fields.is_object()) return record;
    const std::string object = fields.dump(-1, ' ', false, CJson::error_handler_t::replace);
    record.m_strFields = object.substr(1, object.size() - 2);
    if (kind == "command") keep(fields, "task", record.m_numbers.m_task);
    if (kind == "order" || kind == "fill") keep(fields, "event", record.m_numbers.m_event);
    if (kind == "order") keep(fields, "order", record.m_numbers.m_order);
    if (kind == "fill") keep(fields, "fill", record.m_numbers.m_fill);
    return record;
}

} // namespace desk
