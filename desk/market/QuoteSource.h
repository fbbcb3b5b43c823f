#pragma once

#include "desk/config/DeskConfig.h"

#include <functional>
#include <optional>
#include <string>

namespace desk {

/// The source of instruments and quotes for the paper broker. Any thread. A derivative is found by its plain
/// code and by its key.
class IQuoteSource {
public:
    virtual ~IQuoteSource() = default;

    /// The instrument, or empty if the key is unknown.
    virtual std::optional<CInstrumentEntry> instrument(const std::string& stockKey) const = 0;
    /// The latest quote. Empty until the first quote arrives.
    virtual std::optional<CQuoteEntry> quote(const std::string& stockKey) const = 0;
};

} // namespace desk
