#include "desk/paper/Matching.h"

#include "desk/paper/Holds.h"
#include "desk/paper/PaperFamilies.h"
#include "desk/paper/Settlement.h"

#include <algorithm>
#include <optional>

namespace desk {
namespace {

constexpr const char* kNoCredit = "not enough credit for the better price";

void fill(CPaperBook& book, CPaperOrder& order, CMoney price, CMoney amount, int volume) {
    settleTrade(book, order, price, volume);
    order.m_nFilled += volume;
    order.m_nFilledAmount += amount;
    order.m_eStatus = order.rest() == 0 ? EOrderStatus::Filled : EOrderStatus::PartFilled;
    book.addFill(order, price, volume);
}

} // namespace

void match(CPaperBook& book, CPaperOrder& order) {
    if (book.m_sides.find(order.m_strStock) == nullptr) return;
    CBookSides& sides = book.m_sides.edit(order.m_strStock);
    const int before = order.m_nFilled;
    bool isShortOfCredit = false;
    for (CBookLevel& level : order.isBuy() ? sides.m_sell : sides.m_buy) {
        const int offered = static_cast<int>(std::min<std::int64_t>(order.rest(), level.m_nVolume));
        if (offered == 0 || !isWithinLimit(order, level.m_nPrice)) continue;
        const int volume = tradableVolume(book, order, level.m_nPrice, offered);
        isShortOfCredit = volume < offered;
        const std::optional<CMoney> amount = worthOf(order, level.m_nPrice, volume);
        if (amount && volume != 0) { // no amount: the worth is beyond kMaxMoney
            level.m_nVolume -= volume;
            fill(book, order, level.m_nPrice, *amount, volume);
        }
        if (isShortOfCredit) break;
    }
    if (order.m_nFilled != before) book.announce(order);
    if (isShortOfCredit) cancel(book, order, kNoCredit);
}

void cancel(CPaperBook& book, CPaperOrder& order, const std::string& reason) {
    releaseRest(book, order);
    order.m_eStatus = EOrderStatus::Cancelled;
    order.m_strReason = reason;
    book.announce(order);
}

} // namespace desk
