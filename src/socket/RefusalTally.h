#pragma once

#include "orderservice/base/SecondLimit.h"

#include <mutex>
#include <optional>

namespace TC {

/// Decides which refused connections are reported one by one. Above a limit per second they are only counted,
/// so that they cannot fill the host's records. Thread-safe.
class CRefusalTally {
public:
    static constexpr int kReportsPerSecond = 10;

    /// Counts one refusal. If it must be reported, returns how many unreported refusals were counted before
    /// it. Otherwise returns nothing. `now` is utils::getTime().
    std::optional<int> count(double now);

    /// Returns how many refusals were counted and not reported, and sets that count to 0.
    int takeNotReported();

private:
    std::mutex m_mutex;
    utils::CSecondLimit m_limit{kReportsPerSecond};
};

} // namespace TC
