#include "desk/paper/PaperRecords.h"

#include <iterator>

namespace desk {
namespace {

constexpr const char* kStatusWords[] = {"working", "part_filled", "filled", "cancelled", "rejected"};

} // namespace

const char* statusWord(EOrderStatus status) {
    const auto number = static_cast<std::size_t>(status);
    return number < std::size(kStatusWords) ? kStatusWords[number] : "unknown";
}

} // namespace desk
