#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/records/Enums.h"

#include <string>

namespace TC {

class CUserConfig;

/// What the logged-in user may do, who the user is, and how many strategies are loaded. A part of
/// CUserConfig, whose comment says when the operations are called.
class ORDERSERVICE_EXPORT CUserRights {
public:
    using CService = CUserConfig; ///< reports show these operations under its name

    /// Whether the user's orders use the one-pass variant (COrderServiceUnion). If false, they use the
    /// two-pass variant (COrderServiceSplit) if the user has a right, and are dropped otherwise.
    virtual bool hasOrderService() const = 0;
    /// Whether the user has a right. While hasOrderService() is true, rights only affect the wording of
    /// messages. In the two-pass variant, file strategies are loaded only with the right to file orders, and
    /// socket strategies only with the right to signal orders.
    virtual bool hasUserAuth(EUserAuth right) const = 0;
    /// Whether the user may use the trade framework. It is not implemented, so true only causes a message.
    virtual bool hasShowTradeFrameworkPermission() const = 0;
    /// Whether the user's order files are encrypted. If true, no file strategy starts, because encrypted
    /// files cannot be read.
    virtual bool hasOrderEncryptionService() const = 0;

    /// The user's name for records and remarks. UTF-8; may be empty.
    virtual std::string getUserName() const = 0;
    /// Number of the user kind. Commands are sent for the kinds 80, 90, 91, 92, 100 and 101. For other kinds
    /// the orders are checked, but no command is sent and no message is shown.
    virtual int getUserKind() const = 0;

    /// Maximum number of strategies that COrderService::loadFromConfig loads. If there are more, the
    /// strategies with the highest channel numbers are not loaded. With the switch "mdl_order_split_orderNum"
    /// on, and in the two-pass variant, it limits the file strategies only.
    virtual int getMaxOrderServerNum() const = 0;
    /// The same limit for socket strategies. Called only if the switch "mdl_order_split_orderNum" is on, and
    /// for the two-pass variant.
    virtual int getMaxOrderServerNumSocket() const = 0;

protected:
    virtual ~CUserRights() = default;
};

} // namespace TC
