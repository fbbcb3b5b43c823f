#pragma once

#include "tests/desk/paper/FamilyDesk.h"

#include <sqlite3.h>

#include <filesystem>
#include <string>

namespace desk::test {

/// A desk with every family. The test reads its store as text, edits it and replaces it.
class StoredDesk : public FamilyDesk {
protected:
    static constexpr EFamily kFuture = EFamily::FutureSpeculation;
    static constexpr EFamily kCredit = EFamily::Credit;

    template<typename... A>
    static std::string join(const std::string& head, A... numbers) {
        std::string text = head;
        ((text += ' ' + std::to_string(numbers)), ...);
        return text + '\n';
    }

    /// The books as one text, with the fields that only families other than stocks use.
    std::string books() const {
        std::string text;
        for (const CPaperFunds& f : m_broker->funds())
            text += join(f.m_strAccount, f.m_nCash, f.m_nFrozen, f.m_nMargin);
        for (const CPaperPosition& p : m_broker->positions()) {
            text += join(p.m_strAccount + p.m_strStock, static_cast<int>(p.m_eSide), p.m_nVolume,
                         p.m_nSellable, p.m_nToday, p.m_nFrozen, p.m_nFrozenToday, p.m_nCost, p.m_nPaid,
                         p.m_nMargin, p.m_nMultiplier);
        }
        for (const CPaperDebt& d : m_broker->debts()) {
            text += join(d.m_strAccount + ':' + d.m_strStock, d.m_nVolume, d.m_nAmount, d.m_nReturning,
                         d.m_nReserved, d.m_nClaimed, d.m_nMultiplier);
        }
        for (const CPaperOrder& o : m_broker->orders()) {
            text +=
                join(o.m_strAccount + o.m_strStock, o.m_nId, static_cast<int>(o.m_eFamily),
                     static_cast<int>(o.m_eOperation), o.m_nVolume, o.m_nFilled, o.m_nFrozen, o.m_nMultiplier,
                     o.m_nMarginRate, o.m_nCloseEarlier, o.m_nCloseToday, o.m_nCredit, o.m_nProceeds);
        }
        return text;
    }

    void tradeEveryFamily() {
        orderOf(kFuture, 0, 5, 100);
        orderOf(kFuture, 3, 2, 100);
        orderOf(kFuture, 11, 8, 150);
        orderOf(EFamily::Option, 34, 2, 0.1);
        orderOf(EFamily::Option, 35, 1, 0.05);
        orderOf(EFamily::Credit, 20, 100, 10);
        orderOf(EFamily::Credit, 20, 100, 9);
        orderOf(EFamily::Credit, 21, 100, 10);
        orderOf(EFamily::Credit, 22, 50, 9);
    }

    void runSql(const std::string& sql) const {
        sqlite3* database = nullptr;
        ASSERT_EQ(sqlite3_open(m_folder.file(kPaperStoreName).c_str(), &database), SQLITE_OK);
        EXPECT_EQ(sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
            << sqlite3_errmsg(database);
        sqlite3_close(database);
    }

    void removeStore() {
        m_broker.reset();
        for (const char* name : {"paper.db", "paper.db-wal", "paper.db-shm"})
            std::filesystem::remove(m_folder.file(name));
    }
};

} // namespace desk::test
