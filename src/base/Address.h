#pragma once

#include <string>

/// Network addresses as texts. Pure; any thread.
namespace utils {

/// Whether the IP address reaches this machine only: 127.0.0.0/8, also written as an IPv6 address
/// (::ffff:127.0.0.1), and ::1. False for a text that is not an IP address, such as the name of a machine.
bool isLoopbackAddress(const std::string& ip);

/// Whether a listener at `ip:port` is open to this machine only: what is before the last colon is an IPv4
/// address of 127.0.0.0/8. The port is not looked at. False for IPv6 addresses and names of machines.
bool isLoopbackListener(const std::string& address);

} // namespace utils
