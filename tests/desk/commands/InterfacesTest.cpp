// The interfaces of the trade framework in complete runs of the desk.
#include "desk/commands/NewFolder.h"
#include "desk/commands/RunDesk.h"
#include "desk/host/DeskTradeFrameworkSource.h"
#include "orderservice/service/OrderService.h"
#include "tests/support/TempFolder.h"

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <functional>
#include <sstream>

namespace desk {
namespace {

using knservice::TradeInterfaceData;
using knservice::TradeInterfaceList;

class DeskInterfaces : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(runNew(folder.path("desk"), false, out, out), 0); }

    /// Runs the desk for one round, in which it calls `part`.
    int run(const std::function<void(CDeskTradeFrameworkSource&)>& part) {
        bool isStarting = true;
        bool done = false;
        return runDesk(folder.path("desk"), std::nullopt, out, [&] {
            if (std::exchange(isStarting, false)) return true; // the desk asks once before it trades
            if (!done) part(framework());
            return !std::exchange(done, true);
        });
    }
    static CDeskTradeFrameworkSource& framework() {
        return dynamic_cast<CDeskTradeFrameworkSource&>(knservice::CTradeFrameworkSource::instance());
    }
    std::vector<std::string> textsOfNextRun() {
        std::vector<std::string> texts;
        EXPECT_EQ(run([&](CDeskTradeFrameworkSource& source) {
                      for (const auto& interface : source.getAllInterfaces())
                          texts.push_back(interface->toJson());
                  }),
                  0);
        return texts;
    }
    std::string settings() const { return folder.read("desk/settings.xml"); }
    bool hasSettings() const { return folder.exists("desk/settings.xml"); }

    CTempFolder folder;
    std::ostringstream out;
};

boost::shared_ptr<TradeInterfaceData> interfaceOf(const std::string& name, double maxLoss = 0) {
    const auto record = boost::make_shared<TradeInterfaceData>();
    record->m_strInterface = name;
    record->m_nMaxLoss = maxLoss;
    return record;
}

TEST_F(DeskInterfaces, TheFoldersReachTheServiceAndTheFramework) {
    const int code = run([](CDeskTradeFrameworkSource& source) {
        const TradeInterfaceList loaded = TC::COrderService::instance()->interfaces();
        ASSERT_EQ(loaded.size(), 1U);
        EXPECT_EQ(loaded.front()->m_strInterface, "momentum");
        EXPECT_EQ(loaded.front()->m_strAccount, "A1");
        EXPECT_EQ(loaded.front()->whitelist.size(), 1U);
        EXPECT_EQ(source.getAllInterfaces(), loaded);
    });
    EXPECT_EQ(code, 0);
}

TEST_F(DeskInterfaces, WhatTheFrameworkHasSurvivesARestart) {
    const auto first = interfaceOf("动量", 20000);
    first->m_strAccount = "<A&\"1\">\n";
    first->whitelist.push_back(boost::make_shared<knservice::CFrameWorkInstrumentWhiteList>());
    const auto second = interfaceOf("second");
    EXPECT_EQ(run([&](CDeskTradeFrameworkSource& source) {
                  source.setInterfaces({first, nullptr, second});
              }),
              0);
    EXPECT_EQ(textsOfNextRun(), (std::vector<std::string>{first->toJson(), second->toJson()}));
    EXPECT_EQ(run([](CDeskTradeFrameworkSource& source) { source.setInterfaces({}); }), 0);
    EXPECT_EQ(textsOfNextRun(), std::vector<std::string>{});
    EXPECT_TRUE(hasSettings());
}

TEST_F(DeskInterfaces, SavedForTheirOwnerAlone) {
    EXPECT_EQ(run([](CDeskTradeFrameworkSource& source) { source.setInterfaces({interfaceOf("a")}); }), 0);
    EXPECT_EQ(std::filesystem::status(folder.path("desk/settings.xml")).permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    EXPECT_FALSE(folder.exists("desk/settings.xml.new"));
    EXPECT_NE(settings().find("<a interfacedata=\"{ &quot;m_strInterface&quot; : &quot;a&quot;, "),
              std::string::npos)
        << settings();
}

TEST_F(DeskInterfaces, AFileThatNobodyHasChangedKeepsItsLayout) {
    const std::string before = settings();
    EXPECT_EQ(textsOfNextRun().size(), 1U);
    EXPECT_EQ(settings(), before);
}

TEST_F(DeskInterfaces, WithoutAFileThereAreNoneAndNoneIsMade) {
    std::filesystem::remove(folder.path("desk/settings.xml"));
    EXPECT_EQ(textsOfNextRun(), std::vector<std::string>{});
    EXPECT_FALSE(hasSettings());
    EXPECT_EQ(run([](CDeskTradeFrameworkSource& source) { source.setInterfaces({interfaceOf("a")}); }), 0);
    EXPECT_EQ(textsOfNextRun(), std::vector<std::string>{interfaceOf("a")->toJson()});
}

boost::shared_ptr<TradeInterfaceData> interfaceOfAccount(const std::string& account) {
    const auto record = interfaceOf("a");
    record->m_strAccount = account;
    return record;
}

boost::shared_ptr<TradeInterfaceData> interfaceOfEntry(const std::string& text) {
    const auto record = interfaceOf("a");
    const auto entry = boost::make_shared<knservice::CFrameWorkInstrumentWhiteList>();
    entry->m_object = bson::BSONObjBuilder().append("code", text).obj();
    record->whitelist.push_back(entry);
    return record;
}

/// The next start could not read these interfaces, so they must not be saved. The folder must still start.
TEST_F(DeskInterfaces, InterfaceThatCannotBeReadAgainIsReportedAndNotSaved) {
    const std::string before = settings();
    for (const auto& interface :
         {interfaceOf(""), interfaceOf("two words"), interfaceOf("1"), interfaceOf("a><b"),
          interfaceOf("a", 0.5), interfaceOf("a", 3e9), interfaceOf("a", HUGE_VAL),
          interfaceOf("a\xEF\xBF\xBE"), interfaceOfAccount("\xEF\xBF\xBE"), interfaceOfAccount("\xD5\xCB"),
          interfaceOfEntry("\xD5\xCB"), interfaceOf("a interfacedata='{}'/><b")}) {
        EXPECT_EQ(run([&](CDeskTradeFrameworkSource& source) {
                      source.setInterfaces({interfaceOf("good"), interface});
                  }),
                  1)
            << interface->toJson();
        EXPECT_EQ(settings(), before);
    }
    EXPECT_NE(out.str().find("the interfaces cannot be saved: " + folder.path("desk/settings.xml")),
              std::string::npos);
    EXPECT_EQ(textsOfNextRun().size(), 1U);
}

TEST_F(DeskInterfaces, ABadTextIsReportedAndNotStarted) {
    folder.write("desk/settings.xml", "<settings>\n<interfaceTrade>\n<a interfacedata='{'/>\n"
                                      "</interfaceTrade></settings>");
    EXPECT_EQ(runDesk(folder.path("desk"), std::nullopt, out, [] { return true; }), 2);
    EXPECT_NE(
        out.str().find("settings.xml:3: interface \"a\": the text is not a JSON object: Incomplete JSON\n"),
        std::string::npos)
        << out.str();
    EXPECT_FALSE(folder.exists("desk/journal.jsonl"));
}

} // namespace
} // namespace desk
