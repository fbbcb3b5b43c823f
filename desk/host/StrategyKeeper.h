#pragma once

#include "base/KNError.h"
#include "desk/host/TextSink.h"
#include "desk/journal/Journal.h"
#include "records/StrategyParam.h"

#include <functional>
#include <map>
#include <string>

namespace desk {

/// Journals what happens to strategies at run time, and has them saved so that they survive a restart. Main
/// thread.
///
/// What the order service does when it takes the user over is not saved: a strategy that could not be
/// started, or that is over the user's limit, stays in the folder as its owner wrote it.
class CStrategyKeeper {
public:
    /// save: writes the strategies of the folder. configured: the strategies as the folder has them.
    CStrategyKeeper(CJournal& journal, CTextSink& sink, TC::COrderStrategyMap configured,
                    std::function<utils::KNError(const TC::COrderStrategyMap&)> save);

    /// Journals the strategies that run now and takes this as the state to compare with.
    void begin(const TC::COrderStrategyMap& strategies);

    /// Journals and saves what has changed since the last call.
    void update(const TC::COrderStrategyMap& strategies);

private:
    void noteChange(const std::string& action, const TC::COrderStrategyParam& strategy);
    void saveChanges();

    CJournal& m_journal;
    CTextSink& m_sink;
    TC::COrderStrategyMap m_saved;
    std::function<utils::KNError(const TC::COrderStrategyMap&)> m_save;
    std::map<int, std::string> m_known; ///< what each strategy looked like, without its status
    std::map<int, bool> m_running;
    TC::COrderStrategyMap m_last;
    bool m_bUnsaved = false;
};

} // namespace desk
