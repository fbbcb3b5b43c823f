#include "orderservice/kit/TradeClientBase.h"

#include "orderservice/base/Unset.h"

#include <cmath>

namespace kit {
namespace {

constexpr int kSplitRefused = 1;

void refuse(const boost::shared_ptr<utils::KNError>& error, const char* text) {
    if (error) *error = utils::KNError(kSplitRefused, text);
}

/// Gives the whole number to the one account, or fails with a text.
template<typename Number>
std::vector<Number> giveToOne(Number number, bool isUsable, const char* unusableText,
                              const std::vector<TC::CAccountInfoPtr>& accounts,
                              const boost::shared_ptr<utils::KNError>& error) {
    if (accounts.size() != 1) {
        refuse(error, "此客户端不支持多账号分单");
    } else if (!isUsable) {
        refuse(error, unusableText);
    } else {
        return {number};
    }
    return {};
}

} // namespace

std::vector<int> CTradeClientBase::splitEntrusts(int volume, double, TC::EPriceType,
                                                 const std::vector<TC::CAccountInfoPtr>& accounts,
                                                 const std::vector<double>&, TC::EPositionType,
                                                 const std::string&, const std::string&, TC::EOperationType,
                                                 TC::EHedge_Flag_Type,
                                                 const boost::shared_ptr<utils::KNError>& error) {
    return giveToOne(volume, !TC::isUnset(volume) && volume >= 1, "下单量无效", accounts, error);
}

std::vector<double> CTradeClientBase::splitMoney(double amount,
                                                 const std::vector<TC::CAccountInfoPtr>& accounts,
                                                 const std::vector<double>&, TC::EPositionType,
                                                 TC::EOperationType,
                                                 const boost::shared_ptr<utils::KNError>& error) {
    const bool isUsable = std::isfinite(amount) && !TC::isInvalidPrice(amount) && amount > 0.0;
    return giveToOne(amount, isUsable, "金额无效", accounts, error);
}

} // namespace kit
