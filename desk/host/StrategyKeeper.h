#pragma once

#include "desk/config/StrategyStore.h"
#include "desk/host/TextSink.h"
#include "desk/journal/Journal.h"
#include "gates/StrategyRegistry.h"

#include <map>
#include <string>
#include <vector>

namespace desk {

/// Journals what happens to strategies at run time, and has them kept so that they survive a restart. Main
/// thread.
///
/// What the order service does when it takes the user over is not saved: a strategy that could not be
/// started, or that is over the user's limit, stays in the store as its owner wrote it. A strategy that the
/// store cannot hold whole is refused, journalled and told; the store goes on with what it had of it,
/// stopped.
class CStrategyKeeper {
public:
    /// configured: the strategies as the store has them. Journal, sink and store outlive the keeper.
    CStrategyKeeper(CJournal& journal, CTextSink& sink, TC::COrderStrategyMap configured,
                    const IStrategyStore& store);

    /// Journals the strategies that run now and takes this as the state to compare with.
    void begin(TC::IStrategyRegistry& registry);

    /// Journals and saves what has changed since the last call.
    void update(TC::IStrategyRegistry& registry);

private:
    struct CChange {
        const char* m_pszAction;
        TC::COrderStrategyParam m_strategy;
    };

    std::vector<CChange> findChanges(TC::IStrategyRegistry& registry) const;
    void note(const CChange& change);
    void keepPending();
    void refuse(const TC::COrderStrategyParam& strategy, const std::string& reason,
                TC::COrderStrategyMap& kept);
    void save();

    CJournal& m_journal;
    CTextSink& m_sink;
    const IStrategyStore& m_store;
    TC::COrderStrategyMap m_saved;   ///< what the store has, or gets with the next save
    TC::COrderStrategyMap m_known;   ///< the registry at the last look
    TC::COrderStrategyMap m_pending; ///< changed and not taken over into m_saved: new ones, and refused ones
    std::map<int, std::string> m_refused; ///< the reasons that were told
    std::string m_strToldFailure;
    bool m_bUnsaved = false;
};

} // namespace desk
