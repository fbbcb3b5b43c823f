#include "desk/config/SettingsFile.h"

#include "desk/commands/CheckFolder.h"
#include "tests/desk/config/ConfigFolder.h"

#include <gtest/gtest.h>

#include <sstream>

namespace desk {
namespace {

using test::CConfigFolder;
using Lines = std::vector<std::string>;

/// Interfaces as they stand in a good file.
std::string settingsWith(const std::string& interfaces) {
    return "<settings>\n<interfaceTrade>\n" + interfaces + "\n</interfaceTrade>\n</settings>\n";
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

TEST_F(SettingsFile, GoodOnesAreKeptAsTheyStand) {
    for (const std::string& text :
         {settingsWith("<a interfacedata='{}'/>\n<b interfacedata='{ \"m_strStock\" : \"SZ000001\" }'/>"),
          settingsWith(""), std::string("<settings/>"), std::string(kEmptySettings),
          std::string("<!-- r --><settings>t<interfaceTrade>t<!-- r --></interfaceTrade></settings>")}) {
        EXPECT_EQ(mistakesOf(text), Lines{}) << text;
        EXPECT_EQ(folder.load().config.settings, text);
    }
}

TEST_F(SettingsFile, WhatIsNoXmlIsToldByItsLine) {
    EXPECT_EQ(mistakesOf("<settings>\n<interfaceTrade>\n</settings>\n"),
              Lines{"settings.xml:3: is not XML: tag mismatch; expected <settings> with <interfaceTrade> in "
                    "it"});
    EXPECT_EQ(mistakesOf(""), Lines{"settings.xml:1: is not XML: unexpected end of file; expected <settings> "
                                    "with <interfaceTrade> in it"});
    EXPECT_EQ(mistakesOf(settingsWith("<a b interfacedata='{}'/>")).size(), 1U);
}

TEST_F(SettingsFile, OtherElementsAreToldByTheirLine) {
    EXPECT_EQ(mistakesOf("\n<strategies/>"),
              Lines{"settings.xml:2: is a document of \"strategies\"; expected one of \"settings\""});
    EXPECT_EQ(mistakesOf("<settings>\n<interfacetrade/></settings>"),
              Lines{"settings.xml:2: unexpected element \"interfacetrade\"; expected one \"interfaceTrade\" "
                    "alone"});
    EXPECT_EQ(mistakesOf("<settings><interfaceTrade/>\n<interfaceTrade/></settings>"),
              Lines{"settings.xml:2: unexpected element \"interfaceTrade\"; expected one \"interfaceTrade\" "
                    "alone"});
}

TEST_F(SettingsFile, EveryBadInterfaceIsToldByItsLineAndWhatWasExpected) {
    EXPECT_EQ(
        mistakesOf(settingsWith("<a/>\n<b interfacedata=''/>\n<c interfacedata='{'/>\n"
                                "<d interfacedata='{\"m_nMaxLoss\":0.5}'/>\n<e interfacedata='{}'/>\n"
                                "<f interfacedata='{\"m_bAutoBalance\":1}'/>\n"
                                "<g interfacedata='{\"m_strStock\":1}'/>\n"
                                "<h interfacedata='{\"whitelist\":\"{}\"}'/>\n"
                                "<i interfacedata='{\"whitelist\":[\"[]\"]}'/>\n"
                                "<j interfacedata='{}' more=''/>\n<k interfacedata='{}'><l/></k>")),
        (Lines{
            "settings.xml:3: interface \"a\": expected the one attribute \"interfacedata\" and no more",
            "settings.xml:4: interface \"b\": the text is empty; expected a JSON object",
            "settings.xml:5: interface \"c\": the text is no JSON object: Incomplete JSON",
            "settings.xml:6: interface \"d\": wrong type for field (m_nMaxLoss) 1 != 16; expected a whole "
            "number of 32 bits",
            "settings.xml:8: interface \"f\": wrong type for field (m_bAutoBalance) 16 != 8; expected true "
            "or false",
            "settings.xml:9: interface \"g\": wrong type for field (m_strStock) 16 != 2; expected a text in "
            "quotes",
            "settings.xml:10: interface \"h\": wrong type for field (whitelist) 2 != 4; expected a list of "
            "texts",
            "settings.xml:11: interface \"i\": the text does not begin with {; expected a JSON object",
            "settings.xml:12: interface \"j\": expected the one attribute \"interfacedata\" and no more",
            "settings.xml:13: interface \"k\": expected the one attribute \"interfacedata\" and no more",
        }));
}

TEST_F(SettingsFile, AFolderInItsPlaceIsAMistake) {
    std::filesystem::create_directory(folder.files().path("settings.xml"));
    EXPECT_EQ(folder.mistakes(), Lines{"settings.xml:0: cannot be read; expected a file, or none"});
}

TEST_F(SettingsFile, CheckNamesFileLineAndWhatWasExpected) {
    folder.files().write("settings.xml", settingsWith("<a interfacedata='{\"m_nPeroid\":\"60\"}'/>"));
    std::ostringstream out;
    EXPECT_EQ(runCheck(folder.path(), out), 2);
    EXPECT_EQ(out.str(),
              "settings.xml:3: interface \"a\": wrong type for field (m_nPeroid) 2 != 16; expected "
              "a whole number of 32 bits\n" +
                  folder.path() + ": 1 mistakes\n");
}

TEST_F(SettingsFile, SavedForItsOwnerAloneAndWithoutADraftLeft) {
    const std::string text = settingsWith("<a interfacedata='{}'/>");
    folder.files().write("settings.xml.new", "left behind");
    ASSERT_TRUE(saveSettings(folder.path(), text, 1).isSuccess());
    EXPECT_EQ(folder.files().read("settings.xml"), text);
    EXPECT_EQ(std::filesystem::status(folder.files().path("settings.xml")).permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    EXPECT_FALSE(folder.files().exists("settings.xml.new"));
}

TEST_F(SettingsFile, WhatCouldNotBeReadAgainLeavesTheOldOne) {
    const std::string old = settingsWith("<a interfacedata='{}'/>");
    folder.files().write("settings.xml", old);
    const std::string path = folder.files().path("settings.xml");
    EXPECT_EQ(
        saveSettings(folder.path(), settingsWith("<a interfacedata='{\"m_nMaxLoss\":0.5}'/>"), 1).errorMsg(),
        path + " stays as it was, since the new one could not be read again: interface \"a\": wrong type "
               "for field (m_nMaxLoss) 1 != 16; expected a whole number of 32 bits");
    EXPECT_EQ(saveSettings(folder.path(), old, 2).errorMsg(),
              path + " stays as it was: an interface has no name that can stand in XML");
    EXPECT_EQ(folder.files().read("settings.xml"), old);
}

TEST_F(SettingsFile, AFailedSaveNamesTheFile) {
    const utils::KNError saved = saveSettings(folder.files().path("none"), kEmptySettings, 0);
    EXPECT_EQ(saved.errorMsg(), folder.files().path("none/settings.xml") + ": No such file or directory");
}

} // namespace
} // namespace desk
