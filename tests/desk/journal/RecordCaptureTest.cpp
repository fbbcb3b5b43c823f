#include "desk/journal/RecordCapture.h"

#include "desk/journal/Journal.h"
#include "tests/support/TempFolder.h"

#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

#include <thread>

namespace desk {
namespace {

class RecordCapture : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(journal.open(folder.path()).isSuccess()); }
    void append(const char* kind, const CJson& fields) { (void)journal.append(kind, fields); }

    CTempFolder folder;
    CJournal journal;
};

TEST_F(RecordCapture, HasTheRecordsOfItsThreadWhileItLives) {
    append("message", CJson{{"text", "before"}});
    {
        const CRecordCapture capture;
        append("message", CJson{{"text", "mine"}});
        std::thread([this] { append("message", CJson{{"text", "of another thread"}}); }).join();
        append("command", CJson{{"task", 7}, {"codes", CJson::array()}});
        ASSERT_EQ(capture.records().size(), 2u);
        EXPECT_EQ(capture.records()[0].m_strKind, "message");
        EXPECT_EQ(capture.records()[0].m_strFields, R"("text":"mine")");
        EXPECT_EQ(capture.records()[0].m_nSeq, 3); // "started" is the first record
        EXPECT_EQ(capture.records()[1].m_strFields, "");
        EXPECT_EQ(capture.records()[1].m_task, 7);
        EXPECT_EQ(capture.records()[1].m_nSeq, 5);
    }
    EXPECT_FALSE(CRecordCapture::isActive());
    const CRecordCapture later;
    EXPECT_TRUE(CRecordCapture::isActive());
    EXPECT_TRUE(later.records().empty());
}

TEST_F(RecordCapture, HasARecordThatTheJournalRefuses) {
    (void)journal.close("over");
    const CRecordCapture capture;
    append("message", CJson{{"text", "lost"}});
    ASSERT_EQ(capture.records().size(), 1u);
    EXPECT_EQ(capture.records()[0].m_nSeq, 0);
}

/// They may be events of commands of other callers.
TEST_F(RecordCapture, LeavesOutRecordsThatAreAppendedTogether) {
    const CRecordCapture capture;
    EXPECT_EQ(journal.appendAll({{"order", "", {}}, {"order", "", {}}}), 2u);
    EXPECT_TRUE(capture.records().empty());
}

TEST_F(RecordCapture, OnlyTheInnerOneCollects) {
    const CRecordCapture outer;
    {
        const CRecordCapture inner;
        append("message", CJson::object());
        EXPECT_EQ(inner.records().size(), 1u);
    }
    EXPECT_TRUE(outer.records().empty());
    append("message", CJson::object());
    EXPECT_EQ(outer.records().size(), 1u);
}

} // namespace
} // namespace desk
