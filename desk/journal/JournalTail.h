#pragma once

#include "orderservice/base/KNError.h"

#include <cstdint>
#include <string>

namespace desk {

/// The data of earlier records that a journal needs before it continues.
struct CJournalTail {
    std::int64_t m_nLastSeq = 0;         ///< from the last whole record
    std::int64_t m_nLastBrokerEvent = 0; ///< from the last whole `order`, `fill` or `continued` record
    int m_nLastTask = 0;                 ///< from the last whole `command` or `continued` record with a task
    int m_nLastOrder = 0;                ///< the largest number of an order
    int m_nLastFill = 0;                 ///< the largest number of a fill
    bool m_bHalfLine = false;            ///< the file ends within a line
    bool m_bCutOff = false;              ///< there are lines and the last is not a whole `stopped` record
};

/// Reads a journal from its end backwards and skips damaged lines. A record that follows a torn line in the
/// same line is read too. Fails if the file cannot be read.
[[nodiscard]] utils::KNError readJournalTail(const std::string& path, CJournalTail& tail);

} // namespace desk
