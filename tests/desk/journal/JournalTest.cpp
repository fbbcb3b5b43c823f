#include "desk/journal/Journal.h"

#include "tests/desk/journal/DeskFolder.h"

#include <nlohmann/json.hpp>

#include <unistd.h>

#include <thread>

using namespace desk;
using namespace desk::test;

namespace {

class JournalTest : public testing::Test {
protected:
    CJson lastRecord() const { return CJson::parse(m_folder.lines(kJournalFileName).back()); }
    std::uintmax_t size() const { return std::filesystem::file_size(m_folder.file(kJournalFileName)); }

    CStillClock m_clock;
    CDeskFolder m_folder;
    CJournal m_journal;
};

const CJson kNote{{"text", "hello"}};

} // namespace

TEST_F(JournalTest, KindStandsFirstThenTimeThenSeqThenTheEventsOwnKeysInTheirOrder) {
    ASSERT_TRUE(m_journal.open(m_folder.path()).isSuccess());
    ASSERT_TRUE(
        m_journal.append("message", CJson{{"text", "停牌"}, {"level", 1}, {"a", nullptr}}).isSuccess());
    EXPECT_EQ(
        m_folder.lines(kJournalFileName).back(),
        R"({"kind":"message","time":"2026-01-05T09:30:00.123","seq":2,"text":"停牌","level":1,"a":null})");
}

TEST_F(JournalTest, OpeningWritesStarted) {
    ASSERT_TRUE(m_journal.open(m_folder.path()).isSuccess());
    EXPECT_EQ(m_folder.read(kJournalFileName),
              R"({"kind":"started","time":"2026-01-05T09:30:00.123","seq":1,"recovered":false,"pid":)" +
                  std::to_string(::getpid()) + "}\n");
}

TEST_F(JournalTest, ClosingWritesStoppedAndEndsTheJournal) {
    ASSERT_TRUE(m_journal.open(m_folder.path()).isSuccess());
    ASSERT_TRUE(m_journal.close("signal 15").isSuccess());
    EXPECT_EQ(lastRecord()["kind"], "stopped");
    EXPECT_EQ(lastRecord()["reason"], "signal 15");
    EXPECT_EQ(m_journal.append("message", kNote).errorId(), kJournalClosed);
    EXPECT_EQ(m_journal.close("again").errorId(), kJournalClosed);
}

TEST_F(JournalTest, SeqGoesOnWhereTheLastRunEnded) {
    {
        CJournal first;
        ASSERT_TRUE(first.open(m_folder.path()).isSuccess());
        ASSERT_TRUE(first.append("message", kNote).isSuccess());
    }
    ASSERT_TRUE(m_journal.open(m_folder.path()).isSuccess());
    std::int64_t seq = 0;
    ASSERT_TRUE(m_journal.append("message", kNote, &seq).isSuccess());
    EXPECT_EQ(seq, 4);
    EXPECT_EQ(m_folder.lines(kJournalFileName).size(), 4u);
}

TEST_F(JournalTest, HalfLastLineIsClosedAndStartedSaysRecovered) {
    const std::string half = R"({"kind":"message","time":"2026-01-05T09:29:59.000","seq":8,"te)";
    m_folder.append(kJournalFileName, "{\"kind\":\"message\",\"seq\":7}\n" + half);
    ASSERT_TRUE(m_journal.open(m_folder.path()).isSuccess());
    const auto lines = m_folder.lines(kJournalFileName);
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[1], half);
    EXPECT_EQ(lastRecord()["kind"], "started");
    EXPECT_EQ(lastRecord()["recovered"], true);
    EXPECT_EQ(lastRecord()["seq"], 8);
}

TEST_F(JournalTest, OpeningRemembersTheLastWholeBrokerEvent) {
    m_folder.append(kJournalFileName, "{\"kind\":\"order\",\"seq\":1,\"event\":41}\n"
                                      "{\"kind\":\"fill\",\"seq\":2,\"event\":42}\n"
                                      "{\"kind\":\"order\",\"seq\":3,\"event\":43,\"sta\n"
                                      "{\"kind\":\"message\",\"seq\":4,\"event\":99}\n"
                                      "{\"kind\":\"order\",\"seq\":5,\"event\":44");
    ASSERT_TRUE(m_journal.open(m_folder.path()).isSuccess());
    EXPECT_EQ(m_journal.lastBrokerEvent(), 42);
}

TEST_F(JournalTest, OpeningRemembersTheLastTaskThatACommandHas) {
    m_folder.append(kJournalFileName,
                    "{\"kind\":\"command\",\"time\":\"t\",\"seq\":1,\"task\":41}\n"
                    "{\"kind\":\"command\",\"time\":\"t\",\"seq\":2,\"task\":42}\n"
                    "{\"kind\":\"command\",\"time\":\"t\",\"seq\":3,\"task\":null}\n"
                    "{\"kind\":\"command\",\"time\":\"t\",\"seq\":4,\"remark\":\"as older desks wrote it\"}\n"
                    "{\"kind\":\"cancel_task\",\"time\":\"t\",\"seq\":5,\"task\":99}\n"
                    "{\"kind\":\"command\",\"time\":\"t\",\"seq\":6,\"task\":43");
    ASSERT_TRUE(m_journal.open(m_folder.path()).isSuccess());
    EXPECT_EQ(m_journal.lastTask(), 42);
}

TEST_F(JournalTest, BytesThatAreNoUtf8AreReplacedAndTheRecordIsKept) {
    ASSERT_TRUE(m_journal.open(m_folder.path()).isSuccess());
    ASSERT_TRUE(m_journal.append("message", CJson{{"text", "a\xff z"}}).isSuccess());
    EXPECT_EQ(lastRecord()["text"], "a\uFFFD z");
}

TEST_F(JournalTest, ShortWriteFailsTheJournalUntilAProbeSucceeds) {
    ASSERT_TRUE(m_journal.open(m_folder.path()).isSuccess());
    utils::KNError first, second, probe;
    {
        const CFullDisk disk(size() + 20);
        first = m_journal.append("message", kNote);
        second = m_journal.append("message", kNote);
        probe = m_journal.probe();
    }
    EXPECT_EQ(first.errorId(), kJournalWriteFailed);
    EXPECT_NE(first.errorMsg().find(kJournalFileName), std::string::npos);
    EXPECT_FALSE(second.isSuccess());
    EXPECT_FALSE(probe.isSuccess());
    EXPECT_TRUE(m_journal.isFailed());
    EXPECT_FALSE(m_journal.append("message", kNote).isSuccess())
        << "there is room again, but no probe has found it";

    ASSERT_TRUE(m_journal.probe().isSuccess());
    EXPECT_FALSE(m_journal.isFailed());
    const auto lines = m_folder.lines(kJournalFileName);
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[1], R"({"kind":"message","t)") << "the half line is closed and kept";
    EXPECT_EQ(lastRecord()["kind"], "resumed");
    EXPECT_EQ(lastRecord()["refused"], 3);
    EXPECT_EQ(lastRecord()["seq"], 2);
    EXPECT_TRUE(m_journal.append("message", kNote).isSuccess());
}

TEST_F(JournalTest, WriteWithoutRoomForAByteLeavesNoTrace) {
    ASSERT_TRUE(m_journal.open(m_folder.path()).isSuccess());
    const std::string before = m_folder.read(kJournalFileName);
    {
        const CFullDisk disk(size());
        EXPECT_FALSE(m_journal.append("message", kNote).isSuccess());
    }
    EXPECT_EQ(m_folder.read(kJournalFileName), before);
    ASSERT_TRUE(m_journal.probe().isSuccess());
    EXPECT_EQ(m_folder.lines(kJournalFileName).size(), 2u);
}

TEST_F(JournalTest, ProbeOfAWorkingJournalWritesNothing) {
    ASSERT_TRUE(m_journal.open(m_folder.path()).isSuccess());
    ASSERT_TRUE(m_journal.probe().isSuccess());
    EXPECT_EQ(m_folder.lines(kJournalFileName).size(), 1u);
}

TEST_F(JournalTest, OpeningOnAFullDeviceFailsWithTheSystemsReason) {
    std::filesystem::create_symlink("/dev/full", m_folder.file(kJournalFileName));
    const utils::KNError error = m_journal.open(m_folder.path());
    EXPECT_EQ(error.errorId(), kJournalOpenFailed);
    EXPECT_NE(error.errorMsg().find("No space left"), std::string::npos);
    EXPECT_EQ(m_journal.append("message", kNote).errorId(), kJournalClosed);
}

TEST_F(JournalTest, OpeningInAFolderThatIsNotThereFails) {
    EXPECT_EQ(m_journal.open(m_folder.file("nowhere")).errorId(), kJournalOpenFailed);
}

TEST_F(JournalTest, LinesOfSeveralThreadsStandWholeAndInTheOrderOfTheirSeq) {
    ASSERT_TRUE(m_journal.open(m_folder.path()).isSuccess());
    constexpr int kThreads = 4;
    constexpr int kRecords = 200;
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([this] {
            for (int n = 0; n < kRecords; ++n)
                EXPECT_TRUE(m_journal.append("message", kNote).isSuccess());
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    std::int64_t seq = 0;
    for (const std::string& line : m_folder.lines(kJournalFileName))
        EXPECT_EQ(CJson::parse(line)["seq"], ++seq);
    EXPECT_EQ(seq, 1 + kThreads * kRecords);
}
