#include "desk/config/SettingsFile.h"

#include "desk/commands/CheckFolder.h"
#include "tests/desk/config/ConfigFolder.h"

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

#include <sstream>

namespace desk {
namespace {

using test::CConfigFolder;
using Lines = std::vector<std::string>;

/// A correct settings file with these interfaces.
std::string settingsWith(const std::string& interfaces) {
    return "<settings>\n<interfaceTrade>\n" + interfaces + "\n</interfaceTrade>\n</settings>\n";
}

/// One interface with this name. Its JSON has these members after the name.
std::string interfaceWith(const std::string& name, const std::string& members = "") {
    return "<" + name + " interfacedata='{\"m_strInterface\":\"" + name + "\"" +
           (members.empty() ? "" : ",") + members + "}'/>\n";
}

knservice::TradeInterfaceList interfacesNamed(const std::vector<std::string>& names) {
    knservice::TradeInterfaceList interfaces;
    for (const std::string& name : names) {
        interfaces.push_back(boost::make_shared<knservice::TradeInterfaceData>());
        interfaces.back()->m_strInterface = name;
    }
    return interfaces;
}

class SettingsFile : public testing::Test {
protected:
    Lines mistakesOf(const std::string& text) const {
        folder.files().write("settings.xml", text);
        return folder.mistakes();
    }

    CConfigFolder folder;
};

TEST_F(SettingsFile, MayBeMissing) {
    EXPECT_EQ(folder.mistakes(), Lines{});
    EXPECT_EQ(folder.load().config.settings, "");
}

TEST_F(SettingsFile, GoodInterfacesAreKeptUnchanged) {
    for (const std::string& text :
         {settingsWith(interfaceWith("a") + interfaceWith("动量", "\"m_strStock\":\"SZ000001\"")),
          settingsWith(""), std::string("<settings/>"), std::string(kEmptySettings),
          std::string("<!-- r --><settings>t<interfaceTrade>t<!-- r --></interfaceTrade></settings>")}) {
        EXPECT_EQ(mistakesOf(text), Lines{}) << text;
        EXPECT_EQ(folder.load().config.settings, text);
    }
}

TEST_F(SettingsFile, TextThatIsNotXmlIsReportedWithItsLine) {
    EXPECT_EQ(mistakesOf("<settings>\n<interfaceTrade>\n</settings>\n"),
              Lines{"settings.xml:3: is not XML: tag mismatch; expected <settings> with <interfaceTrade> in "
                    "it"});
    EXPECT_EQ(mistakesOf(""), Lines{"settings.xml:1: is not XML: unexpected end of file; expected <settings> "
                                    "with <interfaceTrade> in it"});
    EXPECT_EQ(mistakesOf(settingsWith("<a b interfacedata='{}'/>")).size(), 1U);
}

TEST_F(SettingsFile, OtherElementsAreReportedWithTheirLine) {
    EXPECT_EQ(mistakesOf("\n<strategies/>"),
              Lines{"settings.xml:2: is a document of \"strategies\"; expected one of \"settings\""});
    EXPECT_EQ(mistakesOf("<settings>\n<interfacetrade/></settings>"),
              Lines{"settings.xml:2: unexpected element \"interfacetrade\"; expected exactly one "
                    "\"interfaceTrade\""});
    EXPECT_EQ(mistakesOf("<settings><interfaceTrade/>\n<interfaceTrade/></settings>"),
              Lines{"settings.xml:2: unexpected element \"interfaceTrade\"; expected exactly one "
                    "\"interfaceTrade\""});
}

TEST_F(SettingsFile, EveryBadInterfaceIsReportedWithItsLineAndWhatWasExpected) {
    EXPECT_EQ(
        mistakesOf(settingsWith("<a/>\n<b interfacedata=''/>\n<c interfacedata='{'/>\n" +
                                interfaceWith("d", "\"m_nMaxLoss\":0.5") + interfaceWith("e") +
                                interfaceWith("f", "\"m_bAutoBalance\":1") +
                                interfaceWith("g", "\"m_strStock\":1") +
                                interfaceWith("h", "\"whitelist\":\"{}\"") +
                                "<i interfacedata='{}' more=''/>\n<j interfacedata='{}'><k/></j>")),
        (Lines{
            "settings.xml:3: interface \"a\": expected the one attribute \"interfacedata\" and no more",
            "settings.xml:4: interface \"b\": the text is empty; expected a JSON object",
            "settings.xml:5: interface \"c\": the text is not a JSON object: Incomplete JSON",
            "settings.xml:6: interface \"d\": wrong type for field (m_nMaxLoss) 1 != 16; expected a whole "
            "number of 32 bits",
            "settings.xml:8: interface \"f\": wrong type for field (m_bAutoBalance) 16 != 8; expected true "
            "or false",
            "settings.xml:9: interface \"g\": wrong type for field (m_strStock) 16 != 2; expected a text in "
            "quotes",
            "settings.xml:10: interface \"h\": wrong type for field (whitelist) 2 != 4; expected a list of "
            "texts",
            "settings.xml:11: interface \"i\": expected the one attribute \"interfacedata\" and no more",
            "settings.xml:12: interface \"j\": expected the one attribute \"interfacedata\" and no more",
        }));
}

TEST_F(SettingsFile, AnInterfaceIsNamedLikeItsElement) {
    EXPECT_EQ(
        mistakesOf(settingsWith("<a interfacedata='{}'/>\n<b interfacedata='{\"m_strInterface\":\"\"}'/>\n"
                                "<c interfacedata='{\"m_strInterface\":\"C\"}'/>\n" +
                                interfaceWith("d"))),
        (Lines{
            "settings.xml:3: interface \"a\": m_strInterface is missing or empty; expected \"a\", like the "
            "element",
            "settings.xml:4: interface \"b\": m_strInterface is missing or empty; expected \"b\", like the "
            "element",
            "settings.xml:5: interface \"c\": m_strInterface is \"C\"; expected \"c\", like the element",
        }));
}

TEST_F(SettingsFile, UnknownKeysAndThoseThatStandTwiceAreMistakes) {
    const std::string keys =
        "m_strInterface, m_strAccount, m_strAccountKey, m_strStock, m_nPeroid, m_bAutoBalance, "
        "m_nBalanceTime, m_bStartupAutorun, m_bSwitchAutorun, m_bUsePrevWhitelist, m_bAutoStoploss, "
        "m_nMaxLoss, whitelist";
    EXPECT_EQ(
        mistakesOf(
            settingsWith(interfaceWith("a", "\"m_bAutoStopLoss\":true,\"m_nPeriod\":1,\"m_nMaxLoss\":true") +
                         interfaceWith("b", "\"m_nMaxLoss\":1,\"m_nMaxLoss\":2,\"m_nMaxLoss\":3"))),
        (Lines{
            "settings.xml:3: interface \"a\": unknown key \"m_bAutoStopLoss\"; expected one of " + keys,
            "settings.xml:3: interface \"a\": unknown key \"m_nPeriod\"; expected one of " + keys,
            "settings.xml:3: interface \"a\": wrong type for field (m_nMaxLoss) 8 != 16; expected a whole "
            "number of 32 bits",
            "settings.xml:4: interface \"b\": key \"m_nMaxLoss\" is defined twice",
        }));
}

TEST_F(SettingsFile, ABadEntryOfAWhiteListIsNamed) {
    EXPECT_EQ(
        mistakesOf(settingsWith(interfaceWith("a", "\"whitelist\":[\"{}\",\"[]\"]") +
                                interfaceWith("b", "\"whitelist\":[\"{}\",\"{}\",1]") +
                                interfaceWith("c", "\"whitelist\":[\"{\\\"code\\\":\\\"600000\\\"}\"]"))),
        (Lines{
            "settings.xml:3: interface \"a\": whitelist entry 2: the text does not begin with {; expected "
            "a JSON object",
            "settings.xml:4: interface \"b\": whitelist entry 3 is not a text; expected the JSON text of an "
            "entry in quotes",
        }));
}

TEST_F(SettingsFile, AFolderInItsPlaceIsAMistake) {
    std::filesystem::create_directory(folder.files().path("settings.xml"));
    EXPECT_EQ(folder.mistakes(), Lines{"settings.xml:0: cannot be read; expected a file, or none"});
}

TEST_F(SettingsFile, CheckNamesFileLineAndWhatWasExpected) {
    folder.files().write("settings.xml", settingsWith(interfaceWith("a", "\"m_nPeroid\":\"60\"")));
    std::ostringstream out;
    EXPECT_EQ(runCheck(folder.path(), out), 2);
    EXPECT_EQ(out.str(),
              "settings.xml:3: interface \"a\": wrong type for field (m_nPeroid) 2 != 16; expected "
              "a whole number of 32 bits\n" +
                  folder.path() + ": 1 mistake\n");
}

TEST_F(SettingsFile, SavedForItsOwnerAloneAndWithoutADraftLeft) {
    const std::string text = settingsWith(interfaceWith("a"));
    folder.files().write("settings.xml.new", "left behind");
    ASSERT_TRUE(saveSettings(folder.path(), text, interfacesNamed({"a"})).isSuccess());
    EXPECT_EQ(folder.files().read("settings.xml"), text);
    EXPECT_EQ(std::filesystem::status(folder.files().path("settings.xml")).permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    EXPECT_FALSE(folder.files().exists("settings.xml.new"));
}

TEST_F(SettingsFile, WhatCouldNotBeReadAgainLeavesTheOldOne) {
    const std::string old = settingsWith(interfaceWith("a"));
    folder.files().write("settings.xml", old);
    const std::string path = folder.files().path("settings.xml");
    EXPECT_EQ(
        saveSettings(folder.path(), settingsWith(interfaceWith("a", "\"m_nMaxLoss\":0.5")),
                     interfacesNamed({"a"}))
            .errorMsg(),
        path + " is not changed, because the new file could not be read again: interface \"a\": wrong type "
               "for field (m_nMaxLoss) 1 != 16; expected a whole number of 32 bits");
    EXPECT_EQ(saveSettings(folder.path(), old, interfacesNamed({"a", ""})).errorMsg(),
              path + " is not changed: an interface has a name that XML cannot contain");
    EXPECT_EQ(folder.files().read("settings.xml"), old);
}

TEST_F(SettingsFile, WhatWouldBeReadAsSomethingElseLeavesTheOldOne) {
    const std::string old = settingsWith(interfaceWith("a"));
    folder.files().write("settings.xml", old);
    auto interfaces = interfacesNamed({"a", "b"});
    interfaces.insert(interfaces.begin(), nullptr);
    const auto save = [&](const std::string& members) {
        return saveSettings(folder.path(), settingsWith(interfaceWith("a") + interfaceWith("b", members)),
                            interfaces)
            .errorMsg();
    };
    const std::string refused = folder.files().path("settings.xml") +
                                " is not changed: interface \"b\" would be read back as something else";
    EXPECT_EQ(save("\"m_nPeroid\":1"), refused);
    EXPECT_EQ(save("\"whitelist\":[\"{}\"]"), refused);
    interfaces.back()->m_strAccount = "\xD5\xCB"; // not UTF-8: it is written as another text
    EXPECT_EQ(save("\"m_strAccount\":\"\xEF\xBF\xBD\xEF\xBF\xBD\""), refused);
    EXPECT_EQ(folder.files().read("settings.xml"), old);
    interfaces.back()->m_strAccount = "账";
    EXPECT_EQ(save("\"m_strAccount\":\"账\""), "");
}

TEST_F(SettingsFile, AFailedSaveNamesTheFile) {
    const utils::KNError saved = saveSettings(folder.files().path("none"), kEmptySettings, {});
    EXPECT_EQ(saved.errorMsg(), folder.files().path("none/settings.xml") + ": No such file or directory");
}

} // namespace
} // namespace desk
