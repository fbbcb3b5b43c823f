#pragma once

#include "desk/host/TextSink.h"
#include "desk/journal/Journal.h"
#include "desk/paper/PaperBroker.h"
#include "orderservice/platform/OrderClient.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <utility>

namespace desk {

/// The desk's order client: journals each command and passes it to the paper broker. Any thread. Journal,
/// broker and sink must outlive it.
///
/// The record of a command has its task number; this number is needed to cancel it. If the journal refuses a
/// command, it is not executed, because no order may exist without a record. A command that needs
/// confirmation is declined, unless the configuration accepts such commands; its record has no task. If a
/// command does not reach the broker, the reason goes to the sink and, as a trade_error, to the journal. If
/// the broker's store refuses a command that is already recorded, the trade_error names the record and the
/// task, and the task's number is never used again.
class CPaperOrderClient : public TC::COrderClient {
public:
    /// `acceptForcedConfirm`: the desk's configuration replaces the user's confirmation.
    CPaperOrderClient(CJournal& journal, CPaperBroker& broker, CTextSink& sink, bool acceptForcedConfirm);

    /// Receives the trade key of a command of function trading (COrderComandParam::m_bFuncOrder), and why it
    /// was refused or which of its orders were rejected. Called on any thread, also with the broker locked,
    /// so it must not call the broker and must not wait. Once for a command. The trade key is empty if the
    /// command has none.
    using CCheckFailed = std::function<void(const std::string& tradeKey, const utils::KNError& error)>;
    /// Call it before the first command.
    void setCheckFailed(CCheckFailed checkFailed) { m_checkFailed = std::move(checkFailed); }

    /// While it is halted, each command is recorded and declined. Does not wait.
    void setHalted(bool isHalted) { m_bHalted = isHalted; }
    /// Waits while another thread passes a command on. Afterwards no command that began before a halt can
    /// still reach the broker.
    void finishPassing();

    void orderCommands(const TC::COrderComandParamPtr& command) override;
    /// Journals the text and writes it to the sink, as a flood line, even if the journal refuses it.
    void showTradeError(const QString& text, const QString& title) override;

private:
    /// Waits for room in the broker's queue. Then journals the command with the next task number and queues
    /// it. Fails if the journal refuses it, or with kHalted if the desk is halted.
    utils::KNError pass(const TC::COrderComandParamPtr& command, int& task);
    void decline(const TC::COrderComandParam& command, const char* why);
    void refuse(const TC::COrderComandParam& command, const std::string& text, std::int64_t commandSeq);
    void tellCaller(const TC::COrderComandParam& command, const std::string& text) const;

    std::mutex m_mutex; ///< so that commands are recorded and queued in the order of their tasks
    CJournal& m_journal;
    CPaperBroker& m_broker;
    CTextSink& m_sink;
    const bool m_bAcceptForcedConfirm;
    std::atomic<bool> m_bHalted{false};
    CCheckFailed m_checkFailed;
};

} // namespace desk
