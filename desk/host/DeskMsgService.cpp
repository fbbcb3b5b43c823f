#include "desk/host/DeskMsgService.h"

#include "desk/journal/JournalEvents.h"

#include <nlohmann/json.hpp>

namespace desk {

void CDeskMsgService::showMsg(const QString& text, TC::EMsgTypeDef type, TC::MsgLevel level, bool, bool,
                              const QString&) {
    m_journal.post(messageRecord(text, type, level));
    m_sink.writeFloodLine(EFloodLine::Message, !m_journal.isFailed(), text.toStdString());
}

} // namespace desk
