// The journal's file is deleted or moved while the journal cannot be written.
#include "desk/journal/Journal.h"

#include "tests/desk/journal/DeskFolder.h"

#include <nlohmann/json.hpp>

using namespace desk;
using namespace desk::test;

namespace {

using CTexts = std::vector<std::string>;

class JournalFileChanges : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(m_journal.open(m_folder.path()).isSuccess()); }

    void write(const char* kind, const CJson& fields) {
        ASSERT_TRUE(m_journal.append(kind, fields).isSuccess());
    }
    void writeNumbers() {
        write("command", CJson{{"task", 7}});
        write("order", CJson{{"event", 8}, {"order", 15}});
        write("fill", CJson{{"event", 9}, {"fill", 5}, {"order", 15}});
    }
    void expectNumbersAtTheNextStart() const {
        CJournal next;
        ASSERT_TRUE(next.open(m_folder.path()).isSuccess());
        EXPECT_EQ(next.lastBrokerEvent(), 9);
        EXPECT_EQ(next.lastTask(), 7);
        EXPECT_EQ(next.lastOrder(), 15);
        EXPECT_EQ(next.lastFill(), 5);
    }

    /// Writes two messages and deletes the file. Then checks the file on a disk whose room is too small for
    /// both messages by this number of bytes. Returns the lines of the messages.
    CTexts deleteWithTooLittleRoom(std::size_t tooLittle) {
        EXPECT_EQ(m_journal.checkFile(), "");
        write("message", CJson{{"text", "first"}});
        write("message", CJson{{"text", "second"}});
        const CTexts all = m_folder.lines(kJournalFileName);
        const CTexts messages(all.begin() + 1, all.end());
        remove();
        const CFullDisk disk(messages[0].size() + messages[1].size() + 2 - tooLittle);
        EXPECT_NE(m_journal.checkFile(), "");
        EXPECT_TRUE(m_journal.isFailed());
        EXPECT_FALSE(m_journal.probe().isSuccess());
        return messages;
    }

    void remove() const { std::filesystem::remove(m_folder.file(kJournalFileName)); }
    std::string kindOf(const std::string& line) const { return CJson::parse(line)["kind"]; }
    CTexts lines() const { return m_folder.lines(kJournalFileName); }
    CTexts firstLines(std::size_t count) const {
        CTexts all = lines();
        all.resize(count);
        return all;
    }

    CStillClock m_clock;
    CDeskFolder m_folder;
    CJournal m_journal;
};

const CJson kRefused{{"text", "hello"}};

} // namespace

TEST_F(JournalFileChanges, DeletedWhileTheDiskIsFullItGoesOnWithCauseAndNumbers) {
    writeNumbers();
    EXPECT_EQ(m_journal.checkFile(), "");
    std::string cause;
    {
        const CFullDisk disk(0);
        EXPECT_FALSE(m_journal.append("message", kRefused).isSuccess());
        remove();
        cause = m_journal.checkFile();
        EXPECT_NE(cause.find("was deleted while the desk ran"), std::string::npos) << cause;
        EXPECT_EQ(m_journal.checkFile(), "");
        EXPECT_FALSE(m_journal.probe().isSuccess());
    }
    ASSERT_TRUE(m_journal.probe().isSuccess());
    ASSERT_EQ(lines().size(), 2u);
    EXPECT_EQ(kindOf(lines()[0]), "resumed");
    EXPECT_EQ(kindOf(lines()[1]), "continued");
    EXPECT_EQ(CJson::parse(lines()[1])["cause"], cause);
    expectNumbersAtTheNextStart();
}

TEST_F(JournalFileChanges, EndWritesWhatWaitsOnceThereIsRoom) {
    writeNumbers();
    {
        const CFullDisk disk(0);
        EXPECT_FALSE(m_journal.append("message", kRefused).isSuccess());
        remove();
    }
    EXPECT_TRUE(m_journal.close("test").isSuccess());
    const CTexts all = lines();
    ASSERT_GE(all.size(), 3u);
    EXPECT_EQ(kindOf(all[all.size() - 3]), "resumed");
    EXPECT_EQ(kindOf(all[all.size() - 2]), "continued");
    EXPECT_EQ(kindOf(all.back()), "stopped");
    expectNumbersAtTheNextStart();
}

TEST_F(JournalFileChanges, MovedWhileTheDiskIsFullItGoesOnWithCauseAndNumbers) {
    writeNumbers();
    {
        const CFullDisk disk(0);
        EXPECT_FALSE(m_journal.append("message", kRefused).isSuccess());
    }
    std::filesystem::rename(m_folder.file(kJournalFileName), m_folder.file("journal.1"));
    const std::string cause = m_journal.checkFile();
    EXPECT_TRUE(lines().empty()) << "the failed state ends with a probe";
    ASSERT_TRUE(m_journal.probe().isSuccess());
    ASSERT_EQ(lines().size(), 2u);
    EXPECT_EQ(CJson::parse(lines()[1])["cause"], cause);
    expectNumbersAtTheNextStart();
}

TEST_F(JournalFileChanges, ContinuedRecordThatFailsIsWrittenByAProbe) {
    writeNumbers();
    EXPECT_EQ(m_journal.checkFile(), "");
    remove();
    std::string cause;
    {
        const CFullDisk disk(0);
        cause = m_journal.checkFile();
    }
    ASSERT_TRUE(m_journal.probe().isSuccess());
    EXPECT_EQ(CJson::parse(lines().back())["cause"], cause);
    expectNumbersAtTheNextStart();
}

TEST_F(JournalFileChanges, StateEndsOnlyOnceTheContinuedRecordIsWritten) {
    writeNumbers();
    EXPECT_EQ(m_journal.checkFile(), "");
    remove();
    {
        const CFullDisk disk(0);
        EXPECT_NE(m_journal.checkFile(), "");
    }
    {
        // Every record contains the path. There is room for the record `resumed` only.
        const CFullDisk disk(m_folder.file(kJournalFileName).size() + 200);
        EXPECT_FALSE(m_journal.probe().isSuccess());
        ASSERT_FALSE(lines().empty());
        EXPECT_EQ(kindOf(lines()[0]), "resumed");
        EXPECT_TRUE(m_journal.isFailed());
    }
    ASSERT_TRUE(m_journal.probe().isSuccess());
    EXPECT_EQ(kindOf(lines().back()), "continued");
    expectNumbersAtTheNextStart();
}

TEST_F(JournalFileChanges, BothCausesAreKeptIfTheFileChangesTwice) {
    {
        const CFullDisk disk(0);
        EXPECT_FALSE(m_journal.append("message", kRefused).isSuccess());
    }
    std::filesystem::rename(m_folder.file(kJournalFileName), m_folder.file("journal.1"));
    const std::string first = m_journal.checkFile();
    remove();
    const std::string second = m_journal.checkFile();
    ASSERT_TRUE(m_journal.probe().isSuccess());
    EXPECT_EQ(CJson::parse(lines().back())["cause"], first + "; " + second);
}

TEST_F(JournalFileChanges, LinesOfADeletedFileThatFindNoRoomAreWrittenByAProbe) {
    constexpr std::size_t kTooLittle = 20;
    const CTexts messages = deleteWithTooLittleRoom(kTooLittle);
    const std::string torn = messages[1].substr(0, messages[1].size() + 1 - kTooLittle);
    ASSERT_TRUE(m_journal.probe().isSuccess());
    ASSERT_EQ(lines().size(), 5u);
    EXPECT_EQ(firstLines(3), (CTexts{messages[0], torn, messages[1]}));
    EXPECT_EQ(kindOf(lines()[3]), "resumed");
    EXPECT_EQ(kindOf(lines()[4]), "continued");
}

TEST_F(JournalFileChanges, LineWhoseEndAloneFindsNoRoomIsNotWrittenTwice) {
    const CTexts messages = deleteWithTooLittleRoom(1);
    ASSERT_TRUE(m_journal.probe().isSuccess());
    ASSERT_EQ(lines().size(), 4u);
    EXPECT_EQ(firstLines(2), messages);
    EXPECT_EQ(kindOf(lines()[2]), "resumed");
}

TEST_F(JournalFileChanges, LinesThatFoundNoRoomOutliveASecondDeletion) {
    const CTexts messages = deleteWithTooLittleRoom(20);
    remove();
    EXPECT_NE(m_journal.checkFile(), "");
    ASSERT_TRUE(m_journal.probe().isSuccess());
    ASSERT_EQ(lines().size(), 5u);
    EXPECT_EQ(lines()[0], messages[0]);
    EXPECT_EQ(lines()[2], messages[1]);
}
