#pragma once

#include "desk/host/TextSink.h"
#include "desk/journal/Journal.h"
#include "desk/paper/PaperBroker.h"
#include "platform/OrderClient.h"

#include <mutex>

namespace desk {

/// The desk's order client: journals each command and hands it to the paper broker. Any thread. Journal,
/// broker and sink outlive it.
///
/// The record of a command has its task number, which cancels it. A command that the journal refuses is not
/// executed: better no new order than one without a record. A command that must be confirmed is declined
/// unless the desk takes such commands unasked; its record has no task. What keeps a command from the broker
/// goes to the sink and, as a trade_error, to the journal. If the broker's store refuses a command that is
/// recorded already, the trade_error names the record, and the task's number is never given again.
class CPaperOrderClient : public TC::COrderClient {
public:
    /// acceptForcedConfirm: the desk's configuration stands for the user's confirmation.
    CPaperOrderClient(CJournal& journal, CPaperBroker& broker, CTextSink& sink, bool acceptForcedConfirm);

    void orderCommands(const TC::COrderComandParamPtr& command) override;
    /// Journals the text and writes it to the sink, where it appears also if the journal refuses it.
    void showTradeError(const QString& text, const QString& title) override;

private:
    /// Records the command under the next task number.
    utils::KNError record(const TC::COrderComandParam& command, int& task, std::int64_t& seq);
    void decline(const TC::COrderComandParam& command);
    void refuse(const std::string& text, std::int64_t commandSeq);

    std::mutex m_mutex; ///< keeps the records of commands in the order of their tasks
    CJournal& m_journal;
    CPaperBroker& m_broker;
    CTextSink& m_sink;
    const bool m_bAcceptForcedConfirm;
};

} // namespace desk
