#include "desk/paper/PaperStore.h"

#include "tests/desk/paper/PaperDesk.h"

#include <filesystem>

using namespace desk;
using namespace desk::test;

namespace {

constexpr const char* kLogName = "paper.db-wal";

class StoredAccounts : public PaperDesk {};

} // namespace

TEST_F(StoredAccounts, ReadingThemChangesNeitherTheStoreNorItsLog) {
    const CDeskFolder killed;
    place({buy(100, 9.50)});
    for (const char* name : {kPaperStoreName, kLogName}) // the files of a killed desk
        std::filesystem::copy_file(m_folder.file(name), killed.file(name));
    const std::string store = killed.read(kPaperStoreName), log = killed.read(kLogName);
    ASSERT_FALSE(log.empty());
    const auto accounts = storedAccounts(killed.path());
    ASSERT_TRUE(accounts.has_value());
    EXPECT_EQ(accounts->count("A1"), 1u);
    EXPECT_EQ(killed.read(kPaperStoreName), store);
    EXPECT_EQ(killed.read(kLogName), log);
}

TEST_F(StoredAccounts, NobodyKnowsThemIfTheStoreIsEmptyOrGoneAndItsLogIsThere) {
    const CDeskFolder folder;
    EXPECT_TRUE(storedAccounts(folder.path()).value().empty());
    folder.append(kPaperStoreName, "");
    EXPECT_TRUE(storedAccounts(folder.path()).value().empty());
    folder.append(kLogName, "changes");
    EXPECT_FALSE(storedAccounts(folder.path()).has_value());
    EXPECT_EQ(folder.read(kLogName), "changes");
    std::filesystem::remove(folder.file(kPaperStoreName));
    EXPECT_FALSE(storedAccounts(folder.path()).has_value());
    EXPECT_EQ(folder.read(kLogName), "changes");
}
