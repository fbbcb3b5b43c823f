#include "desk/paper/PaperRecords.h"

#include "orderservice/kit/Operations.h"

#include <iterator>

namespace desk {
namespace {

constexpr const char* kStatusWords[] = {"working", "part_filled", "filled", "cancelled", "rejected"};

} // namespace

const char* statusWord(EOrderStatus status) {
    const auto number = static_cast<std::size_t>(status);
    return number < std::size(kStatusWords) ? kStatusWords[number] : "unknown";
}

bool CPaperOrder::isBuy() const {
    const kit::COperation* operation = kit::findOperation(m_eOperation);
    return operation != nullptr && operation->m_eSide == kit::ETradeSide::Buy;
}

} // namespace desk
