#pragma once

#include <sys/types.h>

#include <string>

namespace bench {

/// A folder of a desk with two accounts that share each order. It has a file strategy on channel 1 and an
/// order socket on channel 2. The price of every order is below the market, so the orders wait in the books.
/// The folder is removed with the object.
class CDeskFolder {
public:
    CDeskFolder();
    ~CDeskFolder();
    CDeskFolder(const CDeskFolder&) = delete;
    CDeskFolder& operator=(const CDeskFolder&) = delete;

    const std::string& path() const { return m_strPath; }
    std::string journalPath() const { return m_strPath + "/journal.jsonl"; }
    std::string storePath() const { return m_strPath + "/paper.db"; }
    unsigned short port() const { return m_nPort; }

    /// Lines that log in to the order socket, and how many lines they are.
    static std::string loginLines();
    static constexpr int kLoginLines = 2;
    /// One order for the order socket.
    static std::string socketLine();
    /// The orders that each accepted order becomes: one for each account.
    static constexpr int kAccounts = 2;

    /// Gives the file strategy a file of this many orders. The file is complete when it appears.
    void dropOrders(int count) const;

private:
    const std::string m_strPath;
    const unsigned short m_nPort;
};

/// Counts the lines of one kind that are appended to a journal.
class CJournalCount {
public:
    CJournalCount(const std::string& path, const std::string& kind);
    ~CJournalCount();
    CJournalCount(const CJournalCount&) = delete;
    CJournalCount& operator=(const CJournalCount&) = delete;

    /// Reads the new lines. Returns the number of all lines of the kind so far.
    long update();

private:
    const std::string m_strBegin; ///< the first bytes of such a line
    int m_nFile;
    long m_nCount = 0;
    std::string m_strRest; ///< the beginning of a line that was not complete
};

/// The desk program, running on a folder. All failures are thrown as std::runtime_error.
class CDeskProcess {
public:
    /// Starts the program and waits until its strategies run.
    explicit CDeskProcess(const CDeskFolder& folder);
    /// Kills the program if it was not ended.
    ~CDeskProcess();
    CDeskProcess(const CDeskProcess&) = delete;
    CDeskProcess& operator=(const CDeskProcess&) = delete;

    /// Waits until the journal has so many lines of this kind. A line with the kind `order` is written after
    /// its order was stored in the books.
    void waitForLines(CJournalCount& lines, long count);

    /// Asks the program to stop, and waits for its end. The program first processes all accepted orders.
    void end();

private:
    void checkIsRunning();

    const CDeskFolder& m_folder;
    pid_t m_nProcess = 0;
};

} // namespace bench
