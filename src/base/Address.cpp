#include "orderservice/base/Address.h"

#include <boost/asio/ip/address.hpp>

namespace utils {

namespace ip = boost::asio::ip;

bool isLoopbackAddress(const std::string& text) {
    boost::system::error_code error;
    const ip::address parsed = ip::make_address(text, error);
    if (error) return false;
    const bool isMapped = parsed.is_v6() && parsed.to_v6().is_v4_mapped();
    return isMapped ? ip::make_address_v4(ip::v4_mapped, parsed.to_v6()).is_loopback() : parsed.is_loopback();
}

bool isLoopbackListener(const std::string& address) {
    boost::system::error_code error;
    const ip::address_v4 parsed = ip::make_address_v4(address.substr(0, address.rfind(':')), error);
    return !error && parsed.is_loopback();
}

} // namespace utils
