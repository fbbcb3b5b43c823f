#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/records/Data.h"
#include "orderservice/records/Enums.h"

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

namespace TC {

/// One account. The host creates it and shares it by shared pointer.
struct ORDERSERVICE_EXPORT CAccountInfo : knservice::IData {
    int m_nBrokerType = -1; ///< an EQDBrokerType
    int m_nPlatformId = -1; ///< number of the account's platform; the host defines it
    std::string m_strKey;   ///< UTF-8
    std::string getKey() const override { return keyWith(m_strKey); }
    /// The key that the account would have if m_strKey were this text. A host whose keys have further parts
    /// overrides it. Messages for algorithms name the account by the key with its platform's number.
    virtual std::string keyWith(const std::string& text) const { return text; }
};

using CAccountInfoPtr = boost::shared_ptr<CAccountInfo>;

/// A user's account in the configuration.
class ORDERSERVICE_EXPORT CAccount {
public:
    virtual ~CAccount() = default;
    virtual CAccountInfoPtr toInfo() const = 0;
    /// The account's key, UTF-8; empty if it has no record. By default that of the record.
    virtual std::string key() const {
        const CAccountInfoPtr info = toInfo();
        return info ? info->getKey() : std::string();
    }
};

using CAccountPtr = boost::shared_ptr<CAccount>;

/// A named group of accounts. The host keeps the weights of the members.
struct CAccountGroup {
    EQDBrokerType m_eBrokerType = EQDBrokerType::Stock;
    std::string m_strName;               ///< UTF-8
    std::vector<std::string> m_accounts; ///< keys of the members, UTF-8
};

} // namespace TC
