// The message for the algorithm platform.
#include "orderservice/func/AlgoMessage.h"

#include "orderservice/base/Bson.h"
#include "tests/support/CommaLocale.h"
#include "tests/support/FakeHost.h"
#include "tests/support/LogCapture.h"

#include <gtest/gtest.h>

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>
#include <boost/lexical_cast/bad_lexical_cast.hpp>

#include <map>
#include <string>
#include <vector>

namespace {

using namespace TC;

using CTexts = std::vector<std::string>;

CTexts splitAt(const std::string& text, const char* separators) {
    CTexts parts;
    boost::split(parts, text, boost::is_any_of(separators));
    return parts;
}

class AlgoMessage : public testing::Test {
protected:
    AlgoMessage() {
        host.user.accounts.at("A1")->m_nPlatformId = 21;
        host.rules.displayIds["A1"] = QStringLiteral("8001");
    }
    CCodeOrderParam record(int volume = 600) const {
        CCodeOrderParam made;
        made.m_account = host.user.accounts.at("A1");
        made.m_eOperationType = EOperationType::Buy;
        made.m_ePriceType = EPriceType::Specified;
        made.m_dPrice = 10.5;
        made.m_nVolume = volume;
        made.m_stock.m_strMarket = "SH";
        made.m_stock.m_strCode = "600000";
        return made;
    }
    /// The tags of a group in their order, and their values.
    void readGroup(const std::string& group) {
        tags.clear();
        values.clear();
        for (const std::string& pair : splitAt(group, "\x01")) {
            const std::size_t sign = pair.find('=');
            ASSERT_NE(sign, std::string::npos) << pair;
            tags.push_back(pair.substr(0, sign));
            values[tags.back()] = pair.substr(sign + 1);
        }
    }
    void make(const std::string& settings, const CCodeOrderParam& of) {
        readGroup(getAlgParamsStr(settings, {of}));
    }

    CFakeHost host;
    CTexts tags;
    std::map<std::string, std::string> values;
};

constexpr char kTwap[] = R"({"m_prdType":"1","m_strategyType":"twap","m_nValidTimeStart":"93000",
    "m_nValidTimeEnd":"150000","m_dLimitOverRate":"0.1","m_dMinAmountPerOrder":"100","m_nTargetPriceLevel":"3"})";

TEST_F(AlgoMessage, HasTheTagsInTheirOrder) {
    make(kTwap, record());
    EXPECT_EQ(tags, (CTexts{"40", "6061", "23001", "11", "15", "38", "44", "54", "55", "60", "100", "526",
                            "1", "7055", "7056"}));
}

TEST_F(AlgoMessage, HasTheValuesOfSettingsAndRecord) {
    make(kTwap, record());
    EXPECT_EQ(values["40"], "1");
    EXPECT_EQ(values["6061"], "TWAP");
    EXPECT_EQ(values["15"], "CNY");
    EXPECT_EQ(values["38"], "600");
    EXPECT_EQ(values["44"], "10.5");
    EXPECT_EQ(values["54"], "1");
    EXPECT_EQ(values["55"], "600000");
    EXPECT_EQ(values["60"], "20260105-08:00:00.000");
    EXPECT_EQ(values["100"], "SS");
    EXPECT_EQ(values["1"], "8001");
    EXPECT_EQ(values["7055"], "21");
    EXPECT_EQ(values["7056"], "18");
    EXPECT_EQ(values["11"].rfind("20260105-08:00:00.00080010", 0), 0u) << values["11"];
    EXPECT_EQ(values["526"].rfind("00008001_1767600000_", 0), 0u) << values["526"];
}

TEST_F(AlgoMessage, EntriesByKind) {
    make(kTwap, record());
    EXPECT_EQ(values["23001"], "m_nValidTimeStart&&93000|| m_nValidTimeEnd&&150000||m_dLimitOverRate&&0.1||"
                               "m_dMinAmountPerOrder&&100||m_nTargetPriceLevel&&3");
    make(R"({"m_strategyType":"IceBerg","m_dLimitOverRate":"0.2"})", record());
    EXPECT_EQ(values["6061"], "ICEBERG");
    EXPECT_EQ(values["23001"], "m_nValidTimeStart&&|| m_nValidTimeEnd&&||m_dLimitOverRate&&0.2||"
                               "m_dMinAmountPerOrder&&");
    make("{}", record());
    EXPECT_EQ(values["40"], "");
    EXPECT_EQ(values["6061"], "");
    EXPECT_EQ(values["23001"], "m_nValidTimeStart&&|| m_nValidTimeEnd&&||m_dLimitOverRate&&||"
                               "m_dMinAmountPerOrder&&||m_nTargetPriceLevel&&");
}

TEST_F(AlgoMessage, TwoKeysOfAGridShareOneText) {
    const auto gridOf = [this](const std::string& keys) {
        make(R"({"m_strategyType":"grid","m_nPriceDiffType":"1","m_dPriceDiffVal":"0.05",)" + keys +
                 R"("m_dOrderAmountDelta":"10"})",
             record());
        return values["23001"];
    };
    const std::string begin =
        "m_nValidTimeStart&&|| m_nValidTimeEnd&&||m_nPriceDiffType&&1||m_dPriceDiffVal&&"
        "0.05||m_nFirstOrderAmtType&&";
    const std::string end = "||m_dFirstOrderAmount&&||m_dOrderAmountDelta&&10";
    EXPECT_EQ(gridOf(R"("m_nFirstOrderAmtType":"1","m_dFirstOrderAmount":"5000",)"), begin + "5000" + end);
    EXPECT_EQ(gridOf(R"("m_dFirstOrderAmount":"5000","m_nFirstOrderAmtType":"1",)"), begin + "5000" + end);
    EXPECT_EQ(gridOf(R"("m_nFirstOrderAmtType":"1",)"), begin + "1" + end);
    EXPECT_EQ(gridOf(""), begin + end);
    EXPECT_EQ(values["6061"], "GRID");
}

TEST_F(AlgoMessage, EachRecordIsAGroup) {
    const CTexts groups = splitAt(getAlgParamsStr(kTwap, {record(100), record(200)}), "@");
    ASSERT_EQ(groups.size(), 2u);
    readGroup(groups[0]);
    const auto first = values;
    readGroup(groups[1]);
    EXPECT_EQ(first.at("38"), "100");
    EXPECT_EQ(values["38"], "200");
    EXPECT_EQ(first.at("23001"), values["23001"]);
    EXPECT_EQ(first.at("60"), values["60"]);
    EXPECT_EQ(values["11"].rfind("20260105-08:00:00.00080011", 0), 0u) << values["11"]; // index 1
    EXPECT_EQ(getAlgParamsStr(kTwap, {}), "");
}

TEST_F(AlgoMessage, PriceMayBeLeftToThePlatform) {
    CCodeOrderParam priced = record();
    priced.m_eOrderType = EOrderType{9};
    make(kTwap, priced);
    EXPECT_EQ(values["44"], "10.5");
    priced.m_ePriceType = EPriceType::Latest;
    make(kTwap, priced);
    EXPECT_EQ(values["44"], "0");
    priced.m_eOrderType = EOrderType{13};
    make(kTwap, priced);
    EXPECT_EQ(values["44"], "10.5");
}

TEST_F(AlgoMessage, NumbersHaveAPointInEveryLocale) {
    const CCommaLocale locale;
    CCodeOrderParam priced = record();
    priced.m_dPrice = 0.1;
    make(kTwap, priced);
    EXPECT_EQ(values["44"], "0.10000000000000001");
    priced.m_dPrice = 11;
    make(kTwap, priced);
    EXPECT_EQ(values["44"], "11");
}

TEST_F(AlgoMessage, SalesOnAnotherMarket) {
    CCodeOrderParam sale = record();
    sale.m_eOperationType = EOperationType::Sell;
    sale.m_stock.m_strMarket = "SZ";
    make(kTwap, sale);
    EXPECT_EQ(values["54"], "2");
    EXPECT_EQ(values["100"], "SZ");
    EXPECT_EQ(values["7056"], "19");
}

TEST_F(AlgoMessage, SharedAccountDoesNotChange) {
    make(kTwap, record());
    EXPECT_EQ(host.user.accounts.at("A1")->m_strKey, "A1");
    EXPECT_EQ(host.user.accounts.at("A1")->getKey(), "A1");
}

TEST_F(AlgoMessage, RecordWithoutAnAccountHasEmptyIds) {
    CCodeOrderParam lost = record();
    lost.m_account = nullptr;
    make(kTwap, lost);
    EXPECT_EQ(values["1"], "");
    EXPECT_EQ(values["7055"], "");
}

TEST_F(AlgoMessage, SettingsThatCannotBeReadGiveNoMessage) {
    CLogCapture log;
    utils::CLogCenter::setLogEnabled(true);
    for (const char* text : {"", "TWAP", "[]", R"({"m_prdType":1})", R"({"m_nValidTimeEnd":150000})"})
        EXPECT_EQ(getAlgParamsStr(text, {record()}), "") << text;
    EXPECT_NE(log.lines().back().text.find("COrderFuncService parser smartAlgo Param error  wrong type"),
              std::string::npos)
        << log.lines().back().text;
    EXPECT_NE(log.lines().front().text.find("COrderFuncService smartAlgoParam, strParam "),
              std::string::npos);
}

TEST_F(AlgoMessage, EndOfTheTimeRange) {
    int time = -7;
    EXPECT_TRUE(readValidTimeEnd(kTwap, time));
    EXPECT_EQ(time, 150000);
    EXPECT_FALSE(readValidTimeEnd("{}", time));
    EXPECT_EQ(time, 150000);
    EXPECT_THROW(readValidTimeEnd("{", time), bson::CError);
    EXPECT_THROW(readValidTimeEnd(R"({"m_nValidTimeEnd":150000})", time), bson::CError);
    EXPECT_THROW(readValidTimeEnd(R"({"m_nValidTimeEnd":"soon"})", time), boost::bad_lexical_cast);
}

} // namespace
