#pragma once

#include "desk/host/TextSink.h"
#include "desk/journal/Journal.h"
#include "desk/paper/PaperBroker.h"
#include "platform/OrderClient.h"

namespace desk {

/// The desk's order client: journals each command and hands it to the paper broker. Any thread. Journal,
/// broker and sink outlive it.
///
/// A command that the journal refuses is not executed: better no new order than one without a record. A
/// command that must be confirmed is declined unless the desk takes such commands unasked. What keeps a
/// command from the broker goes to the sink and, as a trade_error, to the journal.
class CPaperOrderClient : public TC::COrderClient {
public:
    /// acceptForcedConfirm: the desk's configuration stands for the user's confirmation.
    CPaperOrderClient(CJournal& journal, CPaperBroker& broker, CTextSink& sink, bool acceptForcedConfirm);

    void orderCommands(const TC::COrderComandParamPtr& command) override;
    /// Journals the text and writes it to the sink, where it appears also if the journal refuses it.
    void showTradeError(const QString& text, const QString& title) override;

private:
    void refuse(const std::string& text, std::int64_t commandSeq);

    CJournal& m_journal;
    CPaperBroker& m_broker;
    CTextSink& m_sink;
    const bool m_bAcceptForcedConfirm;
};

} // namespace desk
