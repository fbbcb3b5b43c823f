#include "desk/host/BrokerJournal.h"

#include "desk/journal/FieldText.h"

namespace desk {
namespace {

void addReference(const CBrokerEvent& event, CFieldText& fields) {
    if (event.m_nReference != 0)
        fields.add("command", event.m_nReference);
    else
        fields.addNull("command");
}

CJournalRecord orderRecord(const CBrokerEvent& event) {
    const CPaperOrder& order = event.m_order;
    CFieldText fields;
    fields.add("event", event.m_nNumber);
    addReference(event, fields);
    fields.add("order", order.m_nId);
    fields.add("task", order.m_nTask);
    fields.add("account", order.m_strAccount);
    fields.add("stock", order.m_strStock);
    fields.add("operation_type", order.m_eOperation);
    fields.add("price_type", order.m_ePriceType);
    if (order.m_nPrice == 0)
        fields.addNull("price");
    else
        fields.add("price", fromMoney(order.m_nPrice));
    fields.add("volume", order.m_nVolume);
    fields.add("status", statusWord(order.m_eStatus));
    fields.add("filled", order.m_nFilled);
    fields.add("filled_amount", fromMoney(order.m_nFilledAmount));
    fields.add("reason", order.m_strReason);
    return {"order", fields.takeText(), {event.m_nNumber, {}, order.m_nId, {}}};
}

CJournalRecord fillRecord(const CBrokerEvent& event) {
    const CPaperOrder& order = event.m_order;
    CFieldText fields;
    fields.add("event", event.m_nNumber);
    addReference(event, fields);
    fields.add("fill", event.m_fill.m_nId);
    fields.add("order", order.m_nId);
    fields.add("task", order.m_nTask);
    fields.add("account", order.m_strAccount);
    fields.add("stock", order.m_strStock);
    fields.add("operation_type", order.m_eOperation);
    fields.add("price", fromMoney(event.m_fill.m_nPrice));
    fields.add("volume", event.m_fill.m_nVolume);
    return {"fill", fields.takeText(), {event.m_nNumber, {}, {}, event.m_fill.m_nId}};
}

} // namespace

std::size_t journalBrokerEvents(CJournal& journal, const std::vector<CBrokerEvent>& events) {
    // While the journal fails, many events may wait for it. They must not be written as text at each attempt.
    if (journal.isFailed()) return 0;
    std::vector<CJournalRecord> records;
    records.reserve(events.size());
    for (const CBrokerEvent& event : events)
        records.push_back(event.isFill() ? fillRecord(event) : orderRecord(event));
    return journal.appendAll(records);
}

} // namespace desk
