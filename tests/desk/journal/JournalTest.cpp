#include "desk/journal/Journal.h"

#include "tests/desk/journal/DeskFolder.h"

#include <nlohmann/json.hpp>

#include <unistd.h>

#include <chrono>
#include <future>
#include <new>
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

TEST_F(JournalTest, KindIsFirstThenTimeThenSeqThenTheEventsOwnKeysInTheirOrder) {
    ASSERT_TRUE(m_journal.open(m_folder.path()).isSuccess());
    ASSERT_TRUE(
        m_journal.append("message", CJson{{"text", "停牌"}, {"level", 1}, {"a", nullptr}}).isSuccess());
    EXPECT_EQ(
        m_folder.lines(kJournalFileName).back(),
        R"({"kind":"message","time":"2026-01-05T09:30:00.123","seq":2,"text":"停牌","level":1,"a":null})");
}

TEST_F(JournalTest, ListenerGetsTheLinesThatWereWritten) {
    std::string lines;
    m_journal.setListener([&](const std::string& written) { lines += written; });
    ASSERT_TRUE(m_journal.open(m_folder.path()).isSuccess());
    EXPECT_EQ(m_journal.appendAll({makeRecord("a", kNote), makeRecord("b", kNote)}), 2U);
    EXPECT_EQ(lines, m_folder.read(kJournalFileName));
    const CFullDisk disk(size());
    EXPECT_FALSE(m_journal.append("message", kNote).isSuccess());
    EXPECT_EQ(lines, m_folder.read(kJournalFileName));
}

TEST_F(JournalTest, LinesAreWrittenOnceEvenIfTheListenerThrows) {
    ASSERT_TRUE(m_journal.open(m_folder.path()).isSuccess());
    m_journal.setListener([](const std::string&) { throw std::bad_alloc(); });
    EXPECT_NO_THROW(EXPECT_TRUE(m_journal.append("message", kNote).isSuccess()));
    m_journal.setListener({});
    ASSERT_TRUE(m_journal.append("message", kNote).isSuccess());
    EXPECT_EQ(m_folder.lines(kJournalFileName).size(), 3U);
    EXPECT_EQ(lastRecord()["seq"], 3);
}

TEST_F(JournalTest, StateIsReadWithoutWaitingForAWrite) {
    ASSERT_TRUE(m_journal.open(m_folder.path()).isSuccess());
    std::promise<bool> state;
    std::future<bool> read = state.get_future();
    std::thread reader;
    m_journal.setListener([&](const std::string&) { // the journal is locked
        reader = std::thread([&] { state.set_value(m_journal.isFailed()); });
        EXPECT_EQ(read.wait_for(std::chrono::seconds(20)), std::future_status::ready);
    });
    ASSERT_TRUE(m_journal.append("message", kNote).isSuccess());
    reader.join();
    EXPECT_FALSE(read.get());
}

TEST_F(JournalTest, OpeningWritesStarted) {
    ASSERT_TRUE(m_journal.open(m_folder.path()).isSuccess());
    EXPECT_EQ(
        m_folder.read(kJournalFileName),
        R"({"kind":"started","time":"2026-01-05T09:30:00.123","seq":1,"recovered":false,"after_crash":false,"pid":)" +
            std::to_string(::getpid()) + "}\n");
}

TEST_F(JournalTest, StartTellsThatTheRunBeforeWasCutOff) {
    ASSERT_TRUE(m_journal.open(m_folder.path()).isSuccess());
    EXPECT_FALSE(m_journal.isAfterCrash());
    CJournal second;
    ASSERT_TRUE(second.open(m_folder.path()).isSuccess());
    EXPECT_EQ(lastRecord()["recovered"], false) << "no line was half written";
    EXPECT_EQ(lastRecord()["after_crash"], true);
    EXPECT_TRUE(second.isAfterCrash());
    ASSERT_TRUE(second.close("signal").isSuccess());
    CJournal third;
    ASSERT_TRUE(third.open(m_folder.path()).isSuccess());
    EXPECT_EQ(lastRecord()["after_crash"], false);
    ASSERT_TRUE(third.close("signal").isSuccess());
    m_folder.append(kJournalFileName, "half");
    CJournal fourth;
    ASSERT_TRUE(fourth.open(m_folder.path()).isSuccess());
    EXPECT_EQ(lastRecord()["after_crash"], true);
}

TEST_F(JournalTest, RecordBehindATornLineCountsAtTheStart) {
    m_folder.append(kJournalFileName, R"({"kind":"fill","time":"x","seq":4,"event":7})"
                                      "\n"
                                      R"({"kind":"ord{"kind":"fill","time":"x","seq":6,"event":9})"
                                      "\n");
    ASSERT_TRUE(m_journal.open(m_folder.path()).isSuccess());
    EXPECT_EQ(m_journal.lastSeq(), 7);
    EXPECT_EQ(m_journal.lastBrokerEvent(), 9);
}

TEST_F(JournalTest, FileThatStaysAsItIsIsLeftAlone) {
    ASSERT_TRUE(m_journal.open(m_folder.path()).isSuccess());
    const std::uintmax_t before = size();
    EXPECT_EQ(m_journal.checkFile(), "");
    EXPECT_EQ(size(), before);
}

TEST_F(JournalTest, DeletedFileIsMadeAnewWithTheLinesSinceTheLastLook) {
    ASSERT_TRUE(m_journal.open(m_folder.path()).isSuccess());
    EXPECT_EQ(m_journal.checkFile(), "");
    ASSERT_TRUE(m_journal.append("fill", CJson{{"event", 5}}).isSuccess());
    std::filesystem::remove(m_folder.file(kJournalFileName));
    ASSERT_TRUE(m_journal.append("message", kNote).isSuccess());
    const std::string cause = m_journal.checkFile();
    EXPECT_NE(cause.find("was deleted while the desk ran; its lines up to #1 are gone"), std::string::npos)
        << cause;
    const auto lines = m_folder.lines(kJournalFileName);
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(CJson::parse(lines[0])["seq"], 2);
    EXPECT_EQ(CJson::parse(lines[1])["seq"], 3);
    EXPECT_EQ(CJson::parse(lines[2])["kind"], "continued");
    EXPECT_EQ(CJson::parse(lines[2])["cause"], cause);
    EXPECT_EQ(CJson::parse(lines[2])["event"], 5);
    EXPECT_EQ(m_journal.checkFile(), "");
    ASSERT_TRUE(m_journal.append("message", kNote).isSuccess());
    EXPECT_EQ(lastRecord()["seq"], 5);
}

TEST_F(JournalTest, FileThatWasMovedKeepsItsLinesAndANewOneGoesOn) {
    ASSERT_TRUE(m_journal.open(m_folder.path()).isSuccess());
    ASSERT_TRUE(m_journal.append("order", CJson{{"event", 8}}).isSuccess());
    std::filesystem::rename(m_folder.file(kJournalFileName), m_folder.file("journal.1"));
    ASSERT_TRUE(m_journal.append("message", kNote).isSuccess());
    EXPECT_NE(m_journal.checkFile().find("was moved away while the desk ran; lines up to #3"),
              std::string::npos);
    EXPECT_EQ(m_folder.lines("journal.1").size(), 3u);
    EXPECT_EQ(m_folder.lines(kJournalFileName).size(), 1u);
    EXPECT_EQ(lastRecord()["seq"], 4);
    CJournal next;
    ASSERT_TRUE(next.open(m_folder.path()).isSuccess());
    EXPECT_EQ(next.lastBrokerEvent(), 8) << "events in the file that was moved do not come again";
}

TEST_F(JournalTest, AnotherFileInTheJournalsPlaceIsAppendedTo) {
    ASSERT_TRUE(m_journal.open(m_folder.path()).isSuccess());
    std::filesystem::rename(m_folder.file(kJournalFileName), m_folder.file("journal.1"));
    m_folder.append(kJournalFileName, "half a line of an editor");
    EXPECT_NE(m_journal.checkFile(), "");
    EXPECT_EQ(m_folder.lines(kJournalFileName).size(), 2u);
    EXPECT_EQ(lastRecord()["kind"], "continued");
}

TEST_F(JournalTest, FileThatWasCutIsReportedAndItsLastLineClosed) {
    ASSERT_TRUE(m_journal.open(m_folder.path()).isSuccess());
    const std::uintmax_t before = size();
    std::filesystem::resize_file(m_folder.file(kJournalFileName), 20);
    const std::string cause = m_journal.checkFile();
    EXPECT_NE(cause.find("was cut from " + std::to_string(before) + " to 20 bytes"), std::string::npos)
        << cause;
    EXPECT_EQ(m_folder.lines(kJournalFileName).size(), 2u);
    EXPECT_EQ(lastRecord()["kind"], "continued");
    EXPECT_EQ(lastRecord()["seq"], 2);
    EXPECT_EQ(m_journal.checkFile(), "");
}

TEST_F(JournalTest, FileThatCannotBeMadeAnewIsAFailureUntilItCan) {
    ASSERT_TRUE(m_journal.open(m_folder.path()).isSuccess());
    std::filesystem::remove(m_folder.file(kJournalFileName));
    std::filesystem::create_directory(m_folder.file(kJournalFileName));
    EXPECT_NE(m_journal.checkFile(), "");
    EXPECT_TRUE(m_journal.isFailed());
    EXPECT_FALSE(m_journal.append("message", kNote).isSuccess());
    EXPECT_FALSE(m_journal.probe().isSuccess()) << "the deleted file takes bytes, but nobody could read them";
    std::filesystem::remove(m_folder.file(kJournalFileName));
    EXPECT_TRUE(m_journal.probe().isSuccess());
    ASSERT_TRUE(m_journal.append("message", kNote).isSuccess());
    EXPECT_EQ(m_folder.lines(kJournalFileName).size(), 4u) << "started, resumed, continued, message";
}

TEST_F(JournalTest, EndIsWrittenToTheFileAtThePath) {
    ASSERT_TRUE(m_journal.open(m_folder.path()).isSuccess());
    std::filesystem::remove(m_folder.file(kJournalFileName));
    ASSERT_TRUE(m_journal.close("signal").isSuccess());
    EXPECT_EQ(lastRecord()["kind"], "stopped");
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

TEST_F(JournalTest, OpeningRemembersTheLargestOrderAndFillNumbers) {
    m_folder.append(kJournalFileName,
                    "{\"kind\":\"order\",\"seq\":1,\"event\":1,\"order\":4,\"status\":\"working\"}\n"
                    "{\"kind\":\"order\",\"seq\":2,\"event\":2,\"order\":15,\"status\":\"working\"}\n"
                    "{\"kind\":\"fill\",\"seq\":3,\"event\":3,\"fill\":8,\"order\":15}\n"
                    "{\"kind\":\"order\",\"seq\":4,\"event\":4,\"order\":16,\"status\":\"filled\"}\n"
                    "{\"kind\":\"order\",\"seq\":5,\"event\":5,\"order\":4,\"status\":\"cancelled\"}\n");
    ASSERT_TRUE(m_journal.open(m_folder.path()).isSuccess());
    EXPECT_EQ(m_journal.lastOrder(), 16);
    EXPECT_EQ(m_journal.lastFill(), 8);
}

TEST_F(JournalTest, FileThatGoesOnElsewhereRemembersAllNumbers) {
    ASSERT_TRUE(m_journal.open(m_folder.path()).isSuccess());
    ASSERT_TRUE(m_journal.append("command", CJson{{"task", 7}}).isSuccess());
    ASSERT_TRUE(m_journal.append("command", CJson{{"task", nullptr}}).isSuccess());
    ASSERT_TRUE(m_journal.append("order", CJson{{"event", 8}, {"order", 15}}).isSuccess());
    ASSERT_TRUE(m_journal.append("fill", CJson{{"event", 9}, {"fill", 5}, {"order", 15}}).isSuccess());
    ASSERT_TRUE(m_journal.append("order", CJson{{"event", 10}, {"order", 4}}).isSuccess());
    std::filesystem::rename(m_folder.file(kJournalFileName), m_folder.file("journal.1"));
    EXPECT_NE(m_journal.checkFile(), "");
    CJournal next;
    ASSERT_TRUE(next.open(m_folder.path()).isSuccess());
    EXPECT_EQ(next.lastTask(), 7);
    EXPECT_EQ(next.lastOrder(), 15);
    EXPECT_EQ(next.lastFill(), 5);
    EXPECT_EQ(next.lastBrokerEvent(), 10);
}

TEST_F(JournalTest, RecordWithAnObjectThatHasAKindIsOneRecord) {
    const std::string strategy = R"({"kind":"strategy","time":"x","seq":6,"hedge_param":{"kind":"IF"}})";
    m_folder.append(kJournalFileName, strategy + '\n');
    ASSERT_TRUE(m_journal.open(m_folder.path()).isSuccess());
    EXPECT_EQ(lastRecord()["seq"], 7);
    m_folder.append(kJournalFileName, R"({"kind":"ord)" + strategy + '\n');
    CJournal next;
    ASSERT_TRUE(next.open(m_folder.path()).isSuccess());
    EXPECT_EQ(lastRecord()["seq"], 7) << "the record behind the torn line has number 6";
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

TEST_F(JournalTest, RecordThatLacksOnlyItsLineEndIsTaken) {
    ASSERT_TRUE(m_journal.open(m_folder.path()).isSuccess());
    std::int64_t seq = 0;
    ASSERT_TRUE(m_journal.append("message", kNote, &seq).isSuccess());
    const std::uintmax_t line = m_folder.lines(kJournalFileName).back().size(); // the next has this size too
    {
        const CFullDisk disk(size() + line);
        EXPECT_TRUE(m_journal.append("message", kNote, &seq).isSuccess());
        EXPECT_TRUE(m_journal.isFailed());
        EXPECT_FALSE(m_journal.append("message", kNote).isSuccess());
    }
    ASSERT_TRUE(m_journal.probe().isSuccess());
    const auto lines = m_folder.lines(kJournalFileName);
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(CJson::parse(lines[2])["seq"], seq);
    EXPECT_EQ(lastRecord()["kind"], "resumed");
    EXPECT_EQ(lastRecord()["seq"], seq + 1);
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

TEST_F(JournalTest, WriteThatIsCutShortKeepsItsWholeLinesAndRefusesTheOthers) {
    ASSERT_TRUE(m_journal.open(m_folder.path()).isSuccess());
    const std::uintmax_t before = size();
    ASSERT_TRUE(m_journal.append("message", kNote).isSuccess());
    const std::uintmax_t line = size() - before; // the next lines have this size too
    const std::vector<CJournalRecord> records(3, makeRecord("message", kNote));
    {
        const CFullDisk disk(size() + line + 20);
        EXPECT_EQ(m_journal.appendAll(records), 1u);
    }
    EXPECT_TRUE(m_journal.isFailed());
    EXPECT_EQ(m_journal.lastSeq(), 3);
    EXPECT_FALSE(m_journal.append("message", kNote).isSuccess());
    EXPECT_EQ(m_journal.lastSeq(), 3) << "a journal that failed takes nothing";
    ASSERT_TRUE(m_journal.probe().isSuccess());
    EXPECT_EQ(lastRecord()["kind"], "resumed");
    EXPECT_EQ(lastRecord()["seq"], 4);
    EXPECT_EQ(lastRecord()["refused"], 1) << "the two others are appended again by the caller";
}

TEST_F(JournalTest, RecordsThatAreAppendedTogetherTellHowManyAreInTheFile) {
    ASSERT_TRUE(m_journal.open(m_folder.path()).isSuccess());
    const auto fill = [](int event) { return makeRecord("fill", CJson{{"event", event}, {"fill", event}}); };
    ASSERT_TRUE(m_journal.append(fill(1)).isSuccess());
    const std::uintmax_t line = m_folder.lines(kJournalFileName).back().size() + 1;
    EXPECT_EQ(m_journal.appendAll({fill(2), fill(3)}), 2u);
    EXPECT_EQ(m_journal.lastBrokerEvent(), 3);
    {
        const CFullDisk disk(size() + 2 * line + 5);
        EXPECT_EQ(m_journal.appendAll({fill(4), fill(5), fill(6), fill(7)}), 2u);
        EXPECT_EQ(m_journal.appendAll({fill(6), fill(7)}), 0u);
    }
    EXPECT_EQ(m_journal.lastBrokerEvent(), 5) << "only lines in the file are known";
    EXPECT_EQ(m_journal.lastFill(), 5);
    ASSERT_TRUE(m_journal.probe().isSuccess());
    EXPECT_EQ(lastRecord()["refused"], 0) << "the caller appends them again";
    EXPECT_EQ(m_journal.appendAll({fill(6), fill(7)}), 2u);
    EXPECT_EQ(lastRecord()["seq"], 9);
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

TEST_F(JournalTest, LinesOfSeveralThreadsAreWholeAndInTheOrderOfTheirSeq) {
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
