#include "desk/host/DeskConfirmer.h"

#include "desk/host/Counted.h"
#include "desk/journal/JournalEvents.h"

#include <nlohmann/json.hpp>

#include <utility>

namespace desk {
namespace {

using TC::EConfirmResult;

/// Who has answered.
constexpr const char* kNobody = "nobody";
constexpr const char* kUser = "user";
constexpr const char* kDeskToml = "desk.toml";
constexpr const char* kHalt = "halt";
constexpr const char* kEnd = "end";

TC::CConfirmAnswer notAsked(const QString& reason) {
    TC::CConfirmAnswer answer;
    answer.m_eResult = EConfirmResult::NotAsked;
    answer.m_strReason = reason;
    return answer;
}

TC::CConfirmAnswer notRecorded() {
    return notAsked(QStringLiteral("确认无法写入日志"));
}

} // namespace

CDeskConfirmer::CDeskConfirmer(CJournal& journal, CTextSink& sink, EConfirm answer)
    : m_journal(journal), m_sink(sink), m_eAnswer(answer) {}

TC::CConfirmAnswer CDeskConfirmer::confirm(const TC::CConfirmQuestion& question) {
    std::int64_t seq = 0;
    if (!m_journal.append(confirmationRecord(question), &seq).isSuccess()) return notRecorded();
    CAnswer answer;
    try {
        answer = ask(question, seq);
    } catch (...) {
        // Nobody has confirmed. The order service reports the exception.
        (void)m_journal.append("confirmation", answerFields(EConfirmResult::NotAsked, kNobody, seq));
        throw;
    }
    show(question, answer);
    return answer.m_answer;
}

void CDeskConfirmer::setHalted(bool isHalted) {
    if (isHalted && !m_bHalted) ++m_nHalts;
    m_bHalted = isHalted;
}

CDeskConfirmer::CAnswer CDeskConfirmer::ask(const TC::CConfirmQuestion& question, std::int64_t seq) {
    const CAnswer answer = answerOf(question);
    const CJson fields = answerFields(answer.m_answer.m_eResult, answer.m_pszBy, seq);
    if (m_journal.append("confirmation", fields).isSuccess()) return answer;
    const bool isAccepted = answer.m_answer.m_eResult == EConfirmResult::Accepted;
    return isAccepted ? CAnswer{notRecorded(), kNobody} : answer;
}

void CDeskConfirmer::withdraw() {
    if (m_pDialog != nullptr) m_pDialog->withdraw();
}

CDeskConfirmer::CAnswer CDeskConfirmer::answerOf(const TC::CConfirmQuestion& question) {
    if (m_bHalted) return {notAsked(QStringLiteral("交易台已停止交易")), kNobody};
    if (m_pDialog != nullptr && m_bEnding) {
        m_nNotAskedOrders += static_cast<int>(question.m_remarks.size());
        return {notAsked(QStringLiteral("下单服务正在关闭")), kNobody};
    }
    if (m_pDialog != nullptr) return answerOfDialog(question);
    TC::CConfirmAnswer answer;
    answer.m_eResult = m_eAnswer == EConfirm::Accept ? EConfirmResult::Accepted : EConfirmResult::Declined;
    answer.m_remarks = question.m_remarks;
    return {answer, kDeskToml};
}

/// The desk may halt or end while the dialog is open.
CDeskConfirmer::CAnswer CDeskConfirmer::answerOfDialog(const TC::CConfirmQuestion& question) const {
    const int halts = m_nHalts;
    const TC::CConfirmAnswer answer = m_pDialog->confirm(question);
    if (m_nHalts != halts) return {{}, kHalt};
    if (m_bEnding) return {{}, kEnd};
    return {answer, answer.m_eResult == EConfirmResult::NotAsked ? kNobody : kUser};
}

/// The order service itself reports a question that nobody was asked.
void CDeskConfirmer::show(const TC::CConfirmQuestion& question, const CAnswer& answer) const {
    const EConfirmResult result = answer.m_answer.m_eResult;
    if (result == EConfirmResult::NotAsked) return;
    const bool isAccepted = result == EConfirmResult::Accepted;
    std::string text =
        "confirmation of " + counted(static_cast<std::int64_t>(question.m_remarks.size()), "order") + ": ";
    text += isAccepted ? "accepted" : "DECLINED, nothing is sent";
    if (answer.m_pszBy == kDeskToml)
        text += std::string(", because desk.toml has confirm = \"") + (isAccepted ? "accept\"" : "decline\"");
    else if (answer.m_pszBy == kUser)
        text += " by the user";
    else
        text += answer.m_pszBy == kHalt ? ", because the desk was halted" : ", because the desk ends";
    // A batch that the user has declined himself is no news for him.
    const bool isNote = isAccepted || answer.m_pszBy == kUser;
    m_sink.writeFloodLine(isNote ? EFloodLine::Note : EFloodLine::Refusal, true, text);
}

} // namespace desk
