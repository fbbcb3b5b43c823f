#pragma once

#include <map>
#include <string>

namespace TC {

/// How often logins failed lately, address by address, and how long the next one must wait for that. An
/// address is the text that groupOf gives. Times are seconds of utils::getTime(). On the listener's thread.
class CFailedLogins {
public:
    static constexpr int kFree = 3;                    ///< so many cost no time
    static constexpr double kFirstDelay = 0.5;         ///< the next one waits so long, in seconds
    static constexpr double kLastDelay = 4;            ///< each further one twice as long, up to this
    static constexpr double kForgetSeconds = 60;       ///< without a failed login the count begins anew
    static constexpr int kMaxDelayed = 20;             ///< connections of one address that may wait at once
    static constexpr std::size_t kMaxAddresses = 1000; ///< remembered at once; the oldest is forgotten first

    /// What counts as one address: all loopback addresses, an IPv6 network of 64 bits, and else the address
    /// itself. Otherwise a guesser could take a new address for each password. `address` as a listener gives
    /// it, without the port; a text that is no address stays as it is.
    static std::string groupOf(const std::string& address);

    /// How long the next login of the address must wait; 0 if it need not.
    double delay(const std::string& address, double now) const;
    void countFailure(const std::string& address, double now);

    bool mayDelay(const std::string& address) const;
    void beginDelay(const std::string& address) { ++m_delayed[address]; }
    void endDelay(const std::string& address);

private:
    struct CFailures {
        int count = 0;
        double last = 0; ///< when the last one was
    };

    void forgetSome(double now);

    std::map<std::string, CFailures> m_failures;
    std::map<std::string, int> m_delayed; ///< connections that wait; no entry if there are none
};

} // namespace TC
