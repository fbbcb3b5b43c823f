#include "desk/market/Market.h"

namespace desk {
namespace {

std::map<std::string, CInstrumentEntry> byName(const std::vector<CInstrumentEntry>& instruments) {
    std::map<std::string, CInstrumentEntry> result;
    for (const CInstrumentEntry& instrument : instruments) {
        for (const std::string& name : instrument.names())
            result.emplace(name, instrument);
    }
    return result;
}

template<typename Map>
auto find(const Map& map, const std::string& key) {
    const auto found = map.find(key);
    return found != map.end() ? std::optional(found->second) : std::nullopt;
}

} // namespace

CMarket::CMarket(const std::vector<CInstrumentEntry>& instruments, const std::vector<CQuoteEntry>& quotes,
                 std::vector<CQuoteChange> changes)
    : m_instruments(byName(instruments)), m_changes(std::move(changes)) {
    for (const CQuoteEntry& quote : quotes)
        m_quotes[quote.stockKey] = quote;
}

std::optional<CInstrumentEntry> CMarket::instrument(const std::string& stockKey) const {
    return find(m_instruments, stockKey);
}

std::string CMarket::keyOf(const std::string& name) const {
    const auto found = m_instruments.find(name);
    return found != m_instruments.end() ? found->second.key() : name;
}

std::optional<CQuoteEntry> CMarket::quote(const std::string& stockKey) const {
    const std::string key = keyOf(stockKey);
    const std::lock_guard lock(m_mutex);
    return find(m_quotes, key);
}

bool CMarket::applyChanges(double secondsSinceStart,
                           const std::function<void(const std::string& stockKey)>& onChange) {
    for (; m_nApplied < m_changes.size(); ++m_nApplied) {
        const CQuoteChange& change = m_changes[m_nApplied];
        if (change.offsetSeconds > secondsSinceStart) return true;
        {
            const std::lock_guard lock(m_mutex);
            m_quotes[change.quote.stockKey] = change.quote;
        }
        onChange(change.quote.stockKey);
    }
    return false;
}

} // namespace desk
