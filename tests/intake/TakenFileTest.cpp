#include "orderservice/intake/TakenFile.h"

#include "tests/support/FakeClock.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace {

using namespace TC;

class TakenFile : public testing::Test {
protected:
    /// Puts aside a file with this text.
    CPutAside put(const std::string& text, const std::string& to) const {
        folder.write("a.txt.tmp", text);
        return putAside(folder.path("a.txt.tmp"), folder.path("a.txt"), to);
    }

    CTempFolder folder;
    CFakeClock clock;
};

TEST_F(TakenFile, IsPutIntoTheFolderUnderItsNameAndTheTime) {
    const CPutAside aside = put("1", folder.path("kept/rejected"));
    EXPECT_TRUE(aside.m_bMoved);
    EXPECT_EQ(aside.m_strPath, folder.path("kept/rejected/a.txt.20260105-093000-000"));
    EXPECT_EQ(aside.m_strTrouble, "");
    EXPECT_EQ(folder.read("kept/rejected/a.txt.20260105-093000-000"), "1");
    EXPECT_FALSE(folder.exists("a.txt.tmp"));
}

TEST_F(TakenFile, NeverOverwritesAnother) {
    for (const char* text : {"1", "2", "3"})
        EXPECT_TRUE(put(text, folder.path("rejected")).m_bMoved);
    EXPECT_EQ(folder.read("rejected/a.txt.20260105-093000-000"), "1");
    EXPECT_EQ(folder.read("rejected/a.txt.20260105-093000-000-2"), "2");
    EXPECT_EQ(folder.read("rejected/a.txt.20260105-093000-000-3"), "3");
}

TEST_F(TakenFile, IsMovedNextToItsPathWithoutAFolder) {
    const CPutAside aside = put("1", "");
    EXPECT_TRUE(aside.m_bMoved);
    EXPECT_EQ(aside.m_strPath, folder.path("a.txt.rejected-20260105-093000-000"));
    EXPECT_EQ(aside.m_strTrouble, "");
    EXPECT_EQ(folder.read("a.txt.rejected-20260105-093000-000"), "1");
}

TEST_F(TakenFile, IsMovedNextToItsPathIfTheFolderCannotBeCreated) {
    folder.write("rejected", "a file");
    const CPutAside aside = put("1", folder.path("rejected"));
    EXPECT_TRUE(aside.m_bMoved);
    EXPECT_EQ(aside.m_strPath, folder.path("a.txt.rejected-20260105-093000-000"));
    EXPECT_EQ(aside.m_strTrouble, "it cannot be moved to " + folder.path("rejected") + ": Not a directory");
    EXPECT_EQ(folder.read("rejected"), "a file");
}

/// A file cannot be renamed to another file system. /proc is another file system.
TEST_F(TakenFile, IsMovedNextToItsPathIfTheFolderIsOnAnotherFileSystem) {
    const CPutAside aside = put("1", "/proc/self");
    EXPECT_TRUE(aside.m_bMoved);
    EXPECT_EQ(aside.m_strTrouble, "it cannot be moved to /proc/self: Invalid cross-device link");
}

/// The new name is too long for the file system.
TEST_F(TakenFile, StaysWhereItIsIfNoMoveSucceeds) {
    const std::string name(240, 'a');
    folder.write(name + ".tmp", "1");
    const CPutAside aside = putAside(folder.path(name + ".tmp"), folder.path(name), folder.path("rejected"));
    EXPECT_FALSE(aside.m_bMoved);
    EXPECT_EQ(aside.m_strPath, folder.path(name + ".tmp"));
    EXPECT_EQ(aside.m_strTrouble, "it cannot be moved to " + folder.path("rejected") +
                                      ": File name too long; it cannot be renamed: File name too long");
    EXPECT_EQ(folder.read(name + ".tmp"), "1");
}

TEST_F(TakenFile, LookingFirstKeepsAFileThatIsThere) {
    folder.write("1", "1");
    folder.write("2", "2");
    EXPECT_EQ(renameAfterLooking(folder.path("1"), folder.path("2")), EEXIST);
    EXPECT_EQ(folder.read("2"), "2");
    EXPECT_EQ(renameAfterLooking(folder.path("1"), folder.path("3")), 0);
    EXPECT_EQ(folder.read("3"), "1");
    EXPECT_EQ(renameAfterLooking(folder.path("1"), folder.path("4")), ENOENT);
}

TEST_F(TakenFile, IsDeletedUnlessItWasKept) {
    folder.write("a.txt.tmp", "1");
    {
        CTakenFile file(folder.path("a.txt.tmp"), folder.path("a.txt"),
                        openRegularFile(folder.path("a.txt.tmp")).m_stream);
        EXPECT_EQ(file.size(), 1);
    }
    EXPECT_FALSE(folder.exists("a.txt.tmp"));
    const std::string name(240, 'a');
    folder.write(name + ".tmp", "2");
    {
        CTakenFile file(folder.path(name + ".tmp"), folder.path(name), nullptr);
        EXPECT_FALSE(file.keep("", "").m_bMoved);
    }
    EXPECT_TRUE(folder.exists(name + ".tmp")); // not deleted, although it could not be moved
}

} // namespace
