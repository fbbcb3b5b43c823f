#pragma once

#include "desk/journal/Json.h"

#include <cstdint>
#include <optional>
#include <string>

namespace desk {

/// The numbers of a record that later starts must not give out again.
struct CJournalNumbers {
    std::optional<std::int64_t> m_event;
    std::optional<int> m_task;
    std::optional<int> m_order;
    std::optional<int> m_fill;
};

/// One record, ready to be written.
struct CJournalRecord {
    std::string m_strKind;
    /// The event's own keys as JSON text without the braces, such as `"text":"hello","level":1`.
    std::string m_strFields;
    CJournalNumbers m_numbers;
};

/// A record with the keys of the object. Bytes that are not UTF-8 become U+FFFD, so that a bad text never
/// causes the loss of a record.
CJournalRecord makeRecord(const std::string& kind, const CJson& fields);

} // namespace desk
