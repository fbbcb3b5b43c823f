#include "desk/host/PaperOrderClient.h"

#include "desk/journal/JournalEvents.h"
#include "desk/paper/OrderRules.h"

#include <nlohmann/json.hpp>

#include <string>
#include <utility>

namespace desk {
namespace {

constexpr const char* kRefusalTitle = "command refused";
constexpr int kHalted = 1000;    ///< error number; the journal has other numbers
constexpr int kCheckFailed = -1; ///< error number of what a caller of function trading is told

/// The text about a command's rejected orders; there is at least one.
std::string rejectedText(const std::vector<CPaperOrder>& rejected, std::size_t orders) {
    const CPaperOrder& first = rejected.front();
    const std::string text = "order " + std::to_string(first.m_nId) + " was rejected: " + first.m_strReason;
    if (rejected.size() == 1) return text;
    return text + "; " + std::to_string(rejected.size()) + " of " + std::to_string(orders) +
           " orders were rejected";
}

/// Algorithm orders have their message in the place of the trade key.
std::string tradeKeyOf(const TC::COrderComandParam& command) {
    return command.m_ePlatform == kAlgorithmPlatform ? std::string() : command.m_strAlgoParam;
}

} // namespace

CPaperOrderClient::CPaperOrderClient(CJournal& journal, CPaperBroker& broker, CTextSink& sink,
                                     bool acceptForcedConfirm)
    : m_journal(journal), m_broker(broker), m_sink(sink), m_bAcceptForcedConfirm(acceptForcedConfirm) {}

void CPaperOrderClient::orderCommands(const TC::COrderComandParamPtr& command) {
    if (!command) return;
    if (command->m_bForceConfirm && !m_bAcceptForcedConfirm)
        return decline(*command, "it must be confirmed, but the desk cannot ask anybody");
    int task = 0;
    const utils::KNError error = pass(command, task);
    if (error.errorId() == kHalted) return decline(*command, "the desk is halted");
    if (!error.isSuccess()) return refuse(*command, "it cannot be recorded: " + error.errorMsg(), 0);
    if (command->m_codes.empty())
        m_sink.writeFloodLine(EFloodLine::Note, true,
                              "task " + std::to_string(task) +
                                  ": the command names no instrument, so the "
                                  "paper broker makes no order from it",
                              ESeverity::Warning);
}

utils::KNError CPaperOrderClient::pass(const TC::COrderComandParamPtr& command, int& task) {
    const std::lock_guard lock(m_mutex);
    if (m_bHalted) return {kHalted, "the desk is halted"};
    m_broker.waitForRoom();
    CQueuedCommand queued;
    queued.m_command = command;
    queued.m_nTask = task = m_broker.reserveTask();
    const utils::KNError error =
        m_journal.append(commandRecord(*command, queued.m_nTask), &queued.m_nReference);
    if (!error.isSuccess()) return error;
    queued.m_onRefused = [this, command, task, seq = queued.m_nReference](const utils::KNError& refusal) {
        refuse(*command, "task " + std::to_string(task) + " was not carried out: " + refusal.errorMsg(), seq);
    };
    if (command->m_bFuncOrder) {
        queued.m_onRejected = [this, command](const std::vector<CPaperOrder>& rejected) {
            tellCaller(*command, rejectedText(rejected, command->m_codes.size()));
        };
    }
    m_broker.queueCommand(std::move(queued));
    return {};
}

void CPaperOrderClient::finishPassing() {
    const std::lock_guard lock(m_mutex);
}

void CPaperOrderClient::decline(const TC::COrderComandParam& command, const char* why) {
    std::int64_t seq = 0;
    if (const utils::KNError error = m_journal.append(commandRecord(command, std::nullopt), &seq);
        !error.isSuccess())
        return refuse(command, "it cannot be recorded: " + error.errorMsg(), 0);
    refuse(command, why, seq);
}

void CPaperOrderClient::showTradeError(const QString& text, const QString& title) {
    // CJournalGuard handles a failed journal.
    const bool isRecorded = m_journal.append("trade_error", tradeErrorFields(text, title)).isSuccess();
    m_sink.writeFloodLine(EFloodLine::Refusal, isRecorded, title.toStdString() + ": " + text.toStdString());
}

void CPaperOrderClient::refuse(const TC::COrderComandParam& command, const std::string& text,
                               std::int64_t commandSeq) {
    const CJson fields =
        tradeErrorFields(QString::fromStdString(text), QLatin1String(kRefusalTitle), commandSeq);
    const bool isRecorded = m_journal.append("trade_error", fields).isSuccess();
    m_sink.writeFloodLine(EFloodLine::Refusal, isRecorded, std::string(kRefusalTitle) + ": " + text);
    tellCaller(command, std::string(kRefusalTitle) + ": " + text);
}

void CPaperOrderClient::tellCaller(const TC::COrderComandParam& command, const std::string& text) const {
    if (command.m_bFuncOrder && m_checkFailed) m_checkFailed(tradeKeyOf(command), {kCheckFailed, text});
}

} // namespace desk
