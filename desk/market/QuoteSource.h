#pragma once

#include "desk/config/DeskConfig.h"

#include <functional>
#include <optional>
#include <string>

namespace desk {

/// Where the paper broker learns instruments and quotes. Any thread. A derivative is found by its plain code
/// as well as by its key.
class IQuoteSource {
public:
    virtual ~IQuoteSource() = default;

    /// The instrument, or empty where the key is unknown.
    virtual std::optional<CInstrumentEntry> instrument(const std::string& stockKey) const = 0;
    /// The latest quote, or empty while there is none.
    virtual std::optional<CQuoteEntry> quote(const std::string& stockKey) const = 0;
};

} // namespace desk
