#include "orderservice/func/FuncVolumes.h"

#include "orderservice/base/Unset.h"
#include "orderservice/func/FuncTables.h"
#include "orderservice/platform/ExchangeClient.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/InstrumentTypes.h"
#include "orderservice/platform/TradeClient.h"
#include "orderservice/platform/TraderCenter.h"

#include <boost/shared_ptr.hpp>

#include <algorithm>
#include <cmath>

namespace TC {
namespace {

using knservice::CAccountData;
using knservice::CAccountDetailPtr;

/// An account that is logged in, and an instrument that is known.
struct CSubject {
    boost::shared_ptr<CAccountData> m_data; ///< null if something is missing
    CInstrumentDetailPtr m_detail;
    QString m_strCode;

    explicit operator bool() const { return m_data != nullptr; }
};

/// The data of an account that is logged in, otherwise null.
boost::shared_ptr<CAccountData> findData(const std::string& accountKey) {
    if (hostCall<&CTradeClient::getLoginStatus>(accountKey) != EBROKER_LOGIN_STATUS::LoggedIn) return nullptr;
    auto& center = hostCall<&knservice::TraderCenter::getDataCenter>();
    return hostCall<&knservice::CDataCenter::getAccountData>.on(center, accountKey);
}

CSubject findSubject(const std::string& accountKey, const QString& code) {
    CSubject subject;
    subject.m_strCode = code;
    const boost::shared_ptr<CAccountData> data = findData(accountKey);
    if (data) subject.m_detail = hostCall<&CExchangeClient::getCodeInfo>(code);
    if (subject.m_detail) subject.m_data = data;
    return subject;
}

double usableVolume(const CSubject& subject, EOperationType op, double price) {
    return hostCall<&CAccountData::getUsableVolume>.on(*subject.m_data, subject.m_detail->m_strMarket,
                                                       subject.m_detail->m_strCode, op,
                                                       EHedge_Flag_Type::Speculation, price);
}

/// The whole part; kNoVolumeLimit for every larger number. 0 for a number below zero and for no number.
std::int64_t wholeVolume(double volume) {
    if (!(volume > 0)) return 0;
    return volume < static_cast<double>(kNoVolumeLimit) ? static_cast<std::int64_t>(volume) : kNoVolumeLimit;
}

bool isFigure(double value) {
    return std::isfinite(value) && !isInvalidPrice(value);
}

/// How many units of the instrument one lot has. 0 if that is not known.
double multipleOf(const CSubject& subject) {
    if (isFigure(subject.m_detail->m_dMultiplier)) return subject.m_detail->m_dMultiplier;
    const bool isFuture = isFuturesMarket(subject.m_detail->m_strMarket) ||
                          hostCall<&CExchangeClient::hasFuture>(subject.m_strCode);
    return isFuture ? 0 : 1;
}

double shareOfAssets(const CSubject& subject, bool isSingle, double price, double percent) {
    const CAccountDetailPtr account = hostCall<&CAccountData::getAccountDetail>.on(*subject.m_data);
    const double multiple = isSingle ? 1 : multipleOf(subject);
    if (!account || !isFigure(account->m_dAssetCheck) || !isFigure(account->m_dAssetForRatio)) return 0;
    if (!isFigure(price) || isZero(price) || multiple == 0) return 0;
    return percent * account->m_dAssetForRatio / (multiple * price);
}

std::int64_t volumeLimit(const CSubject& subject, EOperationType op, double price) {
    knservice::ICalculator* const calculator = hostCall<&knservice::TraderCenter::getCalculator>();
    const CAccountInfoPtr account = hostCall<&CAccountData::getAccountInfo>.on(*subject.m_data);
    if (calculator == nullptr || !account) return kNoVolumeLimit;
    int firstKind = kQuantityKindPlain;
    int secondKind = kQuantityKindPlain;
    return hostCall<&knservice::ICalculator::getVolumeLimit>.on(
        *calculator, *account, subject.m_detail->m_strMarket, subject.m_detail->m_strCode, op,
        EHedge_Flag_Type::Speculation, price, firstKind, secondKind, kNoVolumeLimit, false, -1);
}

boost::shared_ptr<knservice::CInstrumentFee> findFee(const CSubject& subject) {
    const CAccountInfoPtr account = hostCall<&CAccountData::getAccountInfo>.on(*subject.m_data);
    if (!account) return nullptr;
    const std::string key = knservice::CInstrumentFee::genKey(*subject.m_detail, *account);
    const CAccountData::Lock lock(*subject.m_data);
    const auto& fees = hostCall<&CAccountData::getMapDataRef>.on(*subject.m_data, knservice::kFeeTable);
    const auto found = fees.find(key);
    return found == fees.end() ? nullptr
                               : boost::dynamic_pointer_cast<knservice::CInstrumentFee>(found->second);
}

} // namespace

std::int64_t getCanOrderVolume(const std::string& accountKey, EOperationType op, const QString& code,
                               double price) {
    const CSubject subject = findSubject(accountKey, code);
    return subject ? wholeVolume(usableVolume(subject, op, price)) : 0;
}

std::int64_t getAccountPercentNum(const std::string& accountKey, EOperationType op, int orderType,
                                  const QString& code, double price, double percent) {
    constexpr int kAssetsOfAccount = 1113;
    constexpr int kAssetsOfGroup = 1213;
    const bool isByAsset = orderType == kAssetsOfAccount || orderType == kAssetsOfGroup;
    const bool isLimited = op == EOperationType::ReturnShares || op == EOperationType::SellToRepay;
    const CSubject subject = findSubject(accountKey, code);
    if (!subject) return 0;
    const double can = usableVolume(subject, op, price);
    double want = 0;
    if (isByAsset)
        want = shareOfAssets(subject, isLimited, price, percent);
    else if (isFigure(can))
        want = can * percent;
    std::int64_t volume = std::min(wholeVolume(can), wholeVolume(want));
    const int unit = knservice::getTradeMinUnit(subject.m_detail->m_strMarket, subject.m_detail->m_strCode,
                                                unsetEnum<EOperationType>());
    if (unit > 1) volume -= volume % unit;
    return isLimited ? std::min(volume, volumeLimit(subject, op, price)) : volume;
}

double getBasketAsset(const std::string& accountKey) {
    const boost::shared_ptr<CAccountData> data = findData(accountKey);
    const CAccountDetailPtr account =
        data ? hostCall<&CAccountData::getAccountDetail>.on(*data) : CAccountDetailPtr();
    return account && isFigure(account->m_dBasketAsset) ? account->m_dBasketAsset : kUnsetDouble;
}

std::int64_t wholeNumber(double value) {
    if (std::isnan(value)) return 0;
    if (std::fabs(value) < static_cast<double>(kNoVolumeLimit)) return static_cast<std::int64_t>(value);
    return value > 0 ? kNoVolumeLimit : -kNoVolumeLimit;
}

int getAccountFuturesNum(const std::string& accountKey, const QString& code, double money, double price) {
    const CSubject subject = findSubject(accountKey, code);
    if (!subject) return 0;
    const auto fee = findFee(subject);
    if (!fee || !fee->m_instrument || !isFigure(money) || isZero(money)) return 0;
    const double multiple = fee->m_instrument->m_dMultiplier;
    if (!isFigure(multiple) || isZero(multiple) || !isFigure(price) || isZero(price)) return 0;
    constexpr double kBeyond = kUnsetInt - 1; // no record can hold it, and it is not "not set"
    return static_cast<int>(std::clamp(money / price / multiple, -kBeyond, kBeyond));
}

std::int64_t calcRightOrderVolume(EOperationType op, std::int64_t volume, int unit, std::int64_t canVolume) {
    constexpr std::int64_t kLeastUnrounded = 200;
    const std::int64_t rounded = volume - volume % std::max(unit, 1);
    if (op == EOperationType::Sell) return volume == canVolume ? volume : rounded;
    return static_cast<int>(op) == kBuyAtGivenPrice && volume >= kLeastUnrounded ? volume : rounded;
}

} // namespace TC
