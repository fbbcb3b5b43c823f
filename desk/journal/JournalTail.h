#pragma once

#include "base/KNError.h"

#include <cstdint>
#include <string>

namespace desk {

/// What a journal must know of its own past before it goes on.
struct CJournalTail {
    std::int64_t m_nLastSeq = 0;         ///< of the last whole record
    std::int64_t m_nLastBrokerEvent = 0; ///< of the last whole `order`, `fill` or `continued` record
    int m_nLastTask = 0;      ///< of the last whole `command` or `continued` record that has a task
    int m_nLastOrder = 0;     ///< the largest number of an order
    int m_nLastFill = 0;      ///< the largest number of a fill
    bool m_bHalfLine = false; ///< the file ends within a line
    bool m_bCutOff = false;   ///< there are lines, and the last one is not a whole `stopped` record
};

/// Reads the tail of a journal from its end backwards, passing over damaged lines. A record behind a
/// torn line in the same line counts. Fails where the file cannot be read.
[[nodiscard]] utils::KNError readJournalTail(const std::string& path, CJournalTail& tail);

} // namespace desk
