#pragma once

#include "records/Data.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <list>
#include <string>
#include <vector>

namespace knservice {

/// One entry of an interface's white list. Which fields it has is the host's business; here it is kept whole,
/// as it came.
class CFrameWorkInstrumentWhiteList : public IData {
public:
    bson::BSONObj toBson() const override { return m_object; }
    void bsonValueFromObj(const bson::BSONObj& object) override { m_object = object; }

    bson::BSONObj m_object;
};

/// The element of a settings document that has a child for each interface, and the attribute of such a child
/// that holds the interface's JSON text.
inline constexpr const char* kInterfacesTag = "interfaceTrade";
inline constexpr const char* kInterfaceDataAttribute = "interfacedata";

/// One interface of the trade framework: which strategy library runs on which account, with its automatic
/// settings. Fields called reserved are the framework's, and are not stored.
class TradeInterfaceData {
public:
    /// The keys of the stored fields, in the order in which they are written; the white list's is the last.
    static std::vector<std::string> storedKeys();

    /// The stored fields as JSON text in UTF-8, on one line: strings, numbers and flags under the names of
    /// their members, and the white list as a list of JSON texts, without its null entries.
    std::string toJson() const;

    /// Reads the stored fields from the text; a field that is absent there keeps its value. Integers and
    /// m_nMaxLoss must stand there as integers of 32 bits: a loss with a fraction is written and not read.
    /// White list entries come behind those that the record has. Throws bson::CJsonError where the text or
    /// that of an entry is no JSON object, and bson::CTypeError for a field of another type; the fields
    /// before it have been read then.
    void fillFromJson(const std::string& text);

    int m_nReserved = 0;
    std::string m_strInterface; ///< name
    std::string m_strAccount;
    std::string m_strAccountKey;
    std::string m_strStock = "SH000300"; ///< instrument
    std::int64_t m_nPeroid = 0;          ///< period; stored under this very spelling
    std::uint64_t m_reservedWords[3] = {};
    bool m_bAutoBalance = false;
    int m_nBalanceTime = -1;
    bool m_bReserved = false;
    bool m_bStartupAutorun = false;
    bool m_bSwitchAutorun = false;
    bool m_bUsePrevWhitelist = false;
    bool m_bAutoStoploss = false;
    double m_nMaxLoss = 0;
    std::uint64_t m_reservedTail[2] = {};
    std::vector<boost::shared_ptr<IData>>
        whitelist; ///< CFrameWorkInstrumentWhiteList each; entries may be null
};

using TradeInterfaceDataPtr = boost::shared_ptr<TradeInterfaceData>;
using TradeInterfaceList = std::list<TradeInterfaceDataPtr>;

} // namespace knservice
