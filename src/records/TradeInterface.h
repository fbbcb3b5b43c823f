#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/records/Data.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <list>
#include <string>
#include <vector>

namespace knservice {

/// One entry of an interface's white list. The host defines its fields; the library stores the document
/// unchanged.
class ORDERSERVICE_EXPORT CFrameWorkInstrumentWhiteList : public IData {
public:
    bson::BSONObj toBson() const override { return m_object; }
    void bsonValueFromObj(const bson::BSONObj& object) override { m_object = object; }

    bson::BSONObj m_object;
};

/// Names in a settings document: the element that has one child for each interface, and the attribute of a
/// child that contains the interface's JSON text.
inline constexpr const char* kInterfacesTag = "interfaceTrade";
inline constexpr const char* kInterfaceDataAttribute = "interfacedata";

/// One interface of the trade framework: which strategy library runs on which account, with its automatic
/// settings. The reserved fields belong to the framework and are not stored.
class ORDERSERVICE_EXPORT TradeInterfaceData {
public:
    /// The keys of the stored fields in the order in which they are written. The key of the white list is the
    /// last.
    static std::vector<std::string> storedKeys();

    /// The stored fields as JSON text in UTF-8, on one line. Strings, numbers and flags have the names of
    /// their members as keys. The white list is a list of JSON texts without its null entries.
    std::string toJson() const;

    /// Reads the stored fields from the text. A field that is absent in the text keeps its value. Integers
    /// and m_nMaxLoss must be 32-bit integers in the text. So a loss with a fraction can be written but not
    /// read. White list entries are appended to the entries of the record. Throws bson::CJsonError if the
    /// text, or the text of an entry, is not a JSON object. Throws bson::CTypeError if a field has the wrong
    /// type; the fields before it have been read then.
    void fillFromJson(const std::string& text);

    int m_nReserved = 0;
    std::string m_strInterface; ///< name
    std::string m_strAccount;
    std::string m_strAccountKey;
    std::string m_strStock = "SH000300"; ///< instrument
    std::int64_t m_nPeroid = 0;          ///< period; stored with this spelling
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
    std::vector<boost::shared_ptr<IData>> whitelist; ///< entries are CFrameWorkInstrumentWhiteList or null
};

using TradeInterfaceDataPtr = boost::shared_ptr<TradeInterfaceData>;
using TradeInterfaceList = std::list<TradeInterfaceDataPtr>;

} // namespace knservice
