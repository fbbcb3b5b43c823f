#include "desk/host/BrokerJournal.h"

#include "orderservice/kit/JsonValues.h"

namespace desk {
namespace {

using kit::enumValue;
using kit::numberValue;

CJson referenceValue(const CBrokerEvent& event) {
    return event.m_nReference != 0 ? CJson(event.m_nReference) : CJson();
}

CJson orderFields(const CBrokerEvent& event) {
    const CPaperOrder& order = event.m_order;
    return CJson{{"event", event.m_nNumber},
                 {"command", referenceValue(event)},
                 {"order", order.m_nId},
                 {"task", order.m_nTask},
                 {"account", order.m_strAccount},
                 {"stock", order.m_strStock},
                 {"operation_type", enumValue(order.m_eOperation)},
                 {"price_type", enumValue(order.m_ePriceType)},
                 {"price", order.m_nPrice == 0 ? CJson() : CJson(fromMoney(order.m_nPrice))},
                 {"volume", numberValue(order.m_nVolume)},
                 {"status", statusWord(order.m_eStatus)},
                 {"filled", order.m_nFilled},
                 {"filled_amount", fromMoney(order.m_nFilledAmount)},
                 {"reason", order.m_strReason}};
}

CJson fillFields(const CBrokerEvent& event) {
    const CPaperOrder& order = event.m_order;
    return CJson{{"event", event.m_nNumber},
                 {"command", referenceValue(event)},
                 {"fill", event.m_fill.m_nId},
                 {"order", order.m_nId},
                 {"task", order.m_nTask},
                 {"account", order.m_strAccount},
                 {"stock", order.m_strStock},
                 {"operation_type", enumValue(order.m_eOperation)},
                 {"price", fromMoney(event.m_fill.m_nPrice)},
                 {"volume", event.m_fill.m_nVolume}};
}

} // namespace

bool journalBrokerEvent(CJournal& journal, const CBrokerEvent& event) {
    const utils::KNError error = event.isFill() ? journal.append("fill", fillFields(event))
                                                : journal.append("order", orderFields(event));
    return error.isSuccess();
}

} // namespace desk
