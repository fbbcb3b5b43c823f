#pragma once

#include <utility>

namespace utils {

/// Lets only the first events of each second pass, and counts the others. So a flood of events does not fill
/// a screen or a file. The owner begins each second itself, because it may have to report the other events of
/// the second before. Not thread-safe.
class CSecondLimit {
public:
    /// `most`: number of events that pass in a second.
    explicit CSecondLimit(int most) : m_nMost(most) {}

    /// Whether the current second is over. `now` is in seconds, see utils::getTime(). True before the first
    /// second.
    bool isOver(double now) const { return now >= m_dEnd; }

    /// Begins a new second at `now`. The count of left-out events stays.
    void begin(double now) {
        m_dEnd = now + 1;
        m_nPassed = 0;
    }

    /// Counts one event. Returns whether it passes.
    bool pass() {
        if (m_nPassed == m_nMost) {
            ++m_nLeftOut;
            return false;
        }
        ++m_nPassed;
        return true;
    }

    /// Returns the number of events that did not pass, and sets it to 0.
    int takeLeftOut() { return std::exchange(m_nLeftOut, 0); }

private:
    int m_nMost;
    double m_dEnd = 0;
    int m_nPassed = 0;
    int m_nLeftOut = 0;
};

} // namespace utils
