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

    /// From now on the dialog is not opened any more: nobody is asked. An answer that comes later is not
    /// used: the batch is declined. Without a dialog nothing changes.
    void end() { m_bEnding = true; }

    /// While it is halted nobody is asked, and nothing is accepted. A batch whose dialog is open is declined,
    /// whatever the answer is. The caller closes the dialog.
    void setHalted(bool isHalted);

    TC::CConfirmAnswer confirm(const TC::CConfirmQuestion& question) override;
    void withdraw() override;

    /// Orders that were not sent because nobody could be asked after end().
    int notAskedOrders() const { return m_nNotAskedOrders; }

private:
    struct CAnswer {
        TC::CConfirmAnswer m_answer;
        const char* m_pszBy;
    };
    CAnswer answerOf(const TC::CConfirmQuestion& question);
    CAnswer answerOfDialog(const TC::CConfirmQuestion& question) const;
    CAnswer ask(const TC::CConfirmQuestion& question, std::int64_t seq);
    void show(const TC::CConfirmQuestion& question, const CAnswer& answer) const;

    CJournal& m_journal;
    CTextSink& m_sink;
    const EConfirm m_eAnswer;
    TC::IOrderConfirmer* m_pDialog = nullptr;
    bool m_bEnding = false;
    bool m_bHalted = false;
    int m_nNotAskedOrders = 0;
    int m_nHalts = 0; ///< so that a halt that has ended before the answer is noticed
};

} // namespace desk
