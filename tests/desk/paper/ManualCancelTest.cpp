#include "desk/host/PaperTradeClient.h"

#include "tests/desk/paper/PaperDesk.h"

#include <sstream>
#include <string>
#include <vector>

using namespace desk;
using namespace desk::test;

namespace {

/// Five waiting orders of A1: 1 and 2 of task 1, 3 of task 2, 4 and 5 of task 3. None finds a price.
class ManualCancel : public PaperDesk {
protected:
    ManualCancel() {
        place({buy(100, 9.50), buy(100, 9.51)});
        place({buy(100, 9.52)});
        place({buy(100, 9.53), buy(100, 9.54)});
        EXPECT_TRUE(m_journal.open(m_folder.path()).isSuccess());
    }

    utils::KNError cancel(const CCancelChoice& choice) {
        CPaperTradeClient client(m_journal, *m_broker, m_quotes, m_sink, deskAccounts());
        return client.cancelChosen(choice, "by hand", m_nCancelled);
    }
    std::vector<int> waiting() const {
        std::vector<int> ids;
        for (const CPaperOrder& each : m_broker->orders()) {
            if (each.isOpen()) ids.push_back(each.m_nId);
        }
        return ids;
    }

    std::ostringstream m_out;
    CTextSink m_sink{m_out};
    CJournal m_journal;
    int m_nCancelled = -1;
};

TEST_F(ManualCancel, CancelsOrdersTasksAndAccountsWithItsReason) {
    CCancelChoice choice;
    choice.m_orders = {2, 99};
    choice.m_tasks = {3};
    EXPECT_TRUE(cancel(choice).isSuccess());
    EXPECT_EQ(m_nCancelled, 3);
    EXPECT_EQ(waiting(), (std::vector<int>{1, 3}));
    EXPECT_EQ(order(2).m_strReason, "by hand");
    choice = {};
    choice.m_accounts = {"A2"};
    EXPECT_TRUE(cancel(choice).isSuccess());
    EXPECT_EQ(m_nCancelled, 0);
    choice.m_accounts = {"A1"};
    EXPECT_TRUE(cancel(choice).isSuccess());
    EXPECT_EQ(m_nCancelled, 2);
    EXPECT_EQ(funds().m_nFrozen, 0);
    const std::string record = m_folder.lines(kJournalFileName).at(1);
    EXPECT_NE(record.find(R"("kind":"control")"), std::string::npos) << record;
    EXPECT_NE(
        record.find(
            R"("action":"cancel","reason":"by hand","all":false,"orders":[2,99],"tasks":[3],"accounts":[])"),
        std::string::npos)
        << record;
}

TEST_F(ManualCancel, FailureCancelsNothingAndIsReported) {
    CCancelChoice all;
    all.m_bAll = true;
    {
        const CFullDisk disk(1);
        EXPECT_FALSE(cancel(all).isSuccess());
    }
    EXPECT_EQ(m_nCancelled, 0);
    EXPECT_EQ(waiting().size(), 5U);
    EXPECT_NE(m_out.str().find("cancel not done: "), std::string::npos) << m_out.str();
    EXPECT_TRUE(cancel(all).isSuccess());
    EXPECT_EQ(m_nCancelled, 5);
}

TEST_F(ManualCancel, BooksAreThoseOfOneMoment) {
    const CPaperBooks books = m_broker->books();
    EXPECT_EQ(books.m_funds.size(), m_broker->funds().size());
    EXPECT_EQ(books.m_funds[0].m_nFrozen, funds().m_nFrozen);
    ASSERT_EQ(books.m_positions.size(), 1U);
    EXPECT_EQ(books.m_positions[0].m_nVolume, position().m_nVolume);
    EXPECT_TRUE(books.m_debts.empty());
}

} // namespace
