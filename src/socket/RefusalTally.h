#pragma once

#include <mutex>
#include <optional>

namespace TC {

/// Decides which refused connections are told one by one: a crowd of them must not fill the records of a
/// host. Beyond some in a second they are only counted. Any thread.
class CRefusalTally {
public:
    static constexpr int kToldPerSecond = 10;

    /// Counts one refusal. Gives how many were only counted before it where this one is to be told, and
    /// nothing where it is only counted itself. `now` as utils::getTime() gives it.
    std::optional<int> count(double now);

    /// How many were only counted and have been told by nobody; from then on they count as told.
    int takeUntold();

private:
    std::mutex m_mutex;
    double m_dSecond = 0; ///< when the second began in which refusals are told
    int m_nTold = 0;      ///< in that second
    int m_nUntold = 0;
};

} // namespace TC
