#include "desk/host/StrategyKeeper.h"

#include "desk/journal/JournalReader.h"
#include "tests/support/Builders.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <fstream>
#include <sstream>

namespace desk {
namespace {

/// A journal in a folder of its own, and what would have been saved.
class StrategyKeeper : public testing::Test {
protected:
    StrategyKeeper() {
        EXPECT_TRUE(journal.open(folder.path()).isSuccess());
        configured.insert(1, CStrategyBuilder().channel(1));
        configured.insert(2, CStrategyBuilder().channel(2).stopped());
        configured.insert(
            9, CStrategyBuilder().channel(9)); // over the user's limit: the order service erased it
        current = configured;
        current.remove(9);
    }

    CStrategyKeeper make() {
        return {journal, sink, configured, [this](const TC::COrderStrategyMap& strategies) {
                    saved.push_back(strategies);
                    return refuseSaving ? utils::KNError(1, "full") : utils::KNError();
                }};
    }

    /// "action channel" of every strategy record.
    std::vector<std::string> records() const {
        std::vector<std::string> result;
        std::ifstream file(folder.path("journal.jsonl"));
        for (std::string line; std::getline(file, line);) {
            const auto record = nlohmann::json::parse(line);
            if (record["kind"] != "strategy") continue;
            result.push_back(record["action"].get<std::string>() + " " + record["channel"].dump());
        }
        return result;
    }

    CTempFolder folder;
    CJournal journal;
    std::ostringstream told;
    CTextSink sink{told};
    TC::COrderStrategyMap configured, current;
    std::vector<TC::COrderStrategyMap> saved;
    bool refuseSaving = false;
};

using Texts = std::vector<std::string>;

TEST_F(StrategyKeeper, BeginningJournalsWhatRunsAndSavesNothing) {
    CStrategyKeeper keeper = make();
    keeper.begin(current);
    keeper.update(current);
    EXPECT_EQ(records(), Texts{"start 1"});
    EXPECT_TRUE(saved.empty());
}

TEST_F(StrategyKeeper, EveryKindOfChangeIsJournalledAndSaved) {
    CStrategyKeeper keeper = make();
    keeper.begin(current);
    current[1].m_nStatus = TC::COrderStrategyParam::kStopped;
    current[2].m_nVolume = 77;
    current[2].m_nStatus = TC::COrderStrategyParam::kRunning;
    current.insert(3, CStrategyBuilder().channel(3).stopped());
    keeper.update(current);
    EXPECT_EQ(records(), (Texts{"start 1", "stop 1", "change 2", "start 2", "add 3"}));
    ASSERT_EQ(saved.size(), 1u);
    EXPECT_EQ(saved[0].keys(), (QList<int>{1, 2, 3, 9}));
    EXPECT_FALSE(saved[0][1].isRunning());
    EXPECT_EQ(saved[0][2].m_nVolume, 77);
    current.remove(1);
    keeper.update(current);
    EXPECT_EQ(records().back(), "remove 1");
    EXPECT_EQ(saved.back().keys(), (QList<int>{2, 3, 9}));
}

TEST_F(StrategyKeeper, StrategyThatCouldNotBeStartedStaysAsItsOwnerWroteIt) {
    CStrategyKeeper keeper = make();
    current[1].m_nStatus = TC::COrderStrategyParam::kStopped;
    keeper.begin(current);
    current.insert(3, CStrategyBuilder().channel(3).stopped());
    keeper.update(current);
    ASSERT_EQ(saved.size(), 1u);
    EXPECT_TRUE(saved[0][1].isRunning());
}

TEST_F(StrategyKeeper, FailedSavingIsToldAndTriedAgain) {
    CStrategyKeeper keeper = make();
    keeper.begin(current);
    current.remove(2);
    refuseSaving = true;
    keeper.update(current);
    EXPECT_EQ(told.str(), "the strategies cannot be saved: full\n");
    refuseSaving = false;
    keeper.update(current);
    keeper.update(current);
    EXPECT_EQ(saved.size(), 2u);
}

} // namespace
} // namespace desk
