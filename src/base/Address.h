#pragma once

#include "orderservice/base/Export.h"

#include <string>

/// Checks of network addresses in text form. The functions are pure and thread-safe.
namespace utils {

/// Whether the IP address is a loopback address: 127.0.0.0/8, also in IPv6 form (::ffff:127.0.0.1), or ::1.
/// False for a text that is not an IP address, such as a host name.
ORDERSERVICE_EXPORT bool isLoopbackAddress(const std::string& ip);

/// Whether a listener at `ip:port` accepts connections from this machine only. True if the text before the
/// last colon is an IPv4 address in 127.0.0.0/8. The port is not checked. False for IPv6 addresses and host
/// names.
ORDERSERVICE_EXPORT bool isLoopbackListener(const std::string& address);

} // namespace utils
