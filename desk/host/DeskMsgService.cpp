#include "desk/host/DeskMsgService.h"

#include "desk/journal/JournalEvents.h"

#include <nlohmann/json.hpp>

namespace desk {

void CDeskMsgService::showMsg(const QString& text, TC::EMsgTypeDef type, TC::MsgLevel level, bool, bool,
                              const QString&) {
    const bool isRecorded = m_journal.append(messageRecord(text, type, level)).isSuccess();
    m_sink.writeFloodLine(EFloodLine::Message, isRecorded, text.toStdString());
}

} // namespace desk
