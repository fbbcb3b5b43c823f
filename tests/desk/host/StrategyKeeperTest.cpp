#include "desk/host/StrategyKeeper.h"

#include "desk/journal/JournalReader.h"
#include "tests/support/Builders.h"
#include "tests/support/TempFolder.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <fstream>
#include <sstream>

namespace desk {
namespace {

/// The registry as a plain map. Other tests test the service's own registry.
class CMapRegistry final : public TC::IStrategyRegistry {
public:
    void visitStrategies(const std::function<void(int, const TC::COrderStrategyParam&)>& visit) override {
        ++m_nVisits;
        for (auto it = m_strategies.cbegin(); it != m_strategies.cend(); ++it)
            visit(it.key(), it.value());
        if (m_onVisited) m_onVisited();
    }
    TC::COrderStrategyPtr strategyOf(int channel) override {
        const auto found = m_strategies.constFind(channel);
        return found != m_strategies.cend() ? std::make_shared<const TC::COrderStrategyParam>(*found)
                                            : nullptr;
    }
    std::uint64_t revision() const override { return m_nRevision; }

    TC::COrderStrategyMap m_strategies;
    std::uint64_t m_nRevision = 5; ///< the tests count it up with each change
    int m_nVisits = 0;
    std::function<void()> m_onVisited;
};

/// Remembers what it received. It refuses two strategies with the same source.
class CMemoryStore : public IStrategyStore {
public:
    std::string whyNotKept(const TC::COrderStrategyParam& strategy,
                           const TC::COrderStrategyMap& others) const override {
        if (strategy.m_algoSetting != nullptr) return "algorithm";
        for (const TC::COrderStrategyParam& other : others) {
            if (other.m_strSignalSource == strategy.m_strSignalSource) return "path";
        }
        return "";
    }
    utils::KNError save(const TC::COrderStrategyMap& strategies) const override {
        m_saved.push_back(strategies);
        return m_bRefuses ? utils::KNError(1, "full") : utils::KNError();
    }

    mutable std::vector<TC::COrderStrategyMap> m_saved;
    bool m_bRefuses = false;
};

/// A journal in its own folder, and a store that records what is saved.
class StrategyKeeper : public testing::Test {
protected:
    StrategyKeeper() {
        EXPECT_TRUE(journal.open(folder.path()).isSuccess());
        configured.insert(1, CStrategyBuilder().channel(1).file("1"));
        configured.insert(2, CStrategyBuilder().channel(2).file("2").stopped());
        // Above the user's limit, so the order service has removed it.
        configured.insert(9, CStrategyBuilder().channel(9).file("9"));
        current() = configured;
        current().remove(9);
    }

    /// The strategies of the registry, for a change.
    TC::COrderStrategyMap& current() {
        ++registry.m_nRevision;
        return registry.m_strategies;
    }

    CStrategyKeeper make() { return {journal, sink, configured, store}; }

    /// "action channel" for every strategy record.
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
    std::ostringstream shown;
    CTextSink sink{shown};
    TC::COrderStrategyMap configured;
    CMapRegistry registry;
    CMemoryStore store;
    std::vector<TC::COrderStrategyMap>& saved = store.m_saved;
};

using Texts = std::vector<std::string>;

TEST_F(StrategyKeeper, BeginningJournalsWhatRunsAndSavesNothing) {
    CStrategyKeeper keeper = make();
    keeper.begin(registry);
    keeper.update(registry);
    EXPECT_EQ(records(), Texts{"start 1"});
    EXPECT_TRUE(saved.empty());
}

TEST_F(StrategyKeeper, EveryKindOfChangeIsJournalledAndSaved) {
    CStrategyKeeper keeper = make();
    keeper.begin(registry);
    current()[1].m_nStatus = TC::COrderStrategyParam::kStopped;
    current()[2].m_nVolume = 77;
    current()[2].m_nStatus = TC::COrderStrategyParam::kRunning;
    current().insert(3, CStrategyBuilder().channel(3).file("3").stopped());
    keeper.update(registry);
    EXPECT_EQ(records(), (Texts{"start 1", "stop 1", "change 2", "start 2", "add 3"}));
    ASSERT_EQ(saved.size(), 1u);
    EXPECT_EQ(saved[0].keys(), (QList<int>{1, 2, 3, 9}));
    EXPECT_FALSE(saved[0][1].isRunning());
    EXPECT_EQ(saved[0][2].m_nVolume, 77);
    current().remove(1);
    keeper.update(registry);
    EXPECT_EQ(records().back(), "remove 1");
    EXPECT_EQ(saved.back().keys(), (QList<int>{2, 3, 9}));
}

TEST_F(StrategyKeeper, StrategyThatCouldNotBeStartedStaysAsItsOwnerWroteIt) {
    CStrategyKeeper keeper = make();
    current()[1].m_nStatus = TC::COrderStrategyParam::kStopped;
    keeper.begin(registry);
    current().insert(3, CStrategyBuilder().channel(3).file("3").stopped());
    keeper.update(registry);
    ASSERT_EQ(saved.size(), 1u);
    EXPECT_TRUE(saved[0][1].isRunning());
}

TEST_F(StrategyKeeper, FailedSavingIsReportedOnceAndTriedAgain) {
    CStrategyKeeper keeper = make();
    keeper.begin(registry);
    current().remove(2);
    store.m_bRefuses = true;
    keeper.update(registry);
    keeper.update(registry);
    EXPECT_EQ(shown.str(), "the strategies cannot be saved: full\n");
    store.m_bRefuses = false;
    keeper.update(registry);
    keeper.update(registry);
    EXPECT_EQ(saved.size(), 3u);
}

TEST_F(StrategyKeeper, StrategyThatCannotBeKeptIsReportedOnceAndStaysStopped) {
    CStrategyKeeper keeper = make();
    keeper.begin(registry);
    current()[1].m_algoSetting = boost::make_shared<TC::CAlgorithmOrderSetting>();
    keeper.update(registry);
    current()[2].m_nVolume = 77;
    keeper.update(registry);
    EXPECT_EQ(records(), (Texts{"start 1", "change 1", "not_saved 1", "change 2"}));
    EXPECT_EQ(shown.str(), "strategy 1 is not saved as it is: algorithm\n");
    EXPECT_EQ(saved.back()[1].m_algoSetting, nullptr);
    EXPECT_FALSE(saved.back()[1].isRunning());
    EXPECT_EQ(saved.back()[2].m_nVolume, 77);
    current()[1].m_algoSetting = nullptr;
    keeper.update(registry);
    EXPECT_TRUE(saved.back()[1].isRunning());
}

TEST_F(StrategyKeeper, StrategiesThatChangePlacesAreBothKept) {
    CStrategyKeeper keeper = make();
    keeper.begin(registry);
    std::swap(current()[1].m_strSignalSource, current()[2].m_strSignalSource);
    keeper.update(registry);
    EXPECT_EQ(shown.str(), "");
    EXPECT_EQ(saved.back()[1].m_strSignalSource, QStringLiteral("2"));
    EXPECT_EQ(saved.back()[2].m_strSignalSource, QStringLiteral("1"));
}

TEST_F(StrategyKeeper, UnchangedRegistryIsNotReadAgain) {
    CStrategyKeeper keeper = make();
    keeper.begin(registry);
    EXPECT_EQ(registry.m_nVisits, 1);
    keeper.update(registry);
    keeper.update(registry);
    EXPECT_EQ(registry.m_nVisits, 1);
    current()[2].m_nVolume = 77;
    store.m_bRefuses = true;
    keeper.update(registry);
    EXPECT_EQ(registry.m_nVisits, 2);
    keeper.update(registry); // saves again what could not be saved
    EXPECT_EQ(registry.m_nVisits, 2);
    EXPECT_EQ(saved.size(), 2u);
}

/// The change comes after the strategies were read, so only the next update can see it.
TEST_F(StrategyKeeper, ChangeDuringTheReadingIsSeenAtTheNextUpdate) {
    CStrategyKeeper keeper = make();
    registry.m_onVisited = [this] {
        registry.m_onVisited = nullptr;
        current()[2].m_nVolume = 77;
    };
    keeper.begin(registry);
    registry.m_onVisited = [this] {
        registry.m_onVisited = nullptr;
        current()[2].m_nVolume = 78;
    };
    keeper.update(registry);
    keeper.update(registry);
    EXPECT_EQ(records(), (Texts{"start 1", "change 2", "change 2"}));
    ASSERT_FALSE(saved.empty());
    EXPECT_EQ(saved.back()[2].m_nVolume, 78);
}

} // namespace
} // namespace desk
