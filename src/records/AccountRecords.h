#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/base/Unset.h"
#include "orderservice/records/Account.h"
#include "orderservice/records/Data.h"
#include "orderservice/records/Instrument.h"

#include <boost/shared_ptr.hpp>

#include <string>

/// Records of one account that function trading reads. The host fills and shares them; they do not change.
namespace knservice {

/// The figures of an account, in currency units. A figure that the host does not know is not set.
struct ORDERSERVICE_EXPORT CAccountDetail : IData {
    double m_dAssetForRatio = TC::kUnsetDouble; ///< a ratio of the assets is a share of this
    double m_dAssetCheck = TC::kUnsetDouble;    ///< if it is not set, m_dAssetForRatio is not used
    double m_dBasketAsset = TC::kUnsetDouble;   ///< a ratio of a basket of stocks is a share of this
};
using CAccountDetailPtr = boost::shared_ptr<CAccountDetail>;

/// One order of an account at its broker.
struct ORDERSERVICE_EXPORT COrderDetail : IData {
    std::string m_strOrderSysID; ///< the broker's number of the order, UTF-8
    int m_nStatus = 0;           ///< 1 to 52, and 55: the order is open
};
using COrderDetailPtr = boost::shared_ptr<COrderDetail>;

/// What an account pays for trades in one instrument. Only the instrument is read here.
struct ORDERSERVICE_EXPORT CInstrumentFee : IData {
    TC::CInstrumentDetailPtr m_instrument;

    /// The key of the account's record for an instrument, in the table of fees.
    static std::string genKey(const TC::CInstrumentDetail& instrument, const TC::CAccountInfo& account) {
        return account.getKey() + "____" + instrument.m_strMarket + "____" + instrument.m_strCode;
    }
};

} // namespace knservice
