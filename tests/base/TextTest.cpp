#include "orderservice/base/Text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

const std::string kStrategyGbk = "\xB2\xDF\xC2\xD4"; // 策略
const std::string kStrategyUtf8 = "\xE7\xAD\x96\xE7\x95\xA5";
const QString kStrategy = QStringLiteral("策略");

struct CValidityRow {
    const char* meaning;
    std::string bytes;
    bool valid;
};

const CValidityRow kValidity[] = {
    {"empty", "", true},
    {"ASCII", "23,600000,10.5", true},
    {"zero byte", std::string("a\0b", 3), true},
    {"last of one byte", "\x7F", true},
    {"tail alone", "\x80", false},
    {"last tail alone", "\xBF", false},
    {"overlong two bytes, low", "\xC0\x80", false},
    {"overlong two bytes, high", "\xC1\xBF", false},
    {"first of two bytes", "\xC2\x80", true},
    {"last of two bytes", "\xDF\xBF", true},
    {"two bytes cut", "\xC2", false},
    {"two bytes with ASCII as tail", "\xC2\x41", false},
    {"two bytes with a head as tail", "\xC2\xC2", false},
    {"overlong three bytes", "\xE0\x9F\xBF", false},
    {"first of three bytes", "\xE0\xA0\x80", true},
    {"three bytes", kStrategyUtf8, true},
    {"three bytes cut after one", "\xE7", false},
    {"three bytes cut after two", "\xE7\xAD", false},
    {"three bytes with a wrong last tail", "\xE7\xAD\x41", false},
    {"last before the surrogates", "\xED\x9F\xBF", true},
    {"first surrogate", "\xED\xA0\x80", false},
    {"last surrogate", "\xED\xBF\xBF", false},
    {"first after the surrogates", "\xEE\x80\x80", true},
    {"last of three bytes", "\xEF\xBF\xBF", true},
    {"overlong four bytes", "\xF0\x8F\xBF\xBF", false},
    {"first of four bytes", "\xF0\x90\x80\x80", true},
    {"last of all", "\xF4\x8F\xBF\xBF", true},
    {"first beyond", "\xF4\x90\x80\x80", false},
    {"far beyond", "\xF5\x80\x80\x80", false},
    {"no head", "\xFF", false},
    {"four bytes cut after three", "\xF0\x90\x80", false},
    {"four bytes cut after one", "\xF0", false},
    {"five bytes", "\xF8\x88\x80\x80\x80", false},
    {"wrong after right", "ok\xE7\xAD\x96\xFE", false},
    {"GBK", kStrategyGbk, false},
};

TEST(Text, Utf8IsWellFormedOrNot) {
    for (const CValidityRow& row : kValidity) {
        EXPECT_EQ(utils::isValidUtf8(row.bytes.data(), row.bytes.size()), row.valid) << row.meaning;
    }
}

TEST(Text, Utf8ReadsNoFurtherThanTheSize) {
    EXPECT_FALSE(utils::isValidUtf8(kStrategyUtf8.data(), 2));
    EXPECT_TRUE(utils::isValidUtf8(kStrategyUtf8.data(), 3));
}

TEST(Text, BytesBecomeUtf8WhereTheyAreAndGbkOtherwise) {
    EXPECT_EQ(UW::sToQs(std::string()), QString());
    EXPECT_EQ(UW::sToQs(std::string("600000")), QStringLiteral("600000"));
    EXPECT_EQ(UW::sToQs(kStrategyUtf8), kStrategy);
    EXPECT_EQ(UW::sToQs(kStrategyGbk), kStrategy);
    EXPECT_EQ(UW::sToQs(kStrategyGbk + "3"), kStrategy + QStringLiteral("3"));
    EXPECT_EQ(UW::sToQs(kStrategyUtf8.data(), 3), QStringLiteral("策"));
    EXPECT_EQ(UW::sToQs(std::string("\xF0\x9F\x93\x88")), QString::fromUcs4(U"\x1F4C8"));
}

TEST(Text, MixedBytesAreReadAsGbkAsAWhole) {
    EXPECT_EQ(UW::sToQs(kStrategyUtf8 + kStrategyGbk), UW::sToQsGBK(kStrategyUtf8 + kStrategyGbk));
    EXPECT_TRUE(UW::sToQs(kStrategyUtf8 + kStrategyGbk).endsWith(kStrategy));
}

TEST(Text, GbkIsReadWhateverTheBytesLookLike) {
    EXPECT_EQ(UW::sToQsGBK(kStrategyGbk), kStrategy);
    EXPECT_EQ(UW::sToQsGBK("600000"), QStringLiteral("600000"));
    EXPECT_NE(UW::sToQsGBK(kStrategyUtf8), kStrategy);
    // These two bytes are valid in both encodings.
    const std::string both = "\xC4\xAA";
    EXPECT_EQ(UW::sToQsGBK(both), QStringLiteral("莫"));
    EXPECT_EQ(UW::sToQs(both), QString(QChar(0x12A)));
}

TEST(Text, BytesOfNoEncodingBecomeReplacements) {
    const QString text = UW::sToQs(std::string("a\x81 b"));
    EXPECT_EQ(text, QStringLiteral("a") + QChar(QChar::ReplacementCharacter) + QStringLiteral(" b"));
    EXPECT_EQ(UW::sToQsGBK("a\x81 b"), text);
}

TEST(Text, CommandsCarryUtf8AndFilesGbk) {
    EXPECT_EQ(utils::safeGbk2Utf8(kStrategyGbk), kStrategyUtf8);
    EXPECT_EQ(utils::safeUtf82Gbk(kStrategyUtf8), kStrategyGbk);
    EXPECT_EQ(utils::safeGbk2Utf8(""), "");
    EXPECT_EQ(utils::safeUtf82Gbk(""), "");
    EXPECT_EQ(utils::safeGbk2Utf8("plain 1"), "plain 1");
    EXPECT_EQ(utils::safeUtf82Gbk("plain 1"), "plain 1");
}

TEST(Text, WhatGbkCannotWriteBecomesAQuestionMark) {
    EXPECT_EQ(utils::safeUtf82Gbk("a\xE0\xB8\x81z"), "a?z"); // a Thai letter
}

TEST(Text, LocalBytesAreGbkAndPathsUtf8) {
    EXPECT_EQ(utils::toLocal8Bit(kStrategy + QStringLiteral("1")), kStrategyGbk + "1");
    EXPECT_EQ(utils::toLocal8Bit(QString()), "");
    EXPECT_EQ(utils::toPathBytes(QStringLiteral("/订单/策略.txt")),
              "/\xE8\xAE\xA2\xE5\x8D\x95/" + kStrategyUtf8 + ".txt");
    EXPECT_EQ(utils::toPathBytes(QString()), "");
}

struct CFillRow {
    const char* meaning;
    QString pattern;
    std::initializer_list<QString> arguments;
    QString filled;
};

TEST(Text, PlacesAreFilledByTheirNumbers) {
    const QString a = QStringLiteral("甲"), b = QStringLiteral("乙"), place = QStringLiteral("%1");
    const CFillRow rows[] = {
        {"in order", "%1-%2", {a, b}, "甲-乙"},
        {"against the order", "%2-%1", {a, b}, "乙-甲"},
        {"named twice", "[%1] 通道号: %1!", {a, b}, "[甲] 通道号: 甲!"},
        {"not named", "[%2]", {a, b}, "[乙]"},
        {"side by side", "%1%1%2", {a, b}, "甲甲乙"},
        {"argument missing", "%1 %2 %3", {a}, "甲 %2 %3"},
        {"no arguments", "%1 %2", {}, "%1 %2"},
        {"no places", "text", {a}, "text"},
        {"empty pattern", "", {a}, ""},
        {"argument holds a place", "%1 %2", {place, b}, "%1 乙"},
        {"argument holds a later place", "%1 %2", {QStringLiteral("%2"), b}, "%2 乙"},
        {"empty argument", "<%1>", {QString()}, "<>"},
        {"zero is no place", "%0 %1", {a}, "%0 甲"},
        {"percent at the end", "%1%", {a}, "甲%"},
        {"percent alone", "%", {a}, "%"},
        {"percent before a place", "%%1", {a}, "%甲"},
        {"percent before a letter", "%a %1", {a}, "%a 甲"},
        {"a digit behind the place", "%12", {a, b}, "甲2"},
        {"percent built by an argument",
         "%1"
         "1",
         {QStringLiteral("%"), b},
         "%1"},
    };
    for (const CFillRow& row : rows)
        EXPECT_EQ(utils::fillText(row.pattern, row.arguments), row.filled) << row.meaning;
}

TEST(Text, NinthPlaceIsFilled) {
    const QString d = QStringLiteral("x");
    EXPECT_EQ(utils::fillText("%9", {d, d, d, d, d, d, d, d, QStringLiteral("ninth")}),
              QStringLiteral("ninth"));
}

struct CReplaceRow {
    std::string text;
    char unwanted;
    std::string rest;
};

TEST(Text, UnwantedCharactersGo) {
    const CReplaceRow rows[] = {
        {"23,600000\r", '\r', "23,600000"},
        {"\r\r", '\r', ""},
        {"a b c", ' ', "abc"},
        {" a", ' ', "a"},
        {"abc", 'x', "abc"},
        {"", 'x', ""},
        {std::string("a\0b", 3), '\0', "ab"},
    };
    for (const CReplaceRow& row : rows) {
        std::string text = row.text;
        utils::string_replace(text, row.unwanted);
        EXPECT_EQ(text, row.rest);
    }
}

TEST(Text, LastByteOfACutPairIsNotLost) {
    EXPECT_EQ(UW::sToQs(std::string("600000\xB2")), QStringLiteral("600000\uFFFD"));
    EXPECT_EQ(UW::sToQsGBK(std::string("a\xB2")), QStringLiteral("a\uFFFD"));
}

TEST(Text, ByteThatBeginsNoPairCostsNoNeighbour) {
    EXPECT_TRUE(UW::sToQsGBK("\xFF" + kStrategyGbk).endsWith(kStrategy));
    EXPECT_EQ(UW::sToQsGBK("\x80" + kStrategyGbk), QStringLiteral("\u20AC") + kStrategy);
    EXPECT_EQ(UW::sToQsGBK("\xB2\xFF" + kStrategyGbk).front(), QChar(QChar::ReplacementCharacter));
    EXPECT_TRUE(UW::sToQsGBK("\xB2\xFF" + kStrategyGbk).endsWith(kStrategy));
}

/// Bytes that follow must not change how the bytes before them are read. Tries all texts of up to four of
/// these bytes.
TEST(Text, EndOfTheBytesChangesNothingBeforeIt) {
    const std::string alphabet("\x20\x40\x7F\x80\x81\xB2\xDF\xFE\xFF", 9);
    std::vector<std::string> texts{""};
    for (std::size_t first = 0, length = 0; length < 4; ++length) {
        const std::size_t end = texts.size();
        for (; first < end; ++first) {
            for (const char byte : alphabet)
                texts.push_back(texts[first] + byte);
        }
    }
    for (const std::string& text : texts) {
        EXPECT_EQ(UW::sToQsGBK(text) + u' ', UW::sToQsGBK(text + ' '))
            << testing::PrintToString(std::vector<unsigned char>(text.begin(), text.end()));
    }
}

} // namespace
