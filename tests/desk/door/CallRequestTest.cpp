#include "desk/door/CallRequest.h"

#include <gtest/gtest.h>

#include <string>

namespace desk {
namespace {

std::string mistakeOf(const std::string& line) {
    CCallRequest request;
    return readCallRequest(line, request).errorMsg();
}

TEST(CallRequest, TextsArePassedOnUnchanged) {
    CCallRequest request;
    const utils::KNError read = readCallRequest(
        R"({"call":"smartalgopypassorder","param":"{\"b\" : 1.50, \"a\":-0}","algo":"x"})", request);
    ASSERT_TRUE(read.isSuccess()) << read.errorMsg();
    EXPECT_EQ(request.m_strFunction, "smartalgopypassorder");
    EXPECT_EQ(request.m_strParam, R"({"b" : 1.50, "a":-0})");
    EXPECT_EQ(request.m_algo, "x");
}

TEST(CallRequest, ObjectsAreWrittenAnewWithTheirKeysInOrder) {
    CCallRequest request;
    const utils::KNError read = readCallRequest(
        R"( {"param": {"opType": 23, "modelVolume": "100", "z": 2147483648, "a": "\u4e2d"}, "call": "f"} )",
        request);
    ASSERT_TRUE(read.isSuccess()) << read.errorMsg();
    EXPECT_EQ(request.m_strParam, R"({"opType":23,"modelVolume":"100","z":2147483648,"a":"中"})");
    EXPECT_EQ(request.m_algo, std::nullopt);
}

TEST(CallRequest, LineOfARequestIsReadAsThatRequest) {
    const CCallRequest sent{"SmartAlgoPyPassOrder", "{\"note\":\"备注\n\\u0000\"}", "{}"};
    const std::string line = callRequestLine(sent);
    EXPECT_EQ(line.find('\n'), std::string::npos);
    CCallRequest read;
    ASSERT_TRUE(readCallRequest(line, read).isSuccess());
    EXPECT_EQ(read.m_strFunction, sent.m_strFunction);
    EXPECT_EQ(read.m_strParam, sent.m_strParam);
    EXPECT_EQ(read.m_algo, sent.m_algo);
}

TEST(CallRequest, SaysWhatIsWrong) {
    const std::string head = "the request cannot be read: ";
    const struct {
        std::string line, mistake;
    } rows[] = {
        {"[1]", "it is not an object"},
        {"1", "it is not an object"},
        {"{}", "\"call\" is missing"},
        {R"({"call":"f"})", "\"param\" is missing"},
        {R"({"param":"{}"})", "\"call\" is missing"},
        {R"({"call":1,"param":"{}"})", "\"call\" must be a text"},
        {R"({"call":"f","param":1})", "\"param\" must be a text or an object"},
        {R"({"call":"f","param":[]})", "\"param\" must be a text or an object"},
        {R"({"call":"f","param":"{}","algo":null})", "\"algo\" must be a text or an object"},
        {R"({"call":"f","param":"{}","alog":"{}"})", "the key \"alog\" is unknown"},
        {R"({"call":"f","call":"g","param":"{}"})", "the key \"call\" is there twice"},
        {R"({"call":"f","param":{"modelVolume":"100","modelVolume":"1000"}})",
         "the key \"modelVolume\" is there twice"},
        {R"({"call":"f","param":{"a":)" + std::string(15, '[') + std::string(15, ']') + "}}",
         "it has more than 16 levels"},
        {R"({"call":"f","param":{"a":)" + std::string(500000, '['), "it has more than 16 levels"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(mistakeOf(row.line), head + row.mistake) << row.line.substr(0, 80);
}

TEST(CallRequest, RefusesWhatIsNotStrictJson) {
    for (const std::string line :
         {"", " ", "{", "{} {}", "{'call':'f'}", R"({"call":"f","param":{"a":01}})",
          R"({"call":"f","param":{"a":NaN}})", R"({"call":"f","param":{"a":1e999}})",
          R"({"call":"f","param":"{}",})", "{\"call\":\"\xff\",\"param\":\"{}\"}", "// a\n{}"})
        EXPECT_EQ(mistakeOf(line).rfind("the request cannot be read: ", 0), 0U) << line;
}

TEST(CallRequest, SixteenLevelsAreAllowed) {
    EXPECT_EQ(mistakeOf(R"({"call":"f","param":{"a":)" + std::string(14, '[') + std::string(14, ']') + "}}"),
              "");
}

/// The same key in two objects is not the same key twice.
TEST(CallRequest, KeyMayBeInSeveralObjects) {
    EXPECT_EQ(mistakeOf(R"({"call":"f","param":{"call":1,"a":[{"b":1},{"b":2}],"c":{"a":1}}})"), "");
}

/// Both slips would be plain orders, which send their whole volume at once.
TEST(CallRequest, SettingsOfAnAlgorithmBelongToTheSmartFunction) {
    const std::string needed = "the request is refused: smartalgopypassorder needs the settings of an "
                               "algorithm (algo); without them it would be a plain order";
    const std::string ignored =
        "the request is refused: only smartalgopypassorder takes the settings of an algorithm (algo); "
        "passorder would ignore them";
    EXPECT_EQ(mistakeOf(R"({"call":"smartalgopypassorder","param":{}})"), needed);
    EXPECT_EQ(mistakeOf(R"({"call":"SMARTALGOPYPASSORDER","param":{},"algo":""})"), needed);
    EXPECT_EQ(mistakeOf(R"({"call":"smartalgopypassorder","param":{},"algo":{}})"), "");
    EXPECT_EQ(mistakeOf(R"({"call":"passorder","param":{},"algo":{"m_strategyType":"twap"}})"), ignored);
    EXPECT_EQ(mistakeOf(R"({"call":"passorder","param":{},"algo":""})"), ignored);
    EXPECT_EQ(mistakeOf(R"({"call":"passorder","param":{}})"), "");
}

TEST(CallRequest, ParameterMustBeOneObject) {
    EXPECT_EQ(whyNoParam(R"({"a":1})"), "");
    EXPECT_EQ(whyNoParam("[]"), "it is not an object");
    EXPECT_EQ(whyNoParam(R"({"a":1,"a":1})"), "the key \"a\" is there twice");
    EXPECT_EQ(whyNoParam("nonsense").rfind("parse error at line 1, column 2: ", 0), 0U)
        << whyNoParam("nonsense");
    EXPECT_NE(whyNoParam("{\"a\":\"\xff\"}"), "");
    EXPECT_NE(whyNoParam(""), "");
}

} // namespace
} // namespace desk
