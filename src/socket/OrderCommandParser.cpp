#include "orderservice/socket/OrderCommandParser.h"

#include "orderservice/base/Fields.h"
#include "orderservice/base/StrictNumber.h"
#include "orderservice/base/Text.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/TraderCenter.h"
#include "orderservice/platform/UserConfig.h"
#include "orderservice/records/OrderNumbers.h"
#include "orderservice/records/OrderTypes.h"
#include "orderservice/records/Portfolio.h"

#include <boost/pointer_cast.hpp>

#include <optional>

namespace TC {
namespace {

using utils::strictDouble;
using utils::strictInt;

constexpr const char* kBadPortfolioKey = "参数有误";
constexpr const char* kPriceMissing = " 缺少指定价参数";
constexpr const char* kUnknownBasket = " 指定的篮子不存在";

struct CReading {
    const CFields& fields;
    IStrategyRegistry& registry;
    CRecentCodes& codes;
    COrderParam& order;
    std::string& error;
};

QString text(std::string_view field) {
    return UW::sToQs(field.data(), field.size());
}

/// Reads price, code and volume from the third field on. Code and volume are read only if their fields exist.
COrderSingleParam& readCommonLine(const CReading& reading) {
    const CFields& fields = reading.fields;
    COrderSingleParam& line = setOnlyLine(reading.order);
    line.m_dPrice = strictDouble(fields[2]);
    if (fields.has(3)) line.m_strCode = reading.codes.codeOf(fields[3]);
    if (fields.has(4)) line.m_nVolume = strictInt(fields[4]);
    return line;
}

bool readFuture(const CReading& reading) {
    const CFields& fields = reading.fields;
    COrderSingleParam& line = readCommonLine(reading);
    line.m_bHasFirstLimit = fields.has(5);
    if (line.m_bHasFirstLimit) line.m_dFirstLimit = strictDouble(fields[5]);
    line.m_bHasSecondLimit = fields.has(6);
    if (line.m_bHasSecondLimit) line.m_dSecondLimit = strictDouble(fields[6]);
    return true;
}

bool readPlain(const CReading& reading) {
    COrderSingleParam& line = readCommonLine(reading);
    if (reading.order.m_nOrderType == kOrderCreditAmount) line.m_dAmount = line.m_dPrice;
    return true;
}

bool readReversed(const CReading& reading) {
    const CFields& fields = reading.fields;
    COrderSingleParam& line = setOnlyLine(reading.order);
    if (fields.has(2)) line.m_strCode = reading.codes.codeOf(fields[2]);
    if (fields.has(3)) line.m_nVolume = strictInt(fields[3]);
    if (fields.has(4)) line.m_dPrice = strictDouble(fields[4]);
    return true;
}

/// Returns the first position of a portfolio, or null if the portfolio is unknown or empty.
knservice::CPositionDetailPtr findFirstPosition(const std::string& key, bool& isKnown) {
    const auto data = hostCall<&knservice::CDataCenter::getGlobalAccountData>.on(
        hostCall<&knservice::TraderCenter::getDataCenter>());
    if (!data) return nullptr;
    const auto portfolios =
        hostCall<&knservice::CAccountData::getMapData>.on(*data, knservice::kPortfolioTable);
    const auto found = portfolios.find(key);
    const auto portfolio = found != portfolios.end()
                               ? boost::dynamic_pointer_cast<knservice::CPortfolio>(found->second)
                               : nullptr;
    isKnown = portfolio != nullptr;
    if (!isKnown || portfolio->m_positions.empty()) return nullptr;
    return boost::dynamic_pointer_cast<knservice::CPositionDetail>(portfolio->m_positions.begin()->second);
}

bool readPortfolioPosition(const CReading& reading) {
    const CFields parts(reading.fields[2], '_');
    if (parts.size() != 2) {
        reading.error = kBadPortfolioKey;
        return false;
    }
    // The number is read strictly: otherwise `12x` would sell from portfolio 12.
    const std::string key = knservice::portfolioKey(strictInt(parts[0]), parts[1]);
    bool isKnown = false;
    const knservice::CPositionDetailPtr position = findFirstPosition(key, isKnown);
    if (isKnown) reading.order.m_strAccountKey = std::string(reading.fields[2]);
    if (!position) return true;
    COrderSingleParam line;
    line.m_strCode = QString::fromStdString(position->m_strCode);
    line.m_nVolume = position->m_bFlag ? 0 : position->m_nVolume;
    line.m_eOperationType = static_cast<int>(EOperationType::Sell);
    reading.order.m_orders.push_back(std::move(line));
    return true;
}

/// Reads members "code|volume" or "code|volume|price", separated by semicolons.
bool readMemberList(const CReading& reading) {
    // Only the strategy says whether the members need prices.
    const auto strategy = reading.registry.strategyOf(reading.order.m_nChannel);
    if (!strategy) return false;
    const bool needsPrice =
        strategy->setting(ESettingSlot::StockBasket).m_ePriceType == EPriceType::Specified;
    const CFields members(reading.fields[2], ';');
    for (std::size_t i = 0; i < members.size(); ++i) {
        const CFields parts(members[i], '|');
        if (parts.size() < 2) return false;
        COrderSingleParam line;
        line.m_strCode = text(parts[0]);
        line.m_nVolume = strictInt(parts[1]);
        if (needsPrice && parts.size() < 3) {
            reading.error = kPriceMissing;
            return false;
        }
        if (parts.has(2)) line.m_dPrice = strictInt(parts[2]);
        reading.order.m_orders.push_back(std::move(line));
    }
    return true;
}

bool readNamedBasket(const CReading& reading) {
    const CUserConfig* user = getUserConfig();
    const auto basket = user != nullptr ? findBasket(*user, reading.fields[2]) : std::nullopt;
    if (!basket) {
        reading.error = kUnknownBasket;
        return false;
    }
    for (const CBasketStockData& row : basket->m_rows) {
        COrderSingleParam line;
        line.m_strCode = row.m_strCode;
        line.m_nVolume = row.m_nVolume;
        line.m_eOperationType = row.m_eOperationType;
        line.m_dWeight = row.m_dWeight;
        reading.order.m_orders.push_back(std::move(line));
    }
    return true;
}

bool readBasketMembers(const CReading& reading) {
    const std::string_view name = reading.fields[2];
    if (name.find('|') != std::string_view::npos) return readMemberList(reading);
    if (reading.order.m_nOrderType == kOrderBasketSell && text(name).toLower() == QStringLiteral("all")) {
        if (const auto strategy = reading.registry.strategyOf(reading.order.m_nChannel)) {
            const CUserConfig* user = getUserConfig();
            reading.order.m_bAll = user != nullptr && hasAnyAccount(*user, *strategy);
            return true;
        }
    }
    return readNamedBasket(reading);
}

bool readBasket(const CReading& reading) {
    if (!readBasketMembers(reading)) return false;
    const int type = reading.order.m_nOrderType;
    const bool takesText = type == kOrderBasketBuy || type == kOrderBasketSell;
    if (takesText && reading.fields.has(3)) reading.order.m_strBasketText = std::string(reading.fields[3]);
    return true;
}

bool readForm(ESocketForm form, const CReading& reading) {
    switch (form) {
    case ESocketForm::Future:
        return readFuture(reading);
    case ESocketForm::Plain:
        return readPlain(reading);
    case ESocketForm::Reversed:
        return readReversed(reading);
    case ESocketForm::Position:
        return readPortfolioPosition(reading);
    case ESocketForm::Basket:
        return readBasket(reading);
    case ESocketForm::Nothing:
        break;
    }
    return true;
}

/// Whether the order has an order line. The line begins with the third field, and most forms need that field.
bool hasLine(int orderType, std::size_t fields) {
    constexpr std::size_t kFewestFields = 3;
    const COrderNumber* row = findOrderNumber(orderType);
    return fields >= kFewestFields || (row != nullptr && row->has(kFlagMayLackFields));
}

bool hasEmptyField(const CFields& fields) {
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (fields[i].empty()) return true;
    }
    return false;
}

} // namespace

bool parseSocketOrder(std::string_view argument, IStrategyRegistry& registry, CRecentCodes& codes,
                      COrderParam& order, std::string& error) {
    const CFields fields(argument, ',');
    if (fields.size() < 2 || hasEmptyField(fields)) return false;
    order.m_nOrderType = strictInt(fields[0]);
    order.m_nChannel = strictInt(fields[1]);
    order.m_eStrategyType = EOrderStrategyType::Signal;
    order.m_orders.clear();
    if (!hasLine(order.m_nOrderType, fields.size())) return true;
    return readForm(socketFormOf(order.m_nOrderType), {fields, registry, codes, order, error});
}

} // namespace TC
