// Reads any bytes as the argument of `placeorder`. There must be no crash and no undefined behaviour, and
// only the exception for a bad number may be thrown. A refusal must have one of the known texts. An accepted
// order must have the number and channel of the line. It may have several lines only if it is a basket.
#include "orderservice/records/OrderTypes.h"
#include "orderservice/records/Portfolio.h"
#include "orderservice/socket/OrderCommandParser.h"
#include "tests/support/Builders.h"
#include "tests/support/DoorFakes.h"
#include "tests/support/FakeHost.h"

#include <boost/lexical_cast/bad_lexical_cast.hpp>
#include <boost/make_shared.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <string>

namespace {

constexpr int kPricedChannel = 3; ///< its strategy needs a price for each member of a basket
constexpr int kPlainChannel = 4;
constexpr int kBasketRows = 3;

/// Host and registry, set up only once because parsing changes neither.
struct CWorld {
    CWorld() {
        registry.strategies.insert(
            kPricedChannel, CStrategyBuilder().channel(kPricedChannel).set([](auto& s) {
                s.setting(TC::ESettingSlot::StockBasket).m_ePriceType = TC::EPriceType::Specified;
            }));
        registry.strategies.insert(kPlainChannel, CStrategyBuilder().channel(kPlainChannel));
        host.user.baskets[QStringLiteral("b")].m_rows.resize(kBasketRows);
        host.user.baskets[QStringLiteral("蓝筹")].m_rows.resize(kBasketRows);
        const auto position = boost::make_shared<knservice::CPositionDetail>();
        position->m_strCode = "600000";
        position->m_nVolume = 100;
        const auto portfolio = boost::make_shared<knservice::CPortfolio>();
        portfolio->m_positions["a"] = position;
        host.tasks.tables[knservice::kPortfolioTable]["1____p"] = portfolio;
    }

    CFakeHost host;
    CPlainRegistry registry;
};

struct CReading {
    bool isBadNumber = false;
    bool isUnderstood = false;
    TC::COrderParam order;
    std::string error;
};

CReading read(const std::string& argument, TC::IStrategyRegistry& registry) {
    CReading reading;
    TC::CRecentCodes codes;
    try {
        reading.isUnderstood = TC::parseSocketOrder(argument, registry, codes, reading.order, reading.error);
    } catch (const boost::bad_lexical_cast&) {
        reading.isBadNumber = true;
    }
    return reading;
}

void require(bool condition) {
    if (!condition) std::abort();
}

/// Baskets, and the unused numbers below 93, which are read like baskets.
bool isBasketNumber(int number) {
    const bool isUnused = number < 0 || (number >= 16 && number <= 22);
    return isUnused || number == TC::kOrderBasketBuy || number == TC::kOrderBasketSell ||
           (number >= TC::kOrderBasketHeader && number <= TC::kOrderBasketList);
}

void check(const CReading& reading, const std::string& argument) {
    static const std::string kTexts[] = {"", "参数有误", " 缺少指定价参数", " 指定的篮子不存在"};
    require(std::find(std::begin(kTexts), std::end(kTexts), reading.error) != std::end(kTexts));
    if (!reading.isUnderstood) return;
    require(reading.error.empty());
    const TC::COrderParam& order = reading.order;
    require(order.m_eStrategyType == TC::EOrderStrategyType::Signal);
    require(std::atoi(argument.c_str()) == order.m_nOrderType);
    require(std::atoi(argument.c_str() + argument.find(',') + 1) == order.m_nChannel);
    if (order.m_orders.size() > 1) require(isBasketNumber(order.m_nOrderType));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static CWorld world;
    const std::string argument(reinterpret_cast<const char*>(data), size);
    const CReading reading = read(argument, world.registry);
    check(reading, argument);
    const CReading again = read(argument, world.registry);
    require(again.isBadNumber == reading.isBadNumber && again.isUnderstood == reading.isUnderstood);
    require(again.order.toQString() == reading.order.toQString() && again.error == reading.error);
    return 0;
}
