#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/platform/TradeClient.h"

namespace kit {

/// A trading layer whose orders are for one account only. It does not check funds or positions; the receiver
/// of the command must do that. An order for several accounts fails with a text, which the user sees. In a
/// basket for several accounts every row is left out, and the audit gets the text.
///
/// The host implements getLoginStatus and cancelTask. Any thread, like CTradeClient.
class ORDERSERVICE_EXPORT CTradeClientBase : public TC::CTradeClient {
public:
    /// Gives the whole volume to the one account. Fails for several accounts, and for a volume that is not
    /// set or below 1.
    std::vector<int> splitEntrusts(int volume, double price, TC::EPriceType priceType,
                                   const std::vector<TC::CAccountInfoPtr>& accounts,
                                   const std::vector<double>& ratios, TC::EPositionType positionType,
                                   const std::string& market, const std::string& code,
                                   TC::EOperationType operation, TC::EHedge_Flag_Type hedge,
                                   const boost::shared_ptr<utils::KNError>& error) override;

    /// Gives the whole amount to the one account. Fails for several accounts, and for an amount that is not
    /// set, not finite or not above zero.
    std::vector<double> splitMoney(double amount, const std::vector<TC::CAccountInfoPtr>& accounts,
                                   const std::vector<double>& ratios, TC::EPositionType positionType,
                                   TC::EOperationType operation,
                                   const boost::shared_ptr<utils::KNError>& error) override;
};

} // namespace kit
