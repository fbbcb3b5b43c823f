#include "desk/config/OrderPaths.h"
#include "desk/config/StrategyFile.h"
#include "tests/desk/config/ConfigFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace desk {
namespace {

namespace fs = std::filesystem;

class OrderPaths : public testing::Test {
protected:
    std::string refusal(const std::string& name) const {
        const fs::path folder = fs::canonical(m_folder.path());
        return whyNoOrderPath(folder, (folder / name).lexically_normal().string(), name);
    }
    fs::path place(const std::string& name) const { return m_folder.files().path(name); }

    /// The mistakes that the folder's check reports if channel 1 has this path.
    std::vector<std::string> mistakesAt(const std::string& path) const {
        m_folder.replace("strategies.toml", "orders/one.txt", path);
        return m_folder.mistakes();
    }

    const test::CConfigFolder m_folder;
};

TEST_F(OrderPaths, OrdinaryPlacesAreTaken) {
    for (const char* name : {"orders/a.txt", "a.txt", "desk.toml.bak", "mine.csv", "rejected.txt", "journal"})
        EXPECT_EQ(refusal(name), "") << name;
    EXPECT_EQ(refusal("/somewhere/else/a.txt"), "");
}

TEST_F(OrderPaths, TheDesksOwnFilesAreRefusedAlsoThoseThatAreNotThereYet) {
    for (const char* name :
         {"desk.toml", "strategies.toml", "strategies.toml.new", "settings.xml", "settings.xml.new",
          "instruments.csv", "quotes.csv", "quote_changes.csv", "positions.csv", "journal.jsonl", "paper.db",
          "paper.db-wal", "paper.db-shm", "paper.db-journal", ".lock", "control.sock", "control.sock.new"}) {
        EXPECT_EQ(refusal(name), "path \"" + std::string(name) + "\" is the desk's own " + name +
                                     ", which the strategy would delete");
        EXPECT_NE(refusal("orders/../" + std::string(name)), "") << name;
    }
}

TEST_F(OrderPaths, AFolderAndThePlaceOfRefusedFilesAreRefused) {
    fs::create_directories(place("orders/sub"));
    fs::create_directories(place("orders/b.txt.tmp"));
    for (const char* name : {".", "orders", "orders/", "orders/sub", "new/"})
        EXPECT_EQ(refusal(name),
                  "path \"" + std::string(name) + "\" is a folder; expected a place for an order file");
    EXPECT_EQ(refusal("orders/b.txt"),
              "path \"orders/b.txt\" with \".tmp\" is a folder; expected a place for an order file");
    EXPECT_EQ(refusal("rejected/a.txt"),
              "path \"rejected/a.txt\" is in rejected/, where the desk keeps refused order files");
    EXPECT_NE(refusal("rejected"), "");
}

TEST_F(OrderPaths, AZeroByteIsRefused) {
    EXPECT_EQ(refusal(std::string("desk.toml\0.txt", 14)),
              "path contains a zero byte; expected the name of an order file");
}

TEST_F(OrderPaths, LinksToTheDesksOwnFilesAreRefused) {
    const std::string own = " is the desk's own desk.toml, which the strategy would delete";
    fs::create_symlink("desk.toml", place("soft.txt"));
    fs::create_symlink("soft.txt", place("softer.txt"));
    fs::create_hard_link(place("desk.toml"), place("hard.txt"));
    fs::create_symlink(".", place("round"));
    fs::create_symlink("desk.toml", place("taken.txt.tmp"));
    for (const char* name : {"soft.txt", "softer.txt", "hard.txt", "round/desk.toml"})
        EXPECT_EQ(refusal(name), "path \"" + std::string(name) + "\"" + own);
    EXPECT_EQ(refusal("taken.txt"), "path \"taken.txt\" with \".tmp\"" + own);
    fs::create_symlink("paper.db", place("later.txt"));
    EXPECT_EQ(refusal("later.txt"),
              "path \"later.txt\" is the desk's own paper.db, which the strategy would delete")
        << "a link to a file that is not there yet";
    fs::create_symlink("nowhere.txt", place("loose.txt"));
    EXPECT_EQ(refusal("loose.txt"), "");
}

TEST_F(OrderPaths, ALinkInACircleIsNoEndlessSearch) {
    fs::create_symlink("b.txt", place("a.txt"));
    fs::create_symlink("a.txt", place("b.txt"));
    EXPECT_EQ(refusal("a.txt"), "");
}

TEST_F(OrderPaths, TwoStrategiesMustNotMeet) {
    fs::create_directories(place("orders"));
    TC::COrderStrategyParam other;
    other.m_nChannel = 7;
    other.m_eStrategyType = TC::EOrderStrategyType::File;
    other.m_strSignalSource = QString::fromStdString(place("orders/x").string());
    const auto meeting = [&](const std::string& name) {
        return whyPathsMeet(place(name).string(), name, other);
    };
    EXPECT_EQ(meeting("orders/y"), "");
    EXPECT_EQ(meeting("orders/x"), "path \"orders/x\" is the path of channel 7 too");
    const std::string meets = "\" and the path of channel 7 are the same if \".tmp\" is added to one of "
                              "them; each strategy would delete the other's files";
    EXPECT_EQ(meeting("orders/x.tmp"), "path \"orders/x.tmp" + meets);
    other.m_strSignalSource += ".tmp";
    EXPECT_EQ(meeting("orders/x"), "path \"orders/x" + meets);

    fs::create_symlink("x.tmp", place("orders/soft"));
    EXPECT_EQ(meeting("orders/soft"), "path \"orders/soft\" is the path of channel 7 too");
    m_folder.files().write("orders/x.tmp", "");
    fs::create_hard_link(place("orders/x.tmp"), place("orders/hard"));
    EXPECT_EQ(meeting("orders/hard"), "path \"orders/hard\" is the path of channel 7 too");
    other.m_eStrategyType = TC::EOrderStrategyType::Signal;
    EXPECT_EQ(meeting("orders/hard"), "") << "an address is no file";
}

TEST_F(OrderPaths, CheckNamesTheLineOfThePath) {
    fs::create_symlink("desk.toml", place("soft.txt"));
    EXPECT_EQ(mistakesAt("soft.txt"),
              std::vector<std::string>{"strategies.toml:5: strategy: path \"soft.txt\" is the desk's own "
                                       "desk.toml, which the strategy would delete"});
}

TEST_F(OrderPaths, CheckRefusesPathsThatMeet) {
    EXPECT_EQ(mistakesAt("orders/two.txt.tmp"),
              std::vector<std::string>{
                  "strategies.toml:13: strategy: path \"orders/two.txt\" and the path of channel 1 are the "
                  "same if \".tmp\" is added to one of them; each strategy would delete the other's files"});
}

TEST_F(OrderPaths, WhatMayNotBeStartedAtRunTime) {
    const CLoadedConfig loaded = m_folder.load();
    const CStrategyFile file(m_folder.path(), loaded.config);
    TC::COrderStrategyParam strategy = loaded.config.strategies.value(1);
    EXPECT_EQ(file.whyRefused(strategy, loaded.config.strategies), "");
    const auto refusalOf = [&](const auto& change) {
        TC::COrderStrategyParam changed = strategy;
        change(changed);
        return file.whyRefused(changed, loaded.config.strategies);
    };
    using P = TC::COrderStrategyParam;
    EXPECT_EQ(refusalOf([](P& s) { s.m_strCode = QStringLiteral("600000"); }),
              "code \"600000\" has no market; expected \"SH600000\"");
    EXPECT_NE(refusalOf([](P& s) { s.m_strCode = QStringLiteral("999999"); }).find("is unknown"),
              std::string::npos);
    EXPECT_NE(refusalOf([&](P& s) {
                  s.m_strSignalSource = QString::fromStdString(m_folder.path() + "/desk.toml");
              }).find("is the desk's own desk.toml"),
              std::string::npos);
    EXPECT_NE(refusalOf([&](P& s) {
                  s.m_strSignalSource = QString::fromStdString(m_folder.path() + "/orders/two.txt");
              }).find("is the path of channel 2 too"),
              std::string::npos);
    const auto listen = [&](const char* address) {
        return refusalOf([&](P& s) {
            s.m_eStrategyType = TC::EOrderStrategyType::Signal;
            s.m_strSignalSource = QString::fromUtf8(address);
            s.m_strUser = s.m_strPass = QStringLiteral("x");
        });
    };
    EXPECT_EQ(listen("127.0.0.1:9000"), "");
    EXPECT_EQ(listen("127.0.0.1:74536"),
              "path \"127.0.0.1:74536\" is not an address; expected \"ip:port\" with a port of 1 to 65535");
    EXPECT_NE(listen("0.0.0.0:9000").find("is open to other machines"), std::string::npos);
}

TEST(ForeignPath, HasADriveOrABackslash) {
    EXPECT_TRUE(isForeignPath("C:\\orders\\a.txt"));
    EXPECT_TRUE(isForeignPath("d:/orders/a.txt"));
    EXPECT_TRUE(isForeignPath("orders\\a.txt"));
    EXPECT_FALSE(isForeignPath("orders/a.txt"));
    EXPECT_FALSE(isForeignPath("a"));
}

} // namespace
} // namespace desk
