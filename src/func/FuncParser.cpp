#include "orderservice/func/FuncParser.h"

#include "orderservice/base/Bson.h"
#include "orderservice/base/Unset.h"
#include "orderservice/func/FuncLog.h"
#include "orderservice/func/FuncTables.h"
#include "orderservice/platform/UserConfig.h"

#include <QStringList>

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>

#include <cmath>
#include <exception>
#include <limits>
#include <optional>
#include <vector>

namespace TC {
namespace {

/// A volume up to this is treated as zero. It is much smaller than the tolerance of prices, because a ratio
/// or a volume of a fraction is legal.
constexpr double kZeroVolume = 1e-11;
constexpr double kMaxHedgeRatio = 2.0;

constexpr char kBadText[] = "parserParam error";
constexpr char kNoCode[] = "合约或篮子为空";
constexpr char kBadRatio[] = "输入的比例值不对,须 0 ~ 1 间数值!";
constexpr char kNotForFutures[] = "不支持的期货下单类型(orderType)!";
constexpr char kBadHedgeRatio[] = "输入的套利比例不对,须 0 ~ 2 间数值!";
constexpr char kZero[] = "下单数量/金额/比例为0";
constexpr char kNoMoneyForFutures[] = "期货投机不支持以金额方式下单";
constexpr char kNotForCredit[] = "融资融券不支持的下单类型";
constexpr char kNoContract[] = "不支持指定合约编号的操作类型";
constexpr char kNoModelPrice[] = "组合交易不支持指定价!";
constexpr char kOtherOrderType[] = "操作类型opType和下单类型orderType不对应！";
constexpr char kNoMoneyForFutureBaskets[] = "期货组合不支持以金额方式下单";
constexpr char kNoBasket[] = " 指定的篮子不存在";

/// True on success; otherwise the text is the error.
bool fail(std::string& error, const char* text) {
    error = text;
    return false;
}

bool isWithin(double value, double last) {
    return value >= 0 && value <= last; // false for a value that is no number
}

bool isZeroVolume(const COrderFuncParam& param) {
    return !(std::fabs(param.m_dModelVolume) > kZeroVolume); // true for a value that is no number
}

/// One key of the parameter text.
struct CKeyRow {
    const char* m_pszKey;
    void (*m_pfnRead)(const bson::BSONObj& object, const char* key, COrderFuncParam& param);
};

template<auto kField>
void readField(const bson::BSONObj& object, const char* key, COrderFuncParam& param) {
    bson::readField(object, key, param.*kField);
}

/// A number that is written as a text. A text that is no number gives 0.
template<auto kField>
void readNumberText(const bson::BSONObj& object, const char* key, COrderFuncParam& param) {
    std::string text;
    if (bson::readField(object, key, text)) param.*kField = QString::fromStdString(text).toDouble();
}

/// "name_remark", or a name alone. Any run of the two signs separates.
void readStrategyName(const bson::BSONObj& object, const char* key, COrderFuncParam& param) {
    std::string name;
    if (!bson::readField(object, key, name)) return;
    std::vector<std::string> parts;
    boost::split(parts, name, boost::is_any_of("_&"), boost::token_compress_on);
    if (parts.size() != 2) {
        param.m_strStrategyName = name;
        return;
    }
    param.m_strStrategyName = parts[0];
    if (!parts[1].empty()) param.m_strNote = parts[1];
}

/// In the order of reading. A key of a wrong type ends it: the fields of the keys after it are not set.
constexpr CKeyRow kKeys[] = {
    {"opType", readField<&COrderFuncParam::m_nOpType>},
    {"orderType", readField<&COrderFuncParam::m_nOrderType>},
    {"prType", readField<&COrderFuncParam::m_nPrType>},
    {"modelPrice", readNumberText<&COrderFuncParam::m_dModelPrice>},
    {"modelVolume", readNumberText<&COrderFuncParam::m_dModelVolume>},
    {"accountID", readField<&COrderFuncParam::m_strAccountID>},
    {"orderCode", readField<&COrderFuncParam::m_strOrderCode>},
    {"strategyName", readStrategyName},
    {"tradeKey", readField<&COrderFuncParam::m_strTradeKey>},
    {"note", readField<&COrderFuncParam::m_strNote>},
    {"modelName", readField<&COrderFuncParam::m_strModelName>},
};

bool readKeys(COrderFuncParam& param, const std::string& text, std::string& error) {
    try {
        const bson::BSONObj object = bson::fromjson(text);
        for (const CKeyRow& row : kKeys)
            row.m_pfnRead(object, row.m_pszKey, param);
        return true;
    } catch (const std::exception&) {
        return fail(error, kBadText);
    }
}

bool checkKeys(const COrderFuncParam& param, std::string& error) {
    if (param.m_strOrderCode.empty()) return fail(error, kNoCode);
    if (isRatioOrderType(param.m_nOrderType) && !isWithin(param.m_dModelVolume, 1))
        return fail(error, kBadRatio);
    const bool isOfSecurities = param.m_nOpType >= 23 && param.m_nOpType <= 34;
    if (isOrderTypeOfSecurities(param.m_nOrderType) && !isOfSecurities) return fail(error, kNotForFutures);
    if (isHedgeOrderType(param.m_nOrderType) && !isWithin(param.m_dModelPrice, kMaxHedgeRatio))
        return fail(error, kBadHedgeRatio);
    return true;
}

COrderSingleParam plainLine(const COrderFuncParam& param) {
    COrderSingleParam line;
    line.m_strCode = QString::fromStdString(param.m_strOrderCode);
    line.m_dPrice = param.m_dModelPrice;
    if (isVolumeInLine(param.m_nOrderType)) line.m_nVolume = volumeOfCall(param.m_dModelVolume);
    return line;
}

/// The trade type of a connect, if the text is its prefix. The case does not matter.
std::optional<EOrderStrategyTradeType> connectOf(const QString& prefix) {
    const QString upper = prefix.toUpper();
    if (upper == QLatin1String("HGT")) return EOrderStrategyTradeType::HGT;
    if (upper == QLatin1String("SGT")) return EOrderStrategyTradeType::SGT;
    return std::nullopt;
}

void setTradeType(COrderFuncParam& param, EOrderStrategyTradeType tradeType) {
    param.m_nTradeType = static_cast<int>(tradeType);
}

void makeFutureLine(COrderFuncParam& param, std::string& error) {
    setTradeType(param, EOrderStrategyTradeType::Future);
    if (isZeroVolume(param)) return void(fail(error, kZero));
    if (isMoneyOfSingle(param.m_nOrderType)) return void(fail(error, kNoMoneyForFutures));
    param.m_orders.append(plainLine(param));
}

void makeStockLine(COrderFuncParam& param, std::string& error) {
    constexpr int kPrefixLength = 3;
    constexpr int kConnectCodeLength = 8;
    setTradeType(param, EOrderStrategyTradeType::Stock);
    if (isZeroVolume(param)) return void(fail(error, kZero));
    param.m_orders.append(plainLine(param));
    const QString& code = param.m_orders.last().m_strCode;
    if (code.size() != kConnectCodeLength) return;
    if (const auto connect = connectOf(code.left(kPrefixLength))) setTradeType(param, *connect);
}

/// A credit code may have the number of a contract behind a comma.
void makeCreditLine(COrderFuncParam& param, std::string& error) {
    constexpr int kBuyToReturn = 29;
    constexpr int kSellToRepay = 31;
    if (!isCreditOrderType(param.m_nOrderType)) return void(fail(error, kNotForCredit));
    setTradeType(param, EOrderStrategyTradeType::Credit);
    if (isZeroVolume(param)) return void(fail(error, kZero));
    COrderSingleParam line = plainLine(param);
    line.m_dAmount = param.m_dModelVolume;
    const QStringList parts = line.m_strCode.split(QLatin1Char(','));
    if (parts.size() == 2) {
        const bool isAllowed = param.m_nOpType == kBuyToReturn || param.m_nOpType == kSellToRepay;
        if (!isAllowed) fail(error, kNoContract);
        line.m_strCode = isAllowed ? parts[0] : QString();
        if (isAllowed) line.m_strCompact = parts[1];
    }
    param.m_orders.append(line);
}

int leadingDigit(int number) {
    constexpr int kBase = 10;
    while (number > kBase)
        number /= kBase;
    return number;
}

bool setBasketTradeType(COrderFuncParam& param, EFuncFamily family, std::string& error) {
    switch (family) {
    case EFuncFamily::StockBasket:
        setTradeType(param, EOrderStrategyTradeType::Basket);
        return true;
    case EFuncFamily::CreditBasket:
        setTradeType(param, EOrderStrategyTradeType::Credit);
        return true;
    default:
        break;
    }
    param.m_nTradeType = kFunctionFutureBasket;
    const bool isOfMoney = param.m_nOrderType == 2103 || param.m_nOrderType == 2203;
    return !isOfMoney || fail(error, kNoMoneyForFutureBaskets);
}

void makeBasketLines(COrderFuncParam& param, EFuncFamily family, std::string& error) {
    constexpr int kBasketDigit = 2;
    if (param.m_nPrType == static_cast<int>(EPriceType::Specified)) return void(fail(error, kNoModelPrice));
    if (leadingDigit(param.m_nOrderType) != kBasketDigit) return void(fail(error, kOtherOrderType));
    if (!setBasketTradeType(param, family, error)) return;
    const CUserConfig* const user = getUserConfig();
    const auto basket = user == nullptr ? std::nullopt : findBasket(*user, basketNameOf(param));
    if (!basket) return void(fail(error, kNoBasket));
    if (!basket->m_rows.isEmpty()) {
        if (const auto connect = connectOf(basket->m_rows.first().m_strMarket)) setTradeType(param, *connect);
    }
    for (const CBasketStockData& row : basket->m_rows) {
        COrderSingleParam line;
        line.m_strCode = row.m_strMarket + row.m_strCode;
        line.m_nVolume = row.m_nVolume;
        line.m_eOperationType = row.m_eOperationType;
        line.m_dWeight = row.m_dWeight;
        param.m_orders.append(line);
    }
}

void makeLines(COrderFuncParam& param, std::string& error) {
    const EFuncFamily family = funcFamilyOf(param.m_nOpType, param.m_nOrderType);
    switch (family) {
    case EFuncFamily::None:
        return;
    case EFuncFamily::Future:
        return makeFutureLine(param, error);
    case EFuncFamily::Stock:
        return makeStockLine(param, error);
    case EFuncFamily::Credit:
        return makeCreditLine(param, error);
    case EFuncFamily::StockOption:
        fillStkOptionParam(param, static_cast<PassorderFunOrderType>(param.m_nOpType), error);
        return;
    case EFuncFamily::StockBasket:
    case EFuncFamily::CreditBasket:
    case EFuncFamily::FutureBasket:
        return makeBasketLines(param, family, error);
    }
}

} // namespace

void parserParam(COrderFuncParam& param, const std::string& text, std::string& error) {
    logFuncLine(utils::ELogLevel::Info, "TC::COrderFuncService::parserParam",
                {"COrderFuncService parserParam, strParam ", text});
    if (readKeys(param, text, error) && checkKeys(param, error)) makeLines(param, error);
}

std::string basketNameOf(const COrderFuncParam& param) {
    if (!isHedgeableOperation(param.m_nOpType) || !isHedgeOrderType(param.m_nOrderType))
        return param.m_strOrderCode;
    std::vector<std::string> parts;
    boost::split(parts, param.m_strOrderCode, boost::is_any_of(","));
    return parts.size() == 2 ? parts[0] : param.m_strOrderCode;
}

bool fillStkOptionParam(COrderFuncParam& param, PassorderFunOrderType, std::string& error) {
    setTradeType(param, EOrderStrategyTradeType::StockOption);
    if (isZeroVolume(param)) return fail(error, kZero);
    COrderSingleParam line = plainLine(param);
    line.m_nVolume = volumeOfCall(param.m_dModelVolume);
    param.m_orders.append(line);
    return true;
}

int volumeOfCall(double volume) {
    constexpr int kLargest = kUnsetInt - 1;
    if (std::isnan(volume)) return 0;
    if (volume >= static_cast<double>(kLargest)) return kLargest;
    constexpr int kSmallest = std::numeric_limits<int>::min();
    return volume <= static_cast<double>(kSmallest) ? kSmallest : static_cast<int>(volume);
}

} // namespace TC
