#pragma once

#include "desk/config/StrategyStore.h"
#include "desk/host/TextSink.h"
#include "desk/journal/Journal.h"
#include "orderservice/gates/StrategyRegistry.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace desk {

/// Journals the changes of strategies at run time and saves the strategies, so that they survive a restart.
/// Main thread.
///
/// Changes that the order service makes at the start are not saved. So a strategy that could not be started,
/// or that exceeds the user's limit, stays in the store as its owner wrote it. If the store cannot hold a
/// strategy completely, the strategy is refused: this is journalled and shown to the user. The store then
/// keeps its older record of the strategy, marked as stopped.
class CStrategyKeeper {
public:
    /// `configured` are the strategies in the store. Journal, sink and store must outlive the keeper.
    CStrategyKeeper(CJournal& journal, CTextSink& sink, TC::COrderStrategyMap configured,
                    const IStrategyStore& store);

    /// Journals the strategies that run now. update later compares with this state.
    void begin(TC::IStrategyRegistry& registry);

    /// Journals and saves what has changed since the last call. If the registry's revision is still the same,
    /// it does not lock the registry, so it does not wait for the order doors.
    void update(TC::IStrategyRegistry& registry);

private:
    struct CChange {
        const char* m_pszAction;
        TC::COrderStrategyParam m_strategy;
    };

    void noteChanges(TC::IStrategyRegistry& registry);
    std::vector<CChange> findChanges(TC::IStrategyRegistry& registry) const;
    void note(const CChange& change);
    void keepPending();
    void refuse(const TC::COrderStrategyParam& strategy, const std::string& reason,
                TC::COrderStrategyMap& kept);
    void save();

    CJournal& m_journal;
    CTextSink& m_sink;
    const IStrategyStore& m_store;
    TC::COrderStrategyMap m_saved;        ///< content of the store after the next save
    TC::COrderStrategyMap m_known;        ///< the registry at the last comparison
    std::uint64_t m_nSeen = 0;            ///< the registry's revision before the last comparison
    TC::COrderStrategyMap m_pending;      ///< changed, but not in m_saved yet: new and refused ones
    std::map<int, std::string> m_refused; ///< reasons that were reported to the user
    std::string m_strReportedFailure;
    bool m_bUnsaved = false;
};

} // namespace desk
