#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/host/TextSink.h"
#include "desk/journal/Journal.h"
#include "orderservice/gates/OrderConfirmer.h"

#include <cstdint>
#include <string>

namespace desk {

/// Answers the questions about checked batches, and records each question and each answer in the journal. The
/// answer is the one that desk.toml gives, or that of a dialog. No batch is accepted whose question or answer
/// cannot be recorded. Main thread.
class CDeskConfirmer final : public TC::IOrderConfirmer {
public:
    /// Journal and sink must outlive it.
    CDeskConfirmer(CJournal& journal, CTextSink& sink, EConfirm answer);

    /// The dialog asks the user in place of the answer of desk.toml. Null: that answer again. The caller owns
    /// the dialog.
    void setDialog(TC::IOrderConfirmer* dialog) { m_pDialog = dialog; }

    /// From now on the dialog is not opened any more: nobody is asked. Without a dialog nothing changes.
    void end() { m_bEnding = true; }

    TC::CConfirmAnswer confirm(const TC::CConfirmQuestion& question) override;

private:
    TC::CConfirmAnswer answerOf(const TC::CConfirmQuestion& question) const;
    TC::CConfirmAnswer ask(const TC::CConfirmQuestion& question, std::int64_t seq);
    void show(const TC::CConfirmQuestion& question, TC::EConfirmResult result) const;
    const char* answerer() const;

    CJournal& m_journal;
    CTextSink& m_sink;
    const EConfirm m_eAnswer;
    TC::IOrderConfirmer* m_pDialog = nullptr;
    bool m_bEnding = false;
};

} // namespace desk
