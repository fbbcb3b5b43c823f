#pragma once

#include "desk/market/QuoteSource.h"

#include <cstddef>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace desk {

/// The instruments and quotes of a desk folder, and the changes of quotes over time. Any thread.
class CMarket : public IQuoteSource {
public:
    /// Quotes and changes go by key. changes: by ascending offset.
    CMarket(const std::vector<CInstrumentEntry>& instruments, const std::vector<CQuoteEntry>& quotes,
            std::vector<CQuoteChange> changes);

    std::optional<CInstrumentEntry> instrument(const std::string& stockKey) const override;
    std::optional<CQuoteEntry> quote(const std::string& stockKey) const override;

    /// Puts the quote changes in place that are due by now, in their order, and calls the listener for each
    /// with no lock held. True while more are to come. One thread at a time.
    bool applyChanges(double secondsSinceStart,
                      const std::function<void(const std::string& stockKey)>& onChange);

private:
    mutable std::mutex m_mutex;
    std::string keyOf(const std::string& name) const;

    const std::map<std::string, CInstrumentEntry> m_instruments; ///< by each of their names
    std::map<std::string, CQuoteEntry> m_quotes;                 ///< by key
    const std::vector<CQuoteChange> m_changes;
    std::size_t m_nApplied = 0;
};

} // namespace desk
