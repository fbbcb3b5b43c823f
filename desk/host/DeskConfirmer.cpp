#include "desk/host/DeskConfirmer.h"

#include "desk/host/Counted.h"
#include "desk/journal/JournalEvents.h"

#include <nlohmann/json.hpp>

#include <utility>

namespace desk {
namespace {

using TC::EConfirmResult;

constexpr const char* kNobody = "nobody";

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
    TC::CConfirmAnswer answer;
    try {
        answer = ask(question, seq);
    } catch (...) {
        // Nobody has confirmed. The order service reports the exception.
        (void)m_journal.append("confirmation", answerFields(EConfirmResult::NotAsked, kNobody, seq));
        throw;
    }
    show(question, answer.m_eResult);
    return answer;
}

TC::CConfirmAnswer CDeskConfirmer::ask(const TC::CConfirmQuestion& question, std::int64_t seq) {
    TC::CConfirmAnswer answer = answerOf(question);
    const bool isAnswered = answer.m_eResult != EConfirmResult::NotAsked;
    const CJson fields = answerFields(answer.m_eResult, isAnswered ? answerer() : kNobody, seq);
    if (m_journal.append("confirmation", fields).isSuccess()) return answer;
    return answer.m_eResult == EConfirmResult::Accepted ? notRecorded() : answer;
}

TC::CConfirmAnswer CDeskConfirmer::answerOf(const TC::CConfirmQuestion& question) const {
    if (m_pDialog != nullptr && m_bEnding) return notAsked(QStringLiteral("下单服务正在关闭"));
    if (m_pDialog != nullptr) return m_pDialog->confirm(question);
    TC::CConfirmAnswer answer;
    answer.m_eResult = m_eAnswer == EConfirm::Accept ? EConfirmResult::Accepted : EConfirmResult::Declined;
    answer.m_remarks = question.m_remarks;
    return answer;
}

const char* CDeskConfirmer::answerer() const {
    return m_pDialog != nullptr ? "user" : "desk.toml";
}

/// The order service itself reports a question that nobody was asked.
void CDeskConfirmer::show(const TC::CConfirmQuestion& question, EConfirmResult result) const {
    if (result == EConfirmResult::NotAsked) return;
    const bool isAccepted = result == EConfirmResult::Accepted;
    std::string text =
        "confirmation of " + counted(static_cast<std::int64_t>(question.m_remarks.size()), "order") + ": ";
    text += isAccepted ? "accepted" : "DECLINED, nothing is sent";
    text += m_pDialog != nullptr ? " by the user"
                                 : std::string(", because desk.toml has confirm = \"") +
                                       (isAccepted ? "accept\"" : "decline\"");
    m_sink.writeFloodLine(isAccepted ? EFloodLine::Message : EFloodLine::Refusal, true, text);
}

} // namespace desk
