#include "desk/commands/CheckFolder.h"
#include "desk/commands/NewFolder.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>
#include <sstream>
#include <string>

namespace desk {
namespace {

/// The demo folder and what `check` prints for its files.
class FolderState : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(runNew(m_folder.path("desk"), false, m_out, m_out), 0);
        std::filesystem::create_directories(m_folder.path("desk/orders"));
    }
    /// The printed lines without the last one. Warnings do not change the exit code.
    std::string warnings() const {
        std::ostringstream printed;
        EXPECT_EQ(runCheck(m_folder.path("desk"), printed), 0);
        const std::string text = printed.str();
        return text.substr(0, text.rfind('\n', text.size() - 2) + 1);
    }
    std::string order(const std::string& name) const { return m_folder.path("desk/orders/" + name); }

    CTempFolder m_folder;
    std::ostringstream m_out;
};

TEST_F(FolderState, WaitingOrderFileIsNamedWithItsLines) {
    m_folder.write("desk/orders/group.txt", "23,0,11.02,600101,100\n23,0\n");
    m_folder.write("desk/orders/single.txt", "");
    EXPECT_EQ(warnings(), "strategies.toml: warning: channel 1: " + order("group.txt") +
                              " waits with 2 lines; the desk deletes it unread when it starts\n");
    EXPECT_TRUE(m_folder.exists("desk/orders/group.txt"));
}

TEST_F(FolderState, FileInThePlaceOfTheControlSocketIsNamed) {
    const std::string socket = m_folder.path("desk/control.sock");
    ASSERT_EQ(::mknod(socket.c_str(), S_IFSOCK | 0600, 0), 0); // as a killed desk leaves it
    EXPECT_EQ(warnings(), "");
    std::filesystem::remove(socket);
    m_folder.write("desk/control.sock", "");
    std::filesystem::create_symlink("nowhere", m_folder.path("desk/control.sock.new"));
    EXPECT_EQ(warnings(), "control.sock: warning: is not a socket; the desk has no control door\n"
                          "control.sock.new: warning: is not a socket; the desk has no control door\n");
}

TEST_F(FolderState, FileThatACrashLeftIsNamed) {
    m_folder.write("desk/orders/group.txt.tmp", "23,0\n");
    const std::string head = "strategies.toml: warning: channel 1: " + order("group.txt.tmp") +
                             " has 1 line that a desk has taken, and perhaps not read to the end; it is ";
    EXPECT_EQ(warnings(), head + "moved to rejected/ when the next file comes\n");
    std::string desk = m_folder.read("desk/desk.toml");
    const std::string on = "mdl_order_file_guard = true";
    m_folder.write("desk/desk.toml", desk.replace(desk.find(on), on.size(), ""));
    EXPECT_NE(warnings().find(head + "deleted when the next file comes\n"), std::string::npos);
}

TEST_F(FolderState, PathThatNoOrderFileCanBeAtIsNamed) {
    ASSERT_EQ(::mkfifo(order("group.txt").c_str(), 0600), 0);
    EXPECT_EQ(warnings(), "strategies.toml: warning: channel 1: " + order("group.txt") +
                              " is not a file; the strategy does not start\n");
    std::filesystem::remove_all(m_folder.path("desk/orders"));
    m_folder.write("desk/orders", "a file");
    EXPECT_NE(warnings().find("channel 1: " + order("group.txt") +
                              " cannot be made: " + m_folder.path("desk/orders") + " is not a folder\n"),
              std::string::npos)
        << warnings();
}

TEST_F(FolderState, BooksThatTheDeskDoesNotOpenAreNamed) {
    EXPECT_EQ(warnings(), "");
    m_folder.write("desk/paper.db", "");
    EXPECT_EQ(warnings(), "");
    m_folder.write("desk/paper.db-wal", "x");
    EXPECT_EQ(warnings(),
              "paper.db: warning: is empty, but paper.db-wal has content; the desk does not start\n");
    std::filesystem::remove(m_folder.path("desk/paper.db"));
    EXPECT_EQ(warnings(),
              "paper.db: warning: is missing, but paper.db-wal has content; the desk does not start\n");
}

TEST_F(FolderState, MissingBooksOfADeskThatHasTradedAreNamed) {
    m_folder.write("desk/journal.jsonl",
                   "{\"kind\":\"order\",\"time\":\"t\",\"seq\":1,\"event\":1,\"order\":1}\n");
    EXPECT_EQ(warnings(),
              "paper.db: warning: is missing, but the journal has orders; the books begin anew with "
              "the folder's funds and positions\n");
    m_folder.write("desk/paper.db", "");
    EXPECT_EQ(warnings(),
              "paper.db: warning: is empty, but the journal has orders; the desk does not start\n");
}

} // namespace
} // namespace desk
