// The desk as a process: what ends it, and what must not block it.
#include "tests/desk/commands/DeskProcess.h"
#include "tests/desk/commands/RunningFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <sstream>

namespace desk {
namespace {

constexpr const char* kCtrlC = "\x03";
constexpr const char* kCtrlS = "\x13";

/// Locks a file, like another program that uses it.
class CFileLock {
public:
    explicit CFileLock(const std::string& path) : m_nDescriptor(::open(path.c_str(), O_RDWR | O_CLOEXEC)) {
        struct flock whole {};
        whole.l_type = F_WRLCK;
        whole.l_whence = SEEK_SET;
        EXPECT_EQ(::fcntl(m_nDescriptor, F_SETLK, &whole), 0);
    }
    ~CFileLock() { ::close(m_nDescriptor); }
    CFileLock(const CFileLock&) = delete;
    CFileLock& operator=(const CFileLock&) = delete;

private:
    int m_nDescriptor;
};

class DeskLife : public CRunningFolder {
protected:
    /// Places an order that is filled with the quotes of the folder.
    void tradeOnce() { tradeLines("23,0,11.02,600101,100\n", 1); }
    void tradeLines(const std::string& lines, int fills) {
        ASSERT_TRUE(waitUntil([this] { return has("\"action\":\"start\",\"channel\":1,"); }));
        const int before = count("\"kind\":\"fill\"");
        folder.handOver("desk/orders/group.txt", lines);
        ASSERT_TRUE(waitUntil([&] { return count("\"kind\":\"fill\"") >= before + fills; })) << journal();
    }

    int count(const std::string& text) const {
        const std::string all = journal();
        int found = 0;
        for (std::size_t place = all.find(text); place != std::string::npos;
             place = all.find(text, place + 1))
            ++found;
        return found;
    }

    /// Makes the desk print far more text than the pipe of a test can hold.
    void fillTheScreen() {
        std::string lines;
        for (int i = 0; i < 200; ++i)
            lines += "23,0,11.02,999999,100\n"; // an unknown code: refused with a message
        folder.handOver("desk/orders/group.txt", lines);
        ASSERT_TRUE(waitUntil([this] { return count("\"kind\":\"trade_error\"") >= 200; }));
    }

    std::string path() const { return folder.path("desk"); }
};

TEST_F(DeskLife, ClosedScreenPipeLeavesItTrading) {
    CDeskOutput output = CDeskOutput::pipe();
    CDeskProcess process(path(), output);
    output.closeTestSide();
    tradeOnce();
    tradeOnce();
    EXPECT_FALSE(process.hasEnded());
    process.send(SIGTERM);
    EXPECT_EQ(process.wait(), 0);
    EXPECT_TRUE(has("\"kind\":\"stopped\""));
}

TEST_F(DeskLife, ClosedStandardDescriptorsAreNotTakenByTheJournal) {
    CDeskOutput output = CDeskOutput::pipe();
    CDeskProcess process(path(), output, CDeskProcess::EStart::WithoutStandardDescriptors);
    tradeOnce();
    for (const char* standard : {"0", "1", "2"}) {
        EXPECT_EQ(std::filesystem::read_symlink("/proc/" + std::to_string(process.id()) + "/fd/" + standard),
                  "/dev/null");
    }
    process.send(SIGTERM);
    EXPECT_EQ(process.wait(), 0);
}

TEST_F(DeskLife, UnreadScreenHoldsUpNeitherOrdersNorCancelsNorTheEnd) {
    CDeskOutput output = CDeskOutput::pipe();
    CDeskProcess process(path(), output);
    tradeOnce();
    fillTheScreen();
    tradeLines("23,0,11.02,600101,100\n23,0,10.5,600101,100\n", 1);
    folder.handOver("desk/orders/group.txt", "cancel 3\n");
    EXPECT_TRUE(waitUntil([this] { return has("\"status\":\"cancelled\""); }));
    process.send(SIGTERM);
    EXPECT_EQ(process.wait(), 0);
    EXPECT_TRUE(has("\"kind\":\"stopped\""));
}

TEST_F(DeskLife, StoppedTerminalHoldsNothingUp) {
    CDeskOutput output = CDeskOutput::terminal();
    CDeskProcess process(path(), output);
    tradeOnce();
    output.type(kCtrlS);
    fillTheScreen();
    tradeOnce();
    output.type(kCtrlC);
    EXPECT_EQ(process.wait(), 0);
    EXPECT_TRUE(has("\"kind\":\"stopped\""));
}

TEST_F(DeskLife, ClosedTerminalEndsItInAnOrderlyWay) {
    CDeskOutput output = CDeskOutput::terminal();
    CDeskProcess process(path(), output);
    tradeOnce();
    output.closeTestSide();
    EXPECT_EQ(process.wait(), 0);
    EXPECT_TRUE(has("\"kind\":\"stopped\""));
}

TEST_F(DeskLife, DeskThatIsToOutliveItsTerminalDoes) {
    CDeskOutput output = CDeskOutput::terminal();
    CDeskProcess process(path(), output, CDeskProcess::EStart::IgnoringHangup);
    tradeOnce();
    output.closeTestSide();
    tradeOnce();
    process.send(SIGTERM);
    EXPECT_EQ(process.wait(), 0);
}

TEST_F(DeskLife, SecondCtrlCEndsTheWaitAndTheJournalHasEachOrder) {
    // Each order at the latest price waits for two seconds, because there is no latest price.
    change("desk/quotes.csv", "SH600102,20,20,", "SH600102,,20,");
    constexpr int kOrders = 100;
    CDeskOutput output = CDeskOutput::terminal();
    CDeskProcess process(path(), output);
    ASSERT_TRUE(waitUntil([this] { return has("\"action\":\"start\",\"channel\":2,"); }));
    std::string lines;
    for (int i = 0; i < kOrders; ++i)
        lines += "23,0,,," + std::to_string(100 * (i + 1)) + "\n";
    folder.handOver("desk/orders/single.txt", lines);
    ASSERT_TRUE(waitUntil([this] { return has("\"kind\":\"intake\""); }));
    output.type(kCtrlC);
    ASSERT_TRUE(waitUntil([&] { return output.hasShown("Processing the orders that were accepted."); }))
        << output.shown();
    output.type(kCtrlC);
    ASSERT_TRUE(waitUntil([&] { return output.hasShown("Not processed: ") || process.hasEnded(); }));
    EXPECT_EQ(process.wait(), 1);
    output.hasShown("");
    const int unplaced = count("\"kind\":\"unplaced\"");
    EXPECT_GT(unplaced, 0);
    EXPECT_EQ(unplaced + count("\"kind\":\"message\"") - count("启动成功"), kOrders)
        << "each order was begun, with a message, or is among those that were dropped";
    EXPECT_TRUE(has("volume=10000 ")) << "the last of them by its volume";
    EXPECT_NE(output.shown().find("Not processed: " + std::to_string(unplaced) +
                                  " orders in 1 batch (channel 2: " + std::to_string(unplaced) + ")"),
              std::string::npos)
        << output.shown();
    EXPECT_TRUE(has("\"kind\":\"stopped\""));
}

TEST_F(DeskLife, ThirdCtrlCEndsAStartThatWaits) {
    ASSERT_EQ(runDesk(path(), 0.0, out, [] { return true; }), 0);
    std::filesystem::remove(folder.path("desk/.lock"));
    const CFileLock books(folder.path("desk/paper.db"));
    CDeskOutput output = CDeskOutput::pipe();
    CDeskProcess process(path(), output);
    ASSERT_TRUE(waitUntil([this] { return folder.exists("desk/.lock"); })) << "the start has begun";
    auto pressed = std::chrono::steady_clock::time_point();
    EXPECT_TRUE(waitUntil([&] {
        const auto now = std::chrono::steady_clock::now();
        if (now - pressed < std::chrono::milliseconds(200)) return process.hasEnded();
        pressed = now;
        if (!process.hasEnded()) process.send(SIGINT);
        return process.hasEnded();
    }));
    EXPECT_TRUE(process.wasEndedBy(SIGINT)) << "not by the end of the wait for the books";
}

TEST_F(DeskLife, SecondDeskIsNotLetInByRemovingTheLockFile) {
    CDeskOutput output = CDeskOutput::pipe();
    CDeskProcess first(path(), output);
    tradeOnce();
    std::filesystem::remove(folder.path("desk/.lock"));
    CDeskOutput other = CDeskOutput::pipe();
    CDeskProcess second(path(), other);
    EXPECT_EQ(second.wait(), 2);
    EXPECT_TRUE(other.hasShown("it is in use by another process")) << other.shown();
    EXPECT_FALSE(folder.exists("desk/.lock")) << "who is refused leaves nothing";
    first.send(SIGTERM);
    EXPECT_EQ(first.wait(), 0);
}

TEST_F(DeskLife, JournalThatIsRemovedIsMadeAnewAndGoesOn) {
    CDeskOutput output = CDeskOutput::pipe();
    CDeskProcess process(path(), output);
    tradeOnce();
    std::filesystem::remove(folder.path("desk/journal.jsonl"));
    EXPECT_TRUE(waitUntil([this] { return has("\"kind\":\"continued\""); }));
    EXPECT_TRUE(waitUntil([&] { return output.hasShown("was deleted while the desk ran"); }))
        << output.shown();
    folder.handOver("desk/orders/group.txt", "23,0,11.02,600101,100\n");
    EXPECT_TRUE(waitUntil([this] { return has("\"kind\":\"fill\""); }));
    process.send(SIGTERM);
    EXPECT_EQ(process.wait(), 0);
}

TEST_F(DeskLife, StartAfterAKillSaysSoAndNamesTheFilesThatWait) {
    {
        CDeskOutput output = CDeskOutput::pipe();
        CDeskProcess process(path(), output);
        tradeOnce();
        process.send(SIGKILL);
        EXPECT_EQ(process.wait(), -1);
    }
    folder.write("desk/orders/group.txt", "23,0,11.02,600101,100\n23,0,11.02,600101,200\n");
    folder.write("desk/orders/single.txt.tmp", "23,0\n");
    CDeskOutput output = CDeskOutput::pipe();
    CDeskProcess process(path(), output);
    EXPECT_TRUE(waitUntil([&] { return output.hasShown("启动成功"); }));
    process.send(SIGTERM);
    EXPECT_EQ(process.wait(), 0);
    output.hasShown("");
    EXPECT_NE(
        output.shown().find("The previous run did not end properly: the journal has no \"stopped\" line"),
        std::string::npos)
        << output.shown();
    EXPECT_NE(output.shown().find("orders/group.txt (2 lines) of channel 1"), std::string::npos);
    EXPECT_NE(output.shown().find("orders/single.txt.tmp (1 line) of channel 2"), std::string::npos);
    EXPECT_TRUE(has("\"after_crash\":true"));
    EXPECT_EQ(count("\"kind\":\"discarded\""), 2);
    EXPECT_FALSE(folder.exists("desk/orders/group.txt"));
}

} // namespace
} // namespace desk
