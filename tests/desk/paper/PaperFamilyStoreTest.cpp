#include "tests/desk/paper/StoredDesk.h"

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

using namespace desk;
using namespace desk::test;

namespace {

class PaperFamilyStore : public StoredDesk {};

} // namespace

TEST_F(PaperFamilyStore, BooksOfEveryFamilyAreThereAfterARestart) {
    tradeEveryFamily();
    const std::string before = books();
    openFamilies();
    EXPECT_EQ(books(), before);
    offer(kFuture, 150);
    EXPECT_EQ(longOf(kFuture), 0) << "what waited trades on";
    EXPECT_EQ(shortOf(kFuture), 5);
    EXPECT_EQ(frozen(kFuture), 0);
    for (int task = 1; task <= 9; ++task)
        (void)m_broker->cancelTask(task, "");
    for (const CPaperFunds& each : m_broker->funds())
        EXPECT_EQ(each.m_nFrozen, 0) << each.m_strAccount;
}

TEST_F(PaperFamilyStore, WhatWaitsForAnAccountThatHasLeftTheFolderDoesNotTrade) {
    orderOf(kFuture, 0, 5, 90);
    std::vector<CAccountEntry> others = familyAccounts();
    others.erase(others.begin() + 1);
    openFamilies(others);
    offer(kFuture, 90);
    EXPECT_EQ(longOf(kFuture), 0) << "it has left";
    std::vector<CAccountEntry> changed = familyAccounts();
    changed[1].broker = TC::EQDBrokerType::Gold;
    openFamilies(changed);
    offer(kFuture, 90);
    EXPECT_EQ(longOf(kFuture), 0) << "it is of another kind";
    openFamilies();
    offer(kFuture, 90);
    EXPECT_EQ(longOf(kFuture), 5) << "it is back";
}

TEST_F(PaperFamilyStore, BooksAddUpAfterTheProcessWasKilled) {
    m_broker.reset();
    int answers[2];
    ASSERT_EQ(::pipe(answers), 0);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        openFamilies();
        for (char answer = 1; ::write(answers[1], &answer, 1) == 1;)
            tradeEveryFamily();
        ::_exit(1);
    }
    ::close(answers[1]);
    char answer = 0;
    for (int i = 0; i < 5; ++i)
        ASSERT_EQ(::read(answers[0], &answer, 1), 1);
    ::kill(child, SIGKILL);
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status));
    ::close(answers[0]);

    openFamilies();
    CMoney held = 0;
    for (const CPaperFunds& each : m_broker->funds())
        held += each.m_nMargin + each.m_nFrozen;
    for (const CPaperPosition& each : m_broker->positions())
        held -= each.m_nMargin;
    for (const CPaperDebt& each : m_broker->debts())
        held -= each.m_strStock.empty() ? 0 : each.m_nAmount;
    for (const CPaperOrder& each : m_broker->orders())
        held -= each.m_nFrozen;
    EXPECT_GE(m_broker->orders().size(), 36u);
    EXPECT_EQ(held, 0);
}

TEST_F(PaperFamilyStore, CommandThatCannotBeStoredLeavesDebtsAndMarginsAsTheyWere) {
    tradeEveryFamily();
    const std::string before = books();
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(m_folder.file(kPaperStoreName).c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
    TC::COrderComandParam command = stockCommand({recordOf(EFamily::Credit, 20, 50, 10)});
    command.m_eTraderType = EFamily::Credit;
    EXPECT_EQ(placeNow(*m_broker, command).m_error.errorId(), kPaperStoreFailed);
    sqlite3_close(other);
    EXPECT_EQ(books(), before);
}
