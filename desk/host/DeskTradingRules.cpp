#include "desk/host/DeskTradingRules.h"

#include "desk/config/Words.h"
#include "desk/host/DeskUserConfig.h"
#include "desk/paper/OrderRules.h"
#include "orderservice/base/StrictNumber.h"
#include "orderservice/base/Text.h"
#include "orderservice/base/Unset.h"
#include "orderservice/platform/Quote.h"

#include <boost/lexical_cast/bad_lexical_cast.hpp>

#include <algorithm>
#include <functional>
#include <map>
#include <optional>

namespace desk {
namespace {

/// The second part of an account that has none.
constexpr const char* kNoSecondHalf = "-";
/// A setting text that is not a list of pairs.
constexpr const char* kUnreadText = "?";

using CPairs = std::map<std::string, std::string>;

/// The pairs of a text. Not set if the text is not a list of pairs.
std::optional<CPairs> readPairs(const std::string& text, char separator) {
    CPairs pairs;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find(separator, begin), text.size());
        const std::size_t colon = text.find(':', begin);
        if (colon >= end ||
            !pairs.emplace(text.substr(begin, colon - begin), text.substr(colon + 1, end - colon - 1))
                 .second) {
            return std::nullopt;
        }
        begin = end + 1;
    }
    return pairs;
}

/// Passes each pair to its setter. Returns false if a key has no setter or a number is invalid.
template<typename Record>
bool applyPairs(const CPairs& pairs,
                const std::map<std::string, std::function<void(Record&, const std::string&)>>& setters,
                Record& record) {
    Record changed = record;
    for (const auto& [key, value] : pairs) {
        const auto setter = setters.find(key);
        if (setter == setters.end()) return false;
        try {
            setter->second(changed, value);
        } catch (const boost::bad_lexical_cast&) {
            return false;
        }
    }
    record = std::move(changed);
    return true;
}

using CParamSetter = std::function<void(TC::COrderTradeParam&, const std::string&)>;

// Values are GBK bytes. The remark is not converted.
const std::map<std::string, CParamSetter>& paramSetters() {
    static const std::map<std::string, CParamSetter> setters = {
        {"remark", [](auto& p, const auto& v) { p.m_strRemark = v; }},
        {"account", [](auto& p, const auto& v) { p.m_strAccountKeyPart1 = UW::sToQsGBK(v); }},
        {"sub", [](auto& p, const auto& v) { p.m_strAccountKeyPart2 = UW::sToQsGBK(v); }},
        {"order_type", [](auto& p, const auto& v) { p.m_eOrderType = utils::strictInt(v); }},
        {"setting", [](auto& p, const auto& v) { p.m_strOrderSetting = UW::sToQsGBK(v); }},
        {"kind", [](auto& p, const auto& v) { p.m_nSettingKind = utils::strictInt(v); }},
        {"text1", [](auto& p, const auto& v) { p.m_strTradeText1 = utils::safeGbk2Utf8(v); }},
        {"text2", [](auto& p, const auto& v) { p.m_strTradeText2 = utils::safeGbk2Utf8(v); }},
        {"text3", [](auto& p, const auto& v) { p.m_strTradeText3 = utils::safeGbk2Utf8(v); }},
    };
    return setters;
}

/// Completes the two parts of an account. If only the first part is given, the second becomes "-". If only a
/// second part of "-" is given, it is cleared. Returns false for any other second part alone.
bool completeAccount(TC::COrderTradeParam& param) {
    const QString none = QString::fromUtf8(kNoSecondHalf);
    if (param.m_strAccountKeyPart1.isEmpty()) {
        if (!param.m_strAccountKeyPart2.isEmpty() && param.m_strAccountKeyPart2 != none) return false;
        param.m_strAccountKeyPart2.clear();
    } else if (param.m_strAccountKeyPart2.isEmpty()) {
        param.m_strAccountKeyPart2 = none;
    }
    return true;
}

/// Reads a word of the desk's files or a number.
int readPriceType(const std::string& text) {
    const auto word = priceTypeWords().find(text);
    return word != priceTypeWords().end() ? word->second : utils::strictInt(text);
}

using CSettingSetter = std::function<void(TC::COrderSetting&, const std::string&)>;

const std::map<std::string, CSettingSetter>& settingSetters() {
    static const std::map<std::string, CSettingSetter> setters = {
        {"price_type",
         [](auto& s, const auto& v) { s.m_ePriceType = static_cast<TC::EPriceType>(readPriceType(v)); }},
        {"order_type",
         [](auto& s, const auto& v) { s.m_eOrderType = static_cast<TC::EOrderType>(utils::strictInt(v)); }},
        {"remark", [](auto& s, const auto& v) { s.m_strCmdLog = v; }},
    };
    return setters;
}

} // namespace

QString CDeskTradingRules::getAccountFromOrderParam(const QString& part1, const QString& part2) {
    return part2 == QString::fromUtf8(kNoSecondHalf) ? part1 : part1 + QStringLiteral("_") + part2;
}

bool CDeskTradingRules::parserOrderTradeParam(const std::string& text, TC::COrderTradeParam& param) {
    if (text.find(':') == std::string::npos) return false;
    const auto pairs = readPairs(text, ';');
    TC::COrderTradeParam read;
    const bool isRead = pairs && applyPairs(*pairs, paramSetters(), read) && completeAccount(read);
    param = isRead ? read : TC::COrderTradeParam{};
    const auto orderType = static_cast<TC::EOrderType>(param.m_eOrderType);
    // The setting text carries a refusal and the order type, because a setting's order type reaches the
    // records of all product families. An algorithm or a return value of false would not.
    if (!isRead) {
        param.m_strOrderSetting = QString::fromUtf8(kUnreadText);
    } else if (!TC::isUnset(orderType) && orderType != TC::EOrderType::Plain) {
        param.m_strOrderSetting = QStringLiteral("order_type:%1").arg(param.m_eOrderType);
    }
    return true;
}

void CDeskTradingRules::orderSettingFromString(TC::COrderSetting& setting, const QString& text) {
    if (text.isEmpty()) return;
    const auto pairs = readPairs(text.toStdString(), ',');
    // Sending no order is better than sending it at a price that differs from the text. So the broker must
    // reject it.
    if (!pairs || !applyPairs(*pairs, settingSetters(), setting)) setting.m_eOrderType = kUnreadTradeParams;
}

void CDeskTradingRules::orderSettingToParam(const TC::COrderSetting& setting, TC::CCodeOrderParam& record,
                                            TC::EOperationType operation, int, double price,
                                            const TC::CPriceDataPtr& quote) {
    record.m_ePriceType = setting.m_ePriceType;
    record.m_eOrderType = TC::isUnset(setting.m_eOrderType) ? TC::EOrderType::Plain : setting.m_eOrderType;
    record.m_dPrice = price;
    // A sale of the whole position has no price. It uses the quote's price for the setting's price type.
    const bool isQuoted = setting.m_ePriceType != TC::EPriceType::Specified;
    if (quote && isQuoted && TC::isInvalidPrice(price))
        record.m_dPrice = quote->getPriceForOrder(setting.m_ePriceType, operation, 0, {});
}

QString CDeskTradingRules::accountDisplayIDQs(const TC::CAccountInfo& account) {
    return QString::fromStdString(displayIdOf(account));
}

} // namespace desk
