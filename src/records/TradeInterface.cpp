#include "orderservice/records/TradeInterface.h"

#include <boost/make_shared.hpp>

#include <variant>

namespace knservice {
namespace {

using CRecord = TradeInterfaceData;

/// A stored field: its key and its member. The member's type is the type of the written value.
struct CStoredField {
    const char* key;
    std::variant<std::string CRecord::*, std::int64_t CRecord::*, int CRecord::*, bool CRecord::*,
                 double CRecord::*>
        member;
};

/// The fields are written and read in this order.
const CStoredField kStoredFields[] = {
    {"m_strInterface", &CRecord::m_strInterface},
    {"m_strAccount", &CRecord::m_strAccount},
    {"m_strAccountKey", &CRecord::m_strAccountKey},
    {"m_strStock", &CRecord::m_strStock},
    {"m_nPeroid", &CRecord::m_nPeroid},
    {"m_bAutoBalance", &CRecord::m_bAutoBalance},
    {"m_nBalanceTime", &CRecord::m_nBalanceTime},
    {"m_bStartupAutorun", &CRecord::m_bStartupAutorun},
    {"m_bSwitchAutorun", &CRecord::m_bSwitchAutorun},
    {"m_bUsePrevWhitelist", &CRecord::m_bUsePrevWhitelist},
    {"m_bAutoStoploss", &CRecord::m_bAutoStoploss},
    {"m_nMaxLoss", &CRecord::m_nMaxLoss},
};

constexpr const char* kWhitelistKey = "whitelist";

void readValue(const bson::BSONObj& object, const char* key, std::string& value) {
    bson::readField(object, key, value);
}

void readValue(const bson::BSONObj& object, const char* key, bool& value) {
    bson::readField(object, key, value);
}

/// Numbers are always read as 32-bit integers, although they may be written with another type.
template<typename Number>
void readValue(const bson::BSONObj& object, const char* key, Number& value) {
    std::int32_t number = 0;
    if (bson::readField(object, key, number)) value = number;
}

void readWhitelist(const bson::BSONObj& object, std::vector<boost::shared_ptr<IData>>& whitelist) {
    std::vector<std::string> texts;
    bson::readField(object, kWhitelistKey, texts);
    if (texts.size() > whitelist.capacity()) whitelist.reserve(texts.size());
    for (const std::string& text : texts) {
        const bson::BSONObj parsed = bson::fromjson(text);
        const boost::shared_ptr<IData> entry = boost::make_shared<CFrameWorkInstrumentWhiteList>();
        entry->bsonValueFromObj(parsed);
        whitelist.push_back(entry);
    }
}

std::vector<std::string> whitelistTexts(const std::vector<boost::shared_ptr<IData>>& whitelist) {
    std::vector<std::string> texts;
    for (const boost::shared_ptr<IData>& entry : whitelist) {
        if (entry != nullptr) texts.push_back(entry->toBson().jsonString());
    }
    return texts;
}

} // namespace

std::vector<std::string> TradeInterfaceData::storedKeys() {
    std::vector<std::string> keys;
    for (const CStoredField& field : kStoredFields)
        keys.emplace_back(field.key);
    keys.emplace_back(kWhitelistKey);
    return keys;
}

std::string TradeInterfaceData::toJson() const {
    bson::BSONObjBuilder builder;
    for (const CStoredField& field : kStoredFields) {
        std::visit([&](auto member) { builder.append(field.key, this->*member); }, field.member);
    }
    return builder.append(kWhitelistKey, whitelistTexts(whitelist)).obj().jsonString();
}

void TradeInterfaceData::fillFromJson(const std::string& text) {
    const bson::BSONObj object = bson::fromjson(text);
    for (const CStoredField& field : kStoredFields) {
        std::visit([&](auto member) { readValue(object, field.key, this->*member); }, field.member);
    }
    readWhitelist(object, whitelist);
}

} // namespace knservice
