// Reads any bytes as a number. The strict readers must accept exactly the texts that boost::lexical_cast
// accepts, and return the same value to the last bit.
#include "orderservice/base/StrictNumber.h"

#include <boost/lexical_cast.hpp>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string_view>

namespace {

template<typename Read>
auto readOrNone(const Read& read) -> std::optional<decltype(read())> {
    try {
        return read();
    } catch (const boost::bad_lexical_cast&) {
        return std::nullopt;
    }
}

std::uint64_t bitsOf(double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto ownInt = readOrNone([&] { return utils::strictInt(text); });
    const auto castInt = readOrNone([&] { return boost::lexical_cast<int>(text.data(), text.size()); });
    if (ownInt != castInt) std::abort();
    const auto ownDouble = readOrNone([&] { return bitsOf(utils::strictDouble(text)); });
    const auto castDouble =
        readOrNone([&] { return bitsOf(boost::lexical_cast<double>(text.data(), text.size())); });
    if (ownDouble != castDouble) std::abort();
    return 0;
}
