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
    /// Quotes and changes name instruments by key. `changes` must be sorted by ascending offset.
    CMarket(const std::vector<CInstrumentEntry>& instruments, const std::vector<CQuoteEntry>& quotes,
            std::vector<CQuoteChange> changes);

    std::optional<CInstrumentEntry> instrument(const std::string& stockKey) const override;
    std::optional<CQuoteEntry> quote(const std::string& stockKey) const override;

    /// Applies the quote changes that are due, in their order, and calls `onChange` for each without holding
    /// a lock. Returns true if more changes will come. One thread at a time.
    bool applyChanges(double secondsSinceStart,
                      const std::function<void(const std::string& stockKey)>& onChange);

private:
    mutable std::mutex m_mutex;
    std::string keyOf(const std::string& name) const;

    const std::map<std::string, CInstrumentEntry>
        m_instruments;                           ///< by key and, for derivatives, by plain code
    std::map<std::string, CQuoteEntry> m_quotes; ///< by key
    const std::vector<CQuoteChange> m_changes;
    std::size_t m_nApplied = 0;
};

} // namespace desk
