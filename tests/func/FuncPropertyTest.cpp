// What holds for every call, tried with random ones.
#include "tests/func/FuncServiceFixture.h"

#include <algorithm>
#include <cmath>
#include <random>
#include <sstream>

namespace {

using namespace TC;

constexpr int kTries = 3000;

class FuncProperty : public FuncServiceFixture {
protected:
    FuncProperty() {
        host.user.addGroup(EQDBrokerType::Credit, "G", {{"A1", 1}, {"A2", 1}});
        defaults["accountID"] = "\"G\"";
    }
    int pick(int from, int to) { return std::uniform_int_distribution<int>(from, to)(random); }
    template<typename T>
    T oneOf(std::initializer_list<T> values) {
        return *(values.begin() + pick(0, static_cast<int>(values.size()) - 1));
    }
    /// Gives both accounts random limits and assets.
    void shake() {
        for (const char* key : {"A1", "A2"}) {
            accounts.at(key)->m_dUsable = oneOf<double>({0, 50, 99, 100, 150, 1e4, 1e9, 3e9, 1e300, DBL_MAX});
            const auto assets = boost::make_shared<knservice::CAccountDetail>();
            assets->m_dAssetCheck = 1;
            assets->m_dAssetForRatio = pick(0, 10000000);
            accounts.at(key)->m_detail = assets;
        }
        host.types.units["SH600000"] = oneOf({1, 10, 100, 200});
    }
    void tryOne(const std::map<std::string, std::string>& changes) {
        forget();
        failures.clear();
        pass(changes);
    }
    static std::string quoted(double number) {
        std::ostringstream text;
        text.precision(17);
        text << '"' << number << '"';
        return text.str();
    }

    std::mt19937 random{20261123};
};

TEST_F(FuncProperty, NoStockOrderIsAboveTheUsableVolumeAndLotsAreLegal) {
    int sent = 0;
    for (int i = 0; i < kTries; ++i) {
        shake();
        const bool isSale = pick(0, 1) == 1;
        tryOne({{"opType", isSale ? "24" : "23"},
                {"orderType", "1201"},
                {"modelVolume", quoted(oneOf<double>({1, 99, 100, 150, 250, 1e4, 1e9, 2147483647, 1e12}))}});
        const int unit = host.types.units["SH600000"];
        for (const auto& command : host.commands()) {
            for (const CCodeOrderParam& record : command->m_codes) {
                ++sent;
                const double usable = accounts.at(record.m_account->getKey())->m_dUsable;
                EXPECT_LE(record.m_nVolume, usable);
                const bool isAll = isSale && record.m_nVolume == usable;
                EXPECT_TRUE(isAll || record.m_nVolume % unit == 0) << record.m_nVolume << " of " << unit;
                EXPECT_GE(record.m_nVolume, 0);
            }
        }
        // Nothing is both sent and refused, unless an account is left out.
        EXPECT_TRUE(host.commands().empty() || failures.empty() ||
                    failures[0].text.find("自动过滤") != std::string::npos);
        EXPECT_FALSE(host.commands().empty() && failures.empty());
    }
    EXPECT_GT(sent, kTries / 10); // the limits do not refuse everything
}

TEST_F(FuncProperty, NoCreditOrderIsAboveTheUsableVolume) {
    int sent = 0;
    for (int i = 0; i < kTries; ++i) {
        shake();
        tryOne({{"opType", std::to_string(oneOf({27, 28, 29, 30, 31, 33, 34}))},
                {"orderType", "1201"},
                {"modelVolume", quoted(oneOf<double>({1, 99, 100, 150, 250, 1e4, 1e9, 1e12}))}});
        for (const auto& command : host.commands()) {
            for (const CCodeOrderParam& record : command->m_codes) {
                ++sent;
                EXPECT_LE(record.m_nVolume, accounts.at(record.m_account->getKey())->m_dUsable);
                EXPECT_GE(record.m_nVolume, 0);
            }
        }
    }
    EXPECT_GT(sent, kTries / 10);
}

TEST_F(FuncProperty, RatioNeverSpendsMoreThanItsShare) {
    int sent = 0;
    for (int i = 0; i < kTries; ++i) {
        shake();
        const double ratio = pick(0, 1000) / 1000.0;
        const double price = pick(900, 1100) / 100.0;
        const bool isAssets = pick(0, 1) == 1;
        if (ratio == 0) continue;
        tryOne({{"orderType", isAssets ? "1213" : "1223"},
                {"modelVolume", quoted(ratio)},
                {"modelPrice", quoted(price)}});
        for (const auto& command : host.commands()) {
            for (const CCodeOrderParam& record : command->m_codes) {
                ++sent;
                const CFakeFuncAccount& account = *accounts.at(record.m_account->getKey());
                const double share =
                    isAssets ? ratio * account.m_detail->m_dAssetForRatio / price : ratio * account.m_dUsable;
                EXPECT_LE(record.m_nVolume, std::min(share, account.m_dUsable) * (1 + 1e-12));
                EXPECT_EQ(record.m_nVolume % host.types.units["SH600000"], 0);
            }
        }
    }
    EXPECT_GT(sent, kTries / 10);
}

std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);)
        parts.push_back(part);
    return parts;
}

/// The value of a tag in a group of the message.
std::string tagOf(const std::string& group, const std::string& tag) {
    for (const std::string& pair : split(group, '\x01')) {
        if (pair.compare(0, tag.size() + 1, tag + "=") == 0) return pair.substr(tag.size() + 1);
    }
    return "none";
}

TEST_F(FuncProperty, SmartMessageReadsBackToItsRecords) {
    int groups = 0;
    for (int i = 0; i < kTries / 10; ++i) {
        forget();
        const std::string end = std::to_string(pick(0, 235959));
        service.doParserOrder("SMARTALGOPYPASSORDER",
                              textOf({{"orderType", "1201"},
                                      {"opType", pick(0, 1) == 1 ? "23" : "24"},
                                      {"modelVolume", quoted(100.0 * pick(1, 1000))},
                                      {"modelPrice", quoted(pick(900, 1100) / 100.0)}}),
                              R"({"m_strategyType":"twap","m_prdType":"2","m_nValidTimeEnd":")" + end +
                                  "\"}");
        const auto command = onlyCommand();
        const std::vector<std::string> found = split(command->m_strAlgoParam, '@');
        ASSERT_EQ(found.size(), command->m_codes.size());
        for (std::size_t n = 0; n < found.size(); ++n) {
            ++groups;
            const CCodeOrderParam& record = command->m_codes[n];
            EXPECT_EQ(tagOf(found[n], "38"), std::to_string(record.m_nVolume));
            EXPECT_EQ(std::stod(tagOf(found[n], "44")), record.m_dPrice);
            EXPECT_EQ(tagOf(found[n], "54"), record.m_eOperationType == EOperationType::Buy ? "1" : "2");
            EXPECT_EQ(tagOf(found[n], "55"), record.m_stock.m_strCode);
            EXPECT_EQ(tagOf(found[n], "1"), record.m_account->getKey());
            EXPECT_EQ(tagOf(found[n], "7056"), std::to_string(static_cast<int>(record.m_eOperationType)));
            EXPECT_EQ(tagOf(found[n], "6061"), "TWAP");
            EXPECT_NE(tagOf(found[n], "23001").find("m_nValidTimeEnd&&" + end), std::string::npos);
            EXPECT_EQ(record.m_nValidTimeEnd, std::stoi(end));
        }
    }
    EXPECT_EQ(groups, 2 * (kTries / 10));
}

} // namespace
