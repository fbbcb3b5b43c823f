#pragma once

#include "desk/host/TextSink.h"
#include "desk/journal/Journal.h"
#include "orderservice/platform/MsgService.h"

namespace desk {

/// The desk's message panel. Writes each message to the journal, and as a line to the sink even if the
/// journal refuses it. Any thread; waits only for other writers. Journal and sink must outlive it.
class CDeskMsgService : public TC::CMsgService {
public:
    CDeskMsgService(CJournal& journal, CTextSink& sink) : m_journal(journal), m_sink(sink) {}

    void showMsg(const QString& text, TC::EMsgTypeDef type, TC::MsgLevel level, bool flag1, bool flag2,
                 const QString& extra) override;

private:
    CJournal& m_journal;
    CTextSink& m_sink;
};

} // namespace desk
