#include "desk/host/StrategyKeeper.h"

#include "desk/journal/JournalEvents.h"

#include <nlohmann/json.hpp>

namespace desk {
namespace {

/// A text that is the same exactly for strategies with the same settings, running or not.
std::string settingsOf(const TC::COrderStrategyParam& strategy) {
    TC::COrderStrategyParam stopped = strategy;
    stopped.m_nStatus = TC::COrderStrategyParam::kStopped;
    return strategyFields("", stopped).dump() + stopped.m_strPass.toStdString();
}

} // namespace

CStrategyKeeper::CStrategyKeeper(CJournal& journal, CTextSink& sink, TC::COrderStrategyMap configured,
                                 std::function<utils::KNError(const TC::COrderStrategyMap&)> save)
    : m_journal(journal), m_sink(sink), m_saved(std::move(configured)), m_save(std::move(save)) {}

void CStrategyKeeper::begin(const TC::COrderStrategyMap& strategies) {
    for (auto it = strategies.cbegin(); it != strategies.cend(); ++it) {
        m_known[it.key()] = settingsOf(it.value());
        m_running[it.key()] = it->isRunning();
        // A refusal of the journal is its guard's business.
        if (it->isRunning()) (void)m_journal.append("strategy", strategyFields("start", it.value()));
    }
    m_last = strategies;
}

void CStrategyKeeper::update(const TC::COrderStrategyMap& strategies) {
    for (auto it = strategies.cbegin(); it != strategies.cend(); ++it) {
        const std::string settings = settingsOf(it.value());
        const auto known = m_known.find(it.key());
        if (known == m_known.end()) {
            noteChange("add", it.value());
        } else if (known->second != settings) {
            noteChange("change", it.value());
        }
        m_known[it.key()] = settings;
        if (m_running[it.key()] == it->isRunning()) continue;
        m_running[it.key()] = it->isRunning();
        noteChange(it->isRunning() ? "start" : "stop", it.value());
    }
    for (auto it = m_last.cbegin(); it != m_last.cend(); ++it) {
        if (strategies.contains(it.key())) continue;
        noteChange("remove", it.value());
        m_saved.remove(it.key());
        m_known.erase(it.key());
        m_running.erase(it.key());
    }
    m_last = strategies;
    saveChanges();
}

void CStrategyKeeper::noteChange(const std::string& action, const TC::COrderStrategyParam& strategy) {
    (void)m_journal.append("strategy", strategyFields(action, strategy));
    m_saved.insert(strategy.m_nChannel, strategy);
    m_bUnsaved = true;
}

void CStrategyKeeper::saveChanges() {
    if (!m_bUnsaved) return;
    const utils::KNError saved = m_save(m_saved);
    if (!saved.isSuccess()) m_sink.writeLine("the strategies cannot be saved: " + saved.errorMsg());
    m_bUnsaved = !saved.isSuccess();
}

} // namespace desk
