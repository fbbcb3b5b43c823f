#include "orderservice/func/AlgoMessage.h"

#include "orderservice/base/Bson.h"
#include "orderservice/base/StrictNumber.h"
#include "orderservice/func/FuncLog.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/TimeService.h"
#include "orderservice/platform/TradingRules.h"

#include <QDateTime>
#include <QString>

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/algorithm/string/join.hpp>

#include <array>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <locale>

namespace TC {
namespace {

constexpr char kMessageName[] = "TC::COrderFuncService::getAlgParamsStr"; ///< for the log
constexpr char kPairSeparator[] = "\x01";
constexpr char kGroupSeparator[] = "@";
constexpr char kEntrySeparator[] = "||";
constexpr int kRandomLimit = 1000000;
/// The order kind whose price is left to the platform, unless the record has a price of its own.
constexpr auto kPricedByPlatform = static_cast<EOrderType>(9);

/// The settings of an algorithm, as they are written.
struct CSettings {
    std::string m_strProduct;
    std::string m_strKind; ///< in capital letters
    std::string m_strStart;
    std::string m_strEnd;
    std::string m_strOverRate;
    std::string m_strLeastAmount;
    std::string m_strPriceLevel;
    std::string m_strDifferenceKind;
    std::string m_strDifference;
    std::string m_strFirstAmount; ///< of two keys; the second one is used if it is there
    std::string m_strAmountStep;
};

CSettings readSettings(const std::string& text) {
    const bson::BSONObj object = bson::fromjson(text);
    const auto read = [&](const char* key, std::string& value) { bson::readField(object, key, value); };
    CSettings settings;
    read("m_prdType", settings.m_strProduct);
    read("m_strategyType", settings.m_strKind);
    read("m_nValidTimeStart", settings.m_strStart);
    read("m_nValidTimeEnd", settings.m_strEnd);
    read("m_dLimitOverRate", settings.m_strOverRate);
    read("m_dMinAmountPerOrder", settings.m_strLeastAmount);
    read("m_nTargetPriceLevel", settings.m_strPriceLevel);
    read("m_nPriceDiffType", settings.m_strDifferenceKind);
    read("m_dPriceDiffVal", settings.m_strDifference);
    read("m_nFirstOrderAmtType", settings.m_strFirstAmount);
    read("m_dFirstOrderAmount", settings.m_strFirstAmount);
    read("m_dOrderAmountDelta", settings.m_strAmountStep);
    boost::algorithm::to_upper(settings.m_strKind, std::locale::classic());
    return settings;
}

/// The value of tag 23001. The receiver knows the second name with a blank in front, and the empty last
/// amount of a grid.
std::string entriesOf(const CSettings& settings) {
    std::vector<std::string> entries = {"m_nValidTimeStart&&" + settings.m_strStart,
                                        " m_nValidTimeEnd&&" + settings.m_strEnd};
    const auto add = [&](const char* name, const std::string& value) { entries.push_back(name + value); };
    if (settings.m_strKind == "GRID") {
        add("m_nPriceDiffType&&", settings.m_strDifferenceKind);
        add("m_dPriceDiffVal&&", settings.m_strDifference);
        add("m_nFirstOrderAmtType&&", settings.m_strFirstAmount);
        add("m_dFirstOrderAmount&&", {});
        add("m_dOrderAmountDelta&&", settings.m_strAmountStep);
    } else {
        add("m_dLimitOverRate&&", settings.m_strOverRate);
        add("m_dMinAmountPerOrder&&", settings.m_strLeastAmount);
        if (settings.m_strKind != "ICEBERG") add("m_nTargetPriceLevel&&", settings.m_strPriceLevel);
    }
    return boost::algorithm::join(entries, kEntrySeparator);
}

/// One reading of the clock, for all groups of a message.
struct CMoment {
    std::string m_strUtc;
    std::string m_strSeconds;
};

CMoment readClock() {
    constexpr std::int64_t kMillisecondsPerSecond = 1000;
    const std::int64_t now = hostCall<&CTimeService::currentMilliseconds>();
    return {QDateTime::fromMSecsSinceEpoch(now, Qt::UTC)
                .toString(QStringLiteral("yyyyMMdd-hh:mm:ss.zzz"))
                .toStdString(),
            std::to_string(now / kMillisecondsPerSecond)};
}

std::string randomNumber() {
    return std::to_string(std::rand() % kRandomLimit); // NOLINT: the numbers need not be secret
}

/// Always with a point, whatever the locale of the process is, and with enough digits for the exact value.
std::string numberText(double number) {
    constexpr int kDigits = 17;
    std::array<char, 32> text{};
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::general, kDigits);
    return {text.data(), end.ptr};
}

std::string priceOf(const CCodeOrderParam& record) {
    const bool isByPlatform =
        record.m_ePriceType != EPriceType::Specified && record.m_eOrderType == kPricedByPlatform;
    return isByPlatform ? "0" : numberText(record.m_dPrice);
}

std::string groupOf(const CSettings& settings, const CMoment& moment, const CCodeOrderParam& record,
                    std::size_t index) {
    const std::string account =
        record.m_account ? accountDisplayIDQs(*record.m_account).toStdString() : std::string();
    const std::string platformKey =
        record.m_account ? hostCall<&CAccountInfo::keyWith>.on(
                               *record.m_account, std::to_string(record.m_account->m_nPlatformId))
                         : std::string();
    const std::vector<std::string> pairs = {
        "40=" + settings.m_strProduct,
        "6061=" + settings.m_strKind,
        "23001=" + entriesOf(settings),
        "11=" + moment.m_strUtc + account + std::to_string(index) + randomNumber(),
        "15=CNY",
        "38=" + std::to_string(record.m_nVolume),
        "44=" + priceOf(record),
        std::string("54=") + (knservice::DataHelper::isBuy(record.m_eOperationType) ? "1" : "2"),
        "55=" + record.m_stock.m_strCode,
        "60=" + moment.m_strUtc,
        "100=" + (record.m_stock.m_strMarket == "SH" ? "SS" : record.m_stock.m_strMarket),
        "526=0000" + account + "_" + moment.m_strSeconds + "_" + randomNumber(),
        "1=" + account,
        "7055=" + platformKey,
        "7056=" + std::to_string(static_cast<int>(record.m_eOperationType)),
    };
    return boost::algorithm::join(pairs, kPairSeparator);
}

} // namespace

std::string getAlgParamsStr(const std::string& text, std::vector<CCodeOrderParam> records) {
    logFuncLine(utils::ELogLevel::Info, kMessageName, {"COrderFuncService smartAlgoParam, strParam ", text});
    CSettings settings;
    try {
        settings = readSettings(text);
    } catch (const std::exception& error) {
        logFuncLine(utils::ELogLevel::Info, kMessageName,
                    {"COrderFuncService parser smartAlgo Param error  ", error.what()});
        return {};
    }
    const CMoment moment = readClock();
    std::vector<std::string> groups;
    groups.reserve(records.size());
    for (std::size_t i = 0; i < records.size(); ++i)
        groups.push_back(groupOf(settings, moment, records[i], i));
    return boost::algorithm::join(groups, kGroupSeparator);
}

bool readValidTimeEnd(const std::string& text, int& time) {
    std::string value;
    if (!bson::readField(bson::fromjson(text), "m_nValidTimeEnd", value)) return false;
    time = utils::strictInt(value);
    return true;
}

} // namespace TC
