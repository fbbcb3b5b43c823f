#include "orderservice/records/TradeInterface.h"

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

namespace {

using knservice::CFrameWorkInstrumentWhiteList;
using knservice::IData;
using knservice::TradeInterfaceData;

boost::shared_ptr<IData> entryOf(const std::string& json) {
    const auto entry = boost::make_shared<CFrameWorkInstrumentWhiteList>();
    entry->bsonValueFromObj(bson::fromjson(json));
    return entry;
}

/// A record in which every stored field differs from its default.
TradeInterfaceData full() {
    TradeInterfaceData record;
    record.m_strInterface = "动量";
    record.m_strAccount = "acc\"1\"";
    record.m_strAccountKey = "2____1__1";
    record.m_strStock = "SZ000001";
    record.m_nPeroid = 60000;
    record.m_bAutoBalance = true;
    record.m_nBalanceTime = 145500;
    record.m_bStartupAutorun = true;
    record.m_bSwitchAutorun = true;
    record.m_bUsePrevWhitelist = true;
    record.m_bAutoStoploss = true;
    record.m_nMaxLoss = 20000;
    record.whitelist = {entryOf("{\"code\":\"600000\",\"max\":2}"), entryOf("{}")};
    return record;
}

const char* const kFullText =
    R"({ "m_strInterface" : "动量", "m_strAccount" : "acc\"1\"", "m_strAccountKey" : "2____1__1", )"
    R"("m_strStock" : "SZ000001", "m_nPeroid" : 60000, "m_bAutoBalance" : true, "m_nBalanceTime" : 145500, )"
    R"("m_bStartupAutorun" : true, "m_bSwitchAutorun" : true, "m_bUsePrevWhitelist" : true, )"
    R"("m_bAutoStoploss" : true, "m_nMaxLoss" : 20000, )"
    R"("whitelist" : [ "{ \"code\" : \"600000\", \"max\" : 2 }", "{ }" ] })";

const char* const kDefaultText =
    R"({ "m_strInterface" : "", "m_strAccount" : "", "m_strAccountKey" : "", "m_strStock" : "SH000300", )"
    R"("m_nPeroid" : 0, "m_bAutoBalance" : false, "m_nBalanceTime" : -1, "m_bStartupAutorun" : false, )"
    R"("m_bSwitchAutorun" : false, "m_bUsePrevWhitelist" : false, "m_bAutoStoploss" : false, )"
    R"("m_nMaxLoss" : 0, "whitelist" : [ ] })";

TradeInterfaceData filled(const std::string& text) {
    TradeInterfaceData record;
    record.fillFromJson(text);
    return record;
}

TEST(TradeInterface, DefaultsOfTheConstructor) {
    const TradeInterfaceData record;
    EXPECT_EQ(record.m_strInterface, "");
    EXPECT_EQ(record.m_strAccount, "");
    EXPECT_EQ(record.m_strAccountKey, "");
    EXPECT_EQ(record.m_strStock, "SH000300");
    EXPECT_EQ(record.m_nPeroid, 0);
    EXPECT_FALSE(record.m_bAutoBalance);
    EXPECT_EQ(record.m_nBalanceTime, -1);
    EXPECT_FALSE(record.m_bStartupAutorun || record.m_bSwitchAutorun);
    EXPECT_FALSE(record.m_bUsePrevWhitelist || record.m_bAutoStoploss);
    EXPECT_EQ(record.m_nMaxLoss, 0);
    EXPECT_TRUE(record.whitelist.empty());
}

TEST(TradeInterface, FieldsThatAreNotStoredStartAtZero) {
    const TradeInterfaceData record;
    EXPECT_EQ(record.m_nReserved, 0);
    EXPECT_FALSE(record.m_bReserved);
    for (const std::uint64_t word : record.m_reservedWords)
        EXPECT_EQ(word, 0U);
    for (const std::uint64_t word : record.m_reservedTail)
        EXPECT_EQ(word, 0U);
}

TEST(TradeInterface, IsWrittenOnOneLineWithItsKeysInOrder) {
    EXPECT_EQ(full().toJson(), kFullText);
    EXPECT_EQ(TradeInterfaceData().toJson(), kDefaultText);
}

TEST(TradeInterface, StoredKeysAreThoseThatAreWritten) {
    EXPECT_EQ(TradeInterfaceData::storedKeys(), bson::keysOf(bson::fromjson(kDefaultText)));
}

TEST(TradeInterface, IsReadBackEqual) {
    const TradeInterfaceData record = filled(kFullText);
    EXPECT_EQ(record.m_strInterface, "动量");
    EXPECT_EQ(record.m_strAccount, "acc\"1\"");
    EXPECT_EQ(record.m_strAccountKey, "2____1__1");
    EXPECT_EQ(record.m_strStock, "SZ000001");
    EXPECT_EQ(record.m_nPeroid, 60000);
    EXPECT_TRUE(record.m_bAutoBalance);
    EXPECT_EQ(record.m_nBalanceTime, 145500);
    EXPECT_TRUE(record.m_bStartupAutorun);
    EXPECT_TRUE(record.m_bSwitchAutorun);
    EXPECT_TRUE(record.m_bUsePrevWhitelist);
    EXPECT_TRUE(record.m_bAutoStoploss);
    EXPECT_EQ(record.m_nMaxLoss, 20000);
    ASSERT_EQ(record.whitelist.size(), 2U);
    EXPECT_EQ(record.whitelist[0]->toBson(), bson::fromjson("{\"code\":\"600000\",\"max\":2}"));
    EXPECT_TRUE(record.whitelist[1]->toBson().isEmpty());
    EXPECT_EQ(record.toJson(), kFullText);
}

TEST(TradeInterface, EntriesOfTheWhiteListAreOfTheirOwnKind) {
    for (const boost::shared_ptr<IData>& entry : filled(kFullText).whitelist)
        EXPECT_NE(boost::dynamic_pointer_cast<CFrameWorkInstrumentWhiteList>(entry), nullptr);
}

TEST(TradeInterface, AnAbsentKeyLeavesTheDefault) {
    EXPECT_EQ(filled("{}").toJson(), kDefaultText);
    const TradeInterfaceData record = filled("{\"m_strInterface\":\"a\",\"m_nBalanceTime\":5}");
    EXPECT_EQ(record.m_strStock, "SH000300");
    EXPECT_EQ(record.m_strInterface, "a");
    EXPECT_EQ(record.m_nBalanceTime, 5);
}

TEST(TradeInterface, UnknownKeysAndAnotherOrderAreTaken) {
    const TradeInterfaceData record =
        filled(R"({"new":{},"m_nMaxLoss":-3,"m_strStock":"SZ000002","m_nPeriod":9})");
    EXPECT_EQ(record.m_nMaxLoss, -3);
    EXPECT_EQ(record.m_strStock, "SZ000002");
    EXPECT_EQ(record.m_nPeroid, 0) << "the key is spelled another way";
}

TEST(TradeInterface, FieldsThatAreNotStoredAreNotInTheText) {
    TradeInterfaceData record;
    record.m_nReserved = 1;
    record.m_bReserved = true;
    record.m_reservedWords[1] = 2;
    record.m_reservedTail[1] = 3;
    EXPECT_EQ(record.toJson(), kDefaultText);
}

TEST(TradeInterface, NullEntriesOfTheWhiteListAreNotWritten) {
    TradeInterfaceData record;
    record.whitelist = {nullptr, entryOf("{\"a\":1}"), nullptr};
    EXPECT_NE(record.toJson().find(R"("whitelist" : [ "{ \"a\" : 1 }" ] })"), std::string::npos);
}

TEST(TradeInterface, TheWhiteListHasRoomForAllEntriesUpFront) {
    const TradeInterfaceData record = filled(R"({"whitelist":["{}","{}","{}","{}","{}"]})");
    EXPECT_EQ(record.whitelist.size(), 5U);
    EXPECT_EQ(record.whitelist.capacity(), 5U);
}

TEST(TradeInterface, AWhiteListWithRoomKeepsIt) {
    TradeInterfaceData record;
    record.whitelist.reserve(8);
    record.fillFromJson(R"({"whitelist":["{}","{}"]})");
    EXPECT_EQ(record.whitelist.size(), 2U);
    EXPECT_EQ(record.whitelist.capacity(), 8U);
}

TEST(TradeInterface, EntriesOfASecondTextComeBehindTheFirsts) {
    TradeInterfaceData record = filled(R"({"whitelist":["{\"a\":1}"]})");
    record.fillFromJson(R"({"whitelist":["{\"a\":2}"]})");
    ASSERT_EQ(record.whitelist.size(), 2U);
    EXPECT_EQ(record.whitelist[1]->toBson(), bson::fromjson("{\"a\":2}"));
}

TEST(TradeInterface, EntriesBeforeABadOneStay) {
    TradeInterfaceData record;
    EXPECT_THROW(record.fillFromJson(R"({"whitelist":["{\"a\":1}","{\"a\":2}","{","{\"a\":4}"]})"),
                 bson::CJsonError);
    ASSERT_EQ(record.whitelist.size(), 2U);
    EXPECT_EQ(record.whitelist[0]->toBson(), bson::fromjson("{\"a\":1}"));
    EXPECT_EQ(record.whitelist[1]->toBson(), bson::fromjson("{\"a\":2}"));
}

/// A text that must be refused, and the message of its error.
struct CRefusedRow {
    const char* text;
    const char* message;
};

template<typename Error>
void expectRefused(const CRefusedRow& row) {
    TradeInterfaceData record;
    try {
        record.fillFromJson(row.text);
        ADD_FAILURE() << row.text << " was read";
    } catch (const Error& error) {
        EXPECT_STREQ(error.what(), row.message) << row.text;
    }
}

TEST(TradeInterface, AKeyOfAnotherTypeIsRefused) {
    const CRefusedRow rows[] = {
        {R"({"m_strInterface":1})", "wrong type for field (m_strInterface) 16 != 2"},
        {R"({"m_strAccount":null})", "wrong type for field (m_strAccount) 10 != 2"},
        {R"({"m_strAccountKey":true})", "wrong type for field (m_strAccountKey) 8 != 2"},
        {R"({"m_strStock":["SH000300"]})", "wrong type for field (m_strStock) 4 != 2"},
        {R"({"m_nPeroid":2147483648})", "wrong type for field (m_nPeroid) 18 != 16"},
        {R"({"m_nPeroid":"60"})", "wrong type for field (m_nPeroid) 2 != 16"},
        {R"({"m_bAutoBalance":1})", "wrong type for field (m_bAutoBalance) 16 != 8"},
        {R"({"m_bAutoBalance":"true"})", "wrong type for field (m_bAutoBalance) 2 != 8"},
        {R"({"m_nBalanceTime":-1.0})", "wrong type for field (m_nBalanceTime) 1 != 16"},
        {R"({"m_bStartupAutorun":0})", "wrong type for field (m_bStartupAutorun) 16 != 8"},
        {R"({"m_bSwitchAutorun":null})", "wrong type for field (m_bSwitchAutorun) 10 != 8"},
        {R"({"m_bUsePrevWhitelist":{}})", "wrong type for field (m_bUsePrevWhitelist) 3 != 8"},
        {R"({"m_bAutoStoploss":1.0})", "wrong type for field (m_bAutoStoploss) 1 != 8"},
        {R"({"m_nMaxLoss":0.5})", "wrong type for field (m_nMaxLoss) 1 != 16"},
        {R"({"m_nMaxLoss":5.0})", "wrong type for field (m_nMaxLoss) 1 != 16"},
        {R"({"m_nMaxLoss":2147483648})", "wrong type for field (m_nMaxLoss) 18 != 16"},
        {R"({"whitelist":"{}"})", "wrong type for field (whitelist) 2 != 4"},
        {R"({"whitelist":["{}",{}]})", "wrong type for field (1) 3 != 2"},
    };
    for (const CRefusedRow& row : rows)
        expectRefused<bson::CTypeError>(row);
}

TEST(TradeInterface, TextsThatAreNoObjectAreRefused) {
    const CRefusedRow rows[] = {
        {"", "the text is empty; expected a JSON object"},
        {"[]", "the text does not begin with {; expected a JSON object"},
        {"{\"m_nMaxLoss\":}",
         "the text is not a JSON object: line 1, column 15: syntax error while parsing value - "
         "unexpected '}'; expected '[', '{', or a literal"},
        {R"({"whitelist":["{}",""]})", "the text is empty; expected a JSON object"},
        {R"({"whitelist":["[]"]})", "the text does not begin with {; expected a JSON object"},
    };
    for (const CRefusedRow& row : rows)
        expectRefused<bson::CJsonError>(row);
}

TEST(TradeInterface, FieldsAreReadInTheirOrderWhateverTheTexts) {
    TradeInterfaceData record;
    EXPECT_THROW(record.fillFromJson(R"({"m_nMaxLoss":7,"m_nBalanceTime":"x","m_strAccount":"a"})"),
                 bson::CTypeError);
    EXPECT_EQ(record.m_strAccount, "a");
    EXPECT_EQ(record.m_nMaxLoss, 0);
}

TEST(TradeInterface, ALossWithAFractionIsWrittenAndNotRead) {
    TradeInterfaceData record;
    record.m_nMaxLoss = 0.5;
    EXPECT_NE(record.toJson().find("\"m_nMaxLoss\" : 0.5,"), std::string::npos);
    EXPECT_THROW(filled(record.toJson()), bson::CTypeError);
}

TEST(TradeInterface, AWidePeriodIsWrittenAndNotRead) {
    TradeInterfaceData record;
    record.m_nPeroid = 86400000000;
    EXPECT_NE(record.toJson().find("\"m_nPeroid\" : 86400000000,"), std::string::npos);
    EXPECT_THROW(filled(record.toJson()), bson::CTypeError);
}

TEST(TradeInterface, ARecordThatIsNotStoredHasNoDocument) {
    class CPlain : public IData {};
    CPlain plain;
    EXPECT_TRUE(plain.toBson().isEmpty());
    EXPECT_NO_THROW(plain.bsonValueFromObj(bson::fromjson("{\"a\":1}")));
}

/// Settings documents that were saved earlier must stay readable.
TEST(TradeInterface, NamesInASettingsDocumentStayTheSame) {
    EXPECT_STREQ(knservice::kInterfacesTag, "interfaceTrade");
    EXPECT_STREQ(knservice::kInterfaceDataAttribute, "interfacedata");
}

} // namespace
