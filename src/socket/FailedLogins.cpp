#include "orderservice/socket/FailedLogins.h"

#include "orderservice/base/Address.h"

#include <boost/asio/ip/address.hpp>

#include <algorithm>
#include <cmath>

namespace TC {
namespace {

namespace ip = boost::asio::ip;

constexpr const char* kLoopback = "loopback";

std::string networkOf(ip::address_v6 address) {
    ip::address_v6::bytes_type bytes = address.to_bytes();
    std::fill(bytes.begin() + bytes.size() / 2, bytes.end(), 0);
    return ip::address_v6(bytes).to_string() + "/64";
}

} // namespace

std::string CFailedLogins::groupOf(const std::string& address) {
    if (utils::isLoopbackAddress(address)) return kLoopback;
    boost::system::error_code error;
    const ip::address parsed = ip::make_address(address, error);
    if (error) return address;
    const bool isMapped = parsed.is_v6() && parsed.to_v6().is_v4_mapped();
    if (parsed.is_v4() || isMapped) {
        const ip::address_v4 v4 =
            isMapped ? ip::make_address_v4(ip::v4_mapped, parsed.to_v6()) : parsed.to_v4();
        return v4.to_string();
    }
    return networkOf(parsed.to_v6());
}

double CFailedLogins::delay(const std::string& address, double now) const {
    const auto found = m_failures.find(address);
    if (found == m_failures.end() || now - found->second.last >= kForgetSeconds) return 0;
    const int charged = found->second.count - kFree;
    return charged < 0 ? 0 : std::min(kLastDelay, std::ldexp(kFirstDelay, charged));
}

void CFailedLogins::countFailure(const std::string& address, double now) {
    CFailures& failures = m_failures[address];
    if (now - failures.last >= kForgetSeconds) failures.count = 0;
    failures.count = std::min(failures.count + 1, kFree + 100); // counting further would change nothing
    failures.last = now;
    if (m_failures.size() > kMaxAddresses) forgetSome(now);
}

bool CFailedLogins::mayDelay(const std::string& address) const {
    const auto found = m_delayed.find(address);
    return found == m_delayed.end() || found->second < kMaxDelayed;
}

void CFailedLogins::endDelay(const std::string& address) {
    const auto found = m_delayed.find(address);
    if (found != m_delayed.end() && --found->second == 0) m_delayed.erase(found);
}

void CFailedLogins::forgetSome(double now) {
    for (auto it = m_failures.begin(); it != m_failures.end();)
        it = now - it->second.last >= kForgetSeconds ? m_failures.erase(it) : std::next(it);
    if (m_failures.size() <= kMaxAddresses) return;
    m_failures.erase(
        std::min_element(m_failures.begin(), m_failures.end(), [](const auto& one, const auto& other) {
            return one.second.last < other.second.last;
        }));
}

} // namespace TC
