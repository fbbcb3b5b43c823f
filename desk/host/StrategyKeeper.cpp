#include "desk/host/StrategyKeeper.h"

#include "desk/config/StrategyCompare.h"
#include "desk/journal/JournalEvents.h"

#include <nlohmann/json.hpp>

#include <set>
#include <utility>

namespace desk {

CStrategyKeeper::CStrategyKeeper(CJournal& journal, CTextSink& sink, TC::COrderStrategyMap configured,
                                 const IStrategyStore& store)
    : m_journal(journal), m_sink(sink), m_store(store), m_saved(std::move(configured)) {}

void CStrategyKeeper::begin(TC::IStrategyRegistry& registry) {
    m_nSeen = registry.revision(); // before the strategies are read: a change during the reading is seen next
    registry.visitStrategies(
        [this](int channel, const TC::COrderStrategyParam& strategy) { m_known.insert(channel, strategy); });
    for (const TC::COrderStrategyParam& strategy : qAsConst(m_known)) {
        // CJournalGuard handles a failed journal.
        if (strategy.isRunning()) (void)m_journal.append("strategy", strategyFields("start", strategy));
    }
}

void CStrategyKeeper::update(TC::IStrategyRegistry& registry) {
    const std::uint64_t revision = registry.revision(); // before the strategies are read, as in begin
    if (revision != m_nSeen) noteChanges(registry);
    m_nSeen = revision;
    if (m_bUnsaved) save();
}

void CStrategyKeeper::noteChanges(TC::IStrategyRegistry& registry) {
    const std::vector<CChange> changes = findChanges(registry);
    for (const CChange& change : changes)
        note(change);
    if (!changes.empty()) keepPending();
}

/// Compares the strategies in place and copies only the changed ones, because the order doors wait meanwhile.
std::vector<CStrategyKeeper::CChange> CStrategyKeeper::findChanges(TC::IStrategyRegistry& registry) const {
    std::vector<CChange> changes;
    std::set<int> seen;
    registry.visitStrategies([&](int channel, const TC::COrderStrategyParam& strategy) {
        seen.insert(channel);
        const auto known = m_known.constFind(channel);
        const bool isNew = known == m_known.constEnd();
        if (isNew || firstDifference(*known, strategy) != nullptr)
            changes.push_back({isNew ? "add" : "change", strategy});
        if ((!isNew && known->isRunning()) != strategy.isRunning())
            changes.push_back({strategy.isRunning() ? "start" : "stop", strategy});
    });
    for (const TC::COrderStrategyParam& known : m_known) {
        if (seen.count(known.m_nChannel) == 0) changes.push_back({"remove", known});
    }
    return changes;
}

void CStrategyKeeper::note(const CChange& change) {
    const int channel = change.m_strategy.m_nChannel;
    (void)m_journal.append("strategy", strategyFields(change.m_pszAction, change.m_strategy));
    m_bUnsaved = true;
    if (change.m_pszAction != std::string("remove")) {
        m_known.insert(channel, change.m_strategy);
        m_pending.insert(channel, change.m_strategy);
        return;
    }
    m_known.remove(channel);
    m_saved.remove(channel);
    m_pending.remove(channel);
    m_refused.erase(channel);
}

/// Moves all changed strategies to m_saved in one step, because two of them may have swapped values that must
/// be unique, such as a file path.
void CStrategyKeeper::keepPending() {
    TC::COrderStrategyMap kept = m_saved;
    for (const TC::COrderStrategyParam& strategy : qAsConst(m_pending))
        kept.remove(strategy.m_nChannel);
    TC::COrderStrategyMap refused;
    for (const TC::COrderStrategyParam& strategy : qAsConst(m_pending)) {
        const std::string reason = m_store.whyNotKept(strategy, kept);
        if (reason.empty()) {
            kept.insert(strategy.m_nChannel, strategy);
            m_refused.erase(strategy.m_nChannel);
        } else {
            refused.insert(strategy.m_nChannel, strategy);
            refuse(strategy, reason, kept);
        }
    }
    m_pending = refused;
    m_saved = kept;
}

/// The store keeps its older record of the strategy, but stopped. If that record started automatically, it
/// would trade with settings that its owner has changed since.
void CStrategyKeeper::refuse(const TC::COrderStrategyParam& strategy, const std::string& reason,
                             TC::COrderStrategyMap& kept) {
    const int channel = strategy.m_nChannel;
    TC::COrderStrategyParam before = m_saved.value(channel);
    before.m_nStatus = TC::COrderStrategyParam::kStopped;
    if (m_saved.contains(channel) && m_store.whyNotKept(before, kept).empty()) kept.insert(channel, before);
    if (m_refused[channel] == reason) return;
    m_refused[channel] = reason;
    CJson fields = strategyFields("not_saved", strategy);
    fields["cause"] = reason;
    (void)m_journal.append("strategy", fields);
    m_sink.writeLine("strategy " + std::to_string(channel) + " is not saved as it is: " + reason,
                     ESeverity::Warning);
}

void CStrategyKeeper::save() {
    const utils::KNError saved = m_store.save(m_saved);
    m_bUnsaved = !saved.isSuccess();
    const std::string failure = saved.isSuccess() ? std::string() : saved.errorMsg();
    if (!failure.empty() && failure != m_strReportedFailure)
        m_sink.writeLine("the strategies cannot be saved: " + failure, ESeverity::Warning);
    m_strReportedFailure = failure;
}

} // namespace desk
