#include "desk/host/DeskConfirmer.h"

#include "desk/commands/JournalText.h"
#include "tests/desk/journal/DeskFolder.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace desk::test {
namespace {

using TC::EConfirmResult;

class CDialog final : public TC::IOrderConfirmer {
public:
    TC::CConfirmAnswer confirm(const TC::CConfirmQuestion&) override {
        if (m_bThrows) throw std::runtime_error("no window");
        return m_answer;
    }
    void withdraw() override { ++m_nWithdrawn; }
    TC::CConfirmAnswer m_answer;
    bool m_bThrows = false;
    int m_nWithdrawn = 0;
};

class DeskConfirmer : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(m_journal.open(m_folder.path()).isSuccess()); }

    static TC::CConfirmQuestion question() {
        TC::CCodeOrderParam code;
        code.m_account = boost::make_shared<TC::CAccountInfo>();
        code.m_account->m_strKey = "A1";
        code.m_eOperationType = TC::EOperationType::Buy;
        code.m_stock = {"SH", "600000", "浦发银行", "P"};
        code.m_ePriceType = TC::EPriceType::Specified;
        code.m_dPrice = 10.01;
        code.m_nVolume = 300;
        TC::CConfirmQuestion question;
        question.m_strTitle = QStringLiteral("文件单股票");
        question.m_rows = {{0, code}, {2, code}};
        question.m_remarks = {{0, ""}, {2, "备注"}};
        return question;
    }
    TC::CConfirmAnswer confirm(EConfirm answer) {
        CDeskConfirmer confirmer(m_journal, m_sink, answer);
        return confirmer.confirm(question());
    }
    TC::CConfirmAnswer confirmBy(CDialog& dialog) {
        CDeskConfirmer confirmer(m_journal, m_sink, EConfirm::Decline);
        confirmer.setDialog(&dialog);
        return confirmer.confirm(question());
    }
    /// The records of the kind, each as shown by `orderdesk journal` without its time.
    std::vector<std::string> shown() {
        std::vector<std::string> texts;
        for (const std::string& line : m_folder.lines("journal.jsonl")) {
            const std::string text = journalText({line, false});
            if (text.find("  confirmation  ") == std::string::npos) continue;
            texts.push_back(text.substr(text.find('#')));
        }
        return texts;
    }

    CDeskFolder m_folder;
    std::ostringstream m_out;
    CTextSink m_sink{m_out};
    CJournal m_journal;
};

const std::string kAsked = "#2  confirmation  asked, 2 orders: 文件单股票\n"
                           "    A1  buy 300 SH600000 浦发银行 @ 10.01 (price type 11)\n"
                           "    A1  buy 300 SH600000 浦发银行 @ 10.01 (price type 11), remark: 备注\n";

TEST_F(DeskConfirmer, DeclinesForTheFolderAndRecordsQuestionAndAnswer) {
    EXPECT_EQ(confirm(EConfirm::Decline).m_eResult, EConfirmResult::Declined);
    EXPECT_EQ(shown(),
              (std::vector<std::string>{kAsked, "#3  confirmation  declined by desk.toml, question #2\n"}));
    EXPECT_EQ(m_out.str(), "confirmation of 2 orders: DECLINED, nothing is sent, because desk.toml has "
                           "confirm = \"decline\"\n");
}

TEST_F(DeskConfirmer, AcceptsForTheFolderWithTheRemarksOfTheOrders) {
    const TC::CConfirmAnswer answer = confirm(EConfirm::Accept);
    EXPECT_EQ(answer.m_eResult, EConfirmResult::Accepted);
    EXPECT_EQ(answer.m_remarks, question().m_remarks);
    EXPECT_EQ(shown().at(1), "#3  confirmation  accepted by desk.toml, question #2\n");
    EXPECT_EQ(m_out.str(),
              "confirmation of 2 orders: accepted, because desk.toml has confirm = \"accept\"\n");
}

TEST_F(DeskConfirmer, DialogAnswersInPlaceOfTheFolder) {
    CDialog dialog;
    dialog.m_answer.m_eResult = EConfirmResult::Accepted;
    dialog.m_answer.m_remarks = {{0, "edited"}};
    const TC::CConfirmAnswer answer = confirmBy(dialog);
    EXPECT_EQ(answer.m_eResult, EConfirmResult::Accepted);
    EXPECT_EQ(answer.m_remarks.at(0), "edited");
    EXPECT_EQ(shown().at(1), "#3  confirmation  accepted by user, question #2\n");
    EXPECT_EQ(m_out.str(), "confirmation of 2 orders: accepted by the user\n");
}

TEST_F(DeskConfirmer, DialogThatCouldNotAskIsRecorded) {
    CDialog dialog;
    dialog.m_answer.m_eResult = EConfirmResult::NotAsked;
    EXPECT_EQ(confirmBy(dialog).m_eResult, EConfirmResult::NotAsked);
    EXPECT_EQ(shown().at(1), "#3  confirmation  not_asked by nobody, question #2\n");
    EXPECT_EQ(m_out.str(), "") << "the order service reports it";
}

TEST_F(DeskConfirmer, DialogIsNotOpenedAtTheEnd) {
    CDialog dialog;
    dialog.m_answer.m_eResult = EConfirmResult::Accepted;
    CDeskConfirmer confirmer(m_journal, m_sink, EConfirm::Accept);
    confirmer.setDialog(&dialog);
    confirmer.end();
    EXPECT_EQ(confirmer.confirm(question()).m_strReason, QStringLiteral("下单服务正在关闭"));
    confirmer.setDialog(nullptr);
    EXPECT_EQ(confirmer.confirm(question()).m_eResult, EConfirmResult::Accepted);
}

TEST_F(DeskConfirmer, NobodyIsAskedAndNothingIsAcceptedWhileTheDeskIsHalted) {
    CDialog dialog;
    dialog.m_answer.m_eResult = EConfirmResult::Accepted;
    CDeskConfirmer confirmer(m_journal, m_sink, EConfirm::Accept);
    confirmer.setHalted(true);
    EXPECT_EQ(confirmer.confirm(question()).m_eResult, EConfirmResult::NotAsked) << "the answer of desk.toml";
    confirmer.setDialog(&dialog);
    EXPECT_EQ(confirmer.confirm(question()).m_strReason, QStringLiteral("交易台已停止交易"));
    confirmer.setHalted(false);
    EXPECT_EQ(confirmer.confirm(question()).m_eResult, EConfirmResult::Accepted);
}

/// The desk halts or ends while the dialog is open. The dialog itself says that the user has accepted.
class CInterrupted final : public TC::IOrderConfirmer {
public:
    TC::CConfirmAnswer confirm(const TC::CConfirmQuestion&) override {
        m_meanwhile();
        TC::CConfirmAnswer answer;
        answer.m_eResult = EConfirmResult::Accepted;
        return answer;
    }
    std::function<void()> m_meanwhile;
};

TEST_F(DeskConfirmer, AnswerAfterAHaltIsNotUsedEvenIfTheHaltHasEnded) {
    CInterrupted dialog;
    CDeskConfirmer confirmer(m_journal, m_sink, EConfirm::Accept);
    confirmer.setDialog(&dialog);
    dialog.m_meanwhile = [&] {
        confirmer.setHalted(true);
        confirmer.setHalted(false);
    };
    EXPECT_EQ(confirmer.confirm(question()).m_eResult, EConfirmResult::Declined);
    EXPECT_EQ(shown().at(1), "#3  confirmation  declined by halt, question #2\n");
    EXPECT_EQ(m_out.str(),
              "confirmation of 2 orders: DECLINED, nothing is sent, because the desk was halted\n");
}

TEST_F(DeskConfirmer, AnswerAfterTheEndIsNotUsed) {
    CInterrupted dialog;
    CDeskConfirmer confirmer(m_journal, m_sink, EConfirm::Accept);
    confirmer.setDialog(&dialog);
    dialog.m_meanwhile = [&] { confirmer.end(); };
    EXPECT_EQ(confirmer.confirm(question()).m_eResult, EConfirmResult::Declined);
    EXPECT_EQ(shown().at(1), "#3  confirmation  declined by end, question #2\n");
}

TEST_F(DeskConfirmer, OrdersThatNobodyIsAskedAboutAtTheEndAreCounted) {
    CDialog dialog;
    CDeskConfirmer confirmer(m_journal, m_sink, EConfirm::Accept);
    confirmer.setDialog(&dialog);
    confirmer.confirm(question());
    EXPECT_EQ(confirmer.notAskedOrders(), 0);
    confirmer.end();
    confirmer.confirm(question());
    confirmer.confirm(question());
    EXPECT_EQ(confirmer.notAskedOrders(), 4);
}

TEST_F(DeskConfirmer, WithdrawnQuestionIsThatOfTheDialog) {
    CDialog dialog;
    CDeskConfirmer confirmer(m_journal, m_sink, EConfirm::Accept);
    confirmer.withdraw(); // nobody is asked without a dialog
    confirmer.setDialog(&dialog);
    confirmer.withdraw();
    EXPECT_EQ(dialog.m_nWithdrawn, 1);
}

TEST_F(DeskConfirmer, BatchThatTheUserHasDeclinedIsNoWarning) {
    std::vector<ESeverity> severities;
    m_sink.setListener(
        [&](const EFloodLine*, ESeverity severity, const std::string&) { severities.push_back(severity); });
    CDialog dialog;
    dialog.m_answer.m_eResult = EConfirmResult::Declined;
    CDeskConfirmer byUser(m_journal, m_sink, EConfirm::Accept);
    byUser.setDialog(&dialog);
    byUser.confirm(question());
    confirm(EConfirm::Decline); // by desk.toml
    EXPECT_EQ(severities, (std::vector<ESeverity>{ESeverity::Note, ESeverity::Warning}));
}

TEST_F(DeskConfirmer, ExceptionOfTheDialogIsRecordedAndLeaves) {
    CDialog dialog;
    dialog.m_bThrows = true;
    EXPECT_THROW(confirmBy(dialog), std::runtime_error);
    EXPECT_EQ(shown().at(1), "#3  confirmation  not_asked by nobody, question #2\n");
}

TEST_F(DeskConfirmer, NothingIsAcceptedThatCannotBeRecorded) {
    ASSERT_TRUE(m_journal.close("test").isSuccess());
    const TC::CConfirmAnswer answer = confirm(EConfirm::Accept);
    EXPECT_EQ(answer.m_eResult, EConfirmResult::NotAsked);
    EXPECT_EQ(answer.m_strReason, QStringLiteral("确认无法写入日志"));
}

TEST_F(DeskConfirmer, NothingIsAcceptedWhoseAnswerCannotBeRecorded) {
    class CClosing final : public TC::IOrderConfirmer {
    public:
        explicit CClosing(CJournal& journal) : m_journal(journal) {}
        TC::CConfirmAnswer confirm(const TC::CConfirmQuestion&) override {
            EXPECT_TRUE(m_journal.close("while the dialog is open").isSuccess());
            TC::CConfirmAnswer answer;
            answer.m_eResult = EConfirmResult::Accepted;
            return answer;
        }

    private:
        CJournal& m_journal;
    } closing(m_journal);
    CDeskConfirmer confirmer(m_journal, m_sink, EConfirm::Decline);
    confirmer.setDialog(&closing);
    EXPECT_EQ(confirmer.confirm(question()).m_eResult, EConfirmResult::NotAsked);
    EXPECT_EQ(m_out.str(), "");
}

} // namespace
} // namespace desk::test
