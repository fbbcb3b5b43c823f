#pragma once

#include <map>
#include <string>

namespace TC {

/// Counts recent failed logins for each address and gives the delay of the next login from there. An address
/// is the text that groupOf returns. Times are seconds of utils::getTime(). Used on the listener's thread
/// only.
class CFailedLogins {
public:
    static constexpr int kFree = 3;            ///< number of failures before the delays begin
    static constexpr double kFirstDelay = 0.5; ///< first delay, in seconds
    static constexpr double kLastDelay = 4;    ///< in seconds; each delay is twice the one before, up to this
    static constexpr double kForgetSeconds = 60; ///< the count starts again after this time without a failure
    static constexpr int kMaxDelayed = 20; ///< connections of one address that may wait at the same time
    static constexpr std::size_t kMaxAddresses = 1000; ///< remembered; the oldest is forgotten first

    /// Maps an address to its group: all loopback addresses are one group, an IPv6 network of 64 bits is one
    /// group, and any other address is its own group. Without groups, somebody who guesses passwords could
    /// use a new address for each guess. `address` is the listener's text without the port. A text that is
    /// not an address is returned unchanged.
    static std::string groupOf(const std::string& address);

    /// Returns how long the next login of the address must wait, in seconds; 0 if it need not wait.
    double delay(const std::string& address, double now) const;
    void countFailure(const std::string& address, double now);

    bool mayDelay(const std::string& address) const;
    void beginDelay(const std::string& address) { ++m_delayed[address]; }
    void endDelay(const std::string& address);

private:
    struct CFailures {
        int count = 0;
        double last = 0; ///< time of the last failure
    };

    void forgetSome(double now);

    std::map<std::string, CFailures> m_failures;
    std::map<std::string, int> m_delayed; ///< connections that wait; no entry if there are none
};

} // namespace TC
