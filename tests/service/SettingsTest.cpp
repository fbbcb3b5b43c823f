#include "tests/service/ServiceFixture.h"

#include <boost/make_shared.hpp>

#include <QDomDocument>

namespace {

using knservice::TradeInterfaceData;
using knservice::TradeInterfaceDataPtr;
using knservice::TradeInterfaceList;

QDomDocument documentOf(const QString& xml) {
    QDomDocument document;
    QString message;
    EXPECT_TRUE(document.setContent(xml, &message)) << message.toStdString();
    return document;
}

class Settings : public ServiceFixture {
protected:
    void load(const QString& xml) {
        QDomElement element = documentOf(xml).documentElement();
        service().loadSettings(element);
    }
    std::vector<std::string> loadedNames() {
        std::vector<std::string> names;
        for (const TradeInterfaceDataPtr& record : service().interfaces())
            names.push_back(record->m_strInterface);
        return names;
    }
    /// Saves the host's interfaces and returns the "interfaceTrade" element with them.
    QDomElement save() {
        m_saved = documentOf(QStringLiteral("<settings><interfaceTrade/></settings>"));
        QDomElement element = m_saved.documentElement().firstChildElement();
        service().saveSettings(element, m_saved);
        return element;
    }
    TradeInterfaceData& addInterface(const std::string& name) {
        host.framework.interfaces.push_back(boost::make_shared<TradeInterfaceData>());
        host.framework.interfaces.back()->m_strInterface = name;
        return *host.framework.interfaces.back();
    }

    QDomDocument m_saved;
};

using Names = std::vector<std::string>;

TEST_F(Settings, WithoutTheElementNothingIsLoaded) {
    load(QStringLiteral("<settings><interfaces><a interfacedata=''/></interfaces></settings>"));
    EXPECT_TRUE(service().interfaces().empty());
}

TEST_F(Settings, TheElementItselfIsNotBelowItself) {
    load(QStringLiteral("<interfaceTrade><a interfacedata='{}'/></interfaceTrade>"));
    EXPECT_TRUE(service().interfaces().empty());
}

TEST_F(Settings, AnEmptyElementLoadsNothing) {
    load(QStringLiteral("<s><interfaceTrade/></s>"));
    EXPECT_TRUE(service().interfaces().empty());
}

TEST_F(Settings, TheFirstElementAtAnyDepthIsReadAndNoOther) {
    load(QStringLiteral(R"(<s><deep><interfaceTrade><a interfacedata='{"m_strInterface":"first"}'/>)"
                        R"(</interfaceTrade></deep><interfaceTrade>)"
                        R"(<b interfacedata='{"m_strInterface":"second"}'/></interfaceTrade></s>)"));
    EXPECT_EQ(loadedNames(), Names{"first"});
}

TEST_F(Settings, ChildrenOfAllTagsAreReadInTheirOrderAndNothingElse) {
    load(QStringLiteral(R"(<s><interfaceTrade>text<!-- remark -->)"
                        R"(<x interfacedata='{"m_strInterface":"甲"}'/>)"
                        R"(<interfaceTrade interfacedata='{"m_strInterface":"b"}'>)"
                        R"(<below interfacedata='bad'/></interfaceTrade>)"
                        R"(<x interfacedata='{}'/></interfaceTrade></s>)"));
    EXPECT_EQ(loadedNames(), (Names{"甲", "b", ""}));
    EXPECT_EQ(service().interfaces().back()->m_strStock, "SH000300");
}

TEST_F(Settings, ASecondLoadAddsToTheFirst) {
    const QString xml = QStringLiteral(R"(<s><interfaceTrade><a interfacedata='{"m_strInterface":"a"}'/>)"
                                       R"(</interfaceTrade></s>)");
    load(xml);
    const TradeInterfaceDataPtr first = service().interfaces().front();
    load(xml);
    EXPECT_EQ(loadedNames(), (Names{"a", "a"}));
    EXPECT_EQ(service().interfaces().front(), first);
}

/// A child that cannot be read, between two that can.
struct CBadChildRow {
    const char* child;
    const char* message;
};

TEST_F(Settings, LoadingStopsAtABadChildAndKeepsThoseBefore) {
    const CBadChildRow rows[] = {
        {"<b/>", "the text is empty; expected a JSON object"},
        {"<b interfacedata=''/>", "the text is empty; expected a JSON object"},
        {"<b interfacedata='{'/>", "the text is not a JSON object: Incomplete JSON"},
        {"<b interfacedata='{\"m_bAutoStoploss\":1}'/>", "wrong type for field (m_bAutoStoploss) 16 != 8"},
        {"<b interfacedata='{\"m_nMaxLoss\":0.5}'/>", "wrong type for field (m_nMaxLoss) 1 != 16"},
    };
    std::size_t loaded = 0;
    for (const CBadChildRow& row : rows) {
        const QString xml =
            QStringLiteral("<s><interfaceTrade><a interfacedata='{\"m_strInterface\":\"a\"}'/>"
                           "%1<c interfacedata='{}'/></interfaceTrade></s>")
                .arg(QString::fromUtf8(row.child));
        try {
            load(xml);
            ADD_FAILURE() << row.child << " was read";
        } catch (const bson::CError& error) {
            EXPECT_STREQ(error.what(), row.message);
        }
        EXPECT_EQ(service().interfaces().size(), ++loaded) << row.child;
        EXPECT_EQ(service().interfaces().back()->m_strInterface, "a");
    }
}

TEST_F(Settings, TheFrameworksListIsSavedAndNotTheLoadedOne) {
    load(QStringLiteral("<s><interfaceTrade><a interfacedata='{}'/></interfaceTrade></s>"));
    addInterface("live").m_strAccount = "A1";
    const QDomElement saved = save();
    ASSERT_EQ(saved.childNodes().size(), 1);
    EXPECT_EQ(saved.firstChildElement().tagName(), QStringLiteral("live"));
    EXPECT_EQ(saved.firstChildElement().attributes().size(), 1);
    EXPECT_EQ(saved.firstChildElement().attribute(QStringLiteral("interfacedata")).toStdString(),
              host.framework.interfaces.front()->toJson());
    EXPECT_EQ(service().interfaces().size(), 1U);
}

TEST_F(Settings, NullInterfacesArePassedOver) {
    addInterface("a");
    host.framework.interfaces.push_back(nullptr);
    addInterface("b");
    const QDomElement saved = save();
    ASSERT_EQ(saved.childNodes().size(), 2);
    EXPECT_EQ(saved.lastChildElement().tagName(), QStringLiteral("b"));
}

TEST_F(Settings, ContentOfTheElementIsKept) {
    m_saved = documentOf(QStringLiteral("<interfaceTrade><old/></interfaceTrade>"));
    addInterface("a");
    QDomElement element = m_saved.documentElement();
    service().saveSettings(element, m_saved);
    EXPECT_EQ(element.firstChildElement().tagName(), QStringLiteral("old"));
    EXPECT_EQ(element.lastChildElement().tagName(), QStringLiteral("a"));
}

TEST_F(Settings, AnInterfaceWithoutANameIsWhatTheDocumentMakesOfIt) {
    addInterface("");
    addInterface("b");
    const bool isElement = !QDomDocument().createElement(QString()).isNull();
    EXPECT_EQ(save().childNodes().size(), isElement ? 2 : 1);
}

TEST_F(Settings, ANameThatIsNoTagIsNotChanged) {
    addInterface("1 <a>");
    EXPECT_EQ(save().firstChildElement().tagName(), QStringLiteral("1 <a>"));
}

TEST_F(Settings, NullEntriesOfAWhiteListAreNotSaved) {
    TradeInterfaceData& record = addInterface("a");
    const auto entry = boost::make_shared<knservice::CFrameWorkInstrumentWhiteList>();
    entry->bsonValueFromObj(bson::fromjson("{\"code\":\"600000\"}"));
    record.whitelist = {nullptr, entry};
    save();
    load(m_saved.toString());
    ASSERT_EQ(service().interfaces().front()->whitelist.size(), 1U);
    EXPECT_EQ(service().interfaces().front()->whitelist[0]->toBson(), entry->toBson());
}

TEST_F(Settings, SavedInterfacesAreLoadedEqual) {
    TradeInterfaceData& record = addInterface("动量_1");
    record.m_strAccount = "<&\"'\t\n\x01>";
    record.m_nPeroid = -60;
    record.m_bSwitchAutorun = true;
    record.m_nMaxLoss = 2147483647;
    addInterface("b");
    save();
    load(m_saved.toString());
    ASSERT_EQ(service().interfaces().size(), 2U);
    EXPECT_EQ(service().interfaces().front()->toJson(), record.toJson());
    EXPECT_EQ(service().interfaces().front()->m_strAccount, record.m_strAccount);
    EXPECT_EQ(service().interfaces().back()->m_strInterface, "b");
}

TEST_F(Settings, ALossWithAFractionIsSavedAndRefusedWhenLoaded) {
    addInterface("a").m_nMaxLoss = 0.5;
    save();
    EXPECT_NE(m_saved.toString().toStdString().find("&quot;m_nMaxLoss&quot; : 0.5"), std::string::npos);
    EXPECT_THROW(load(m_saved.toString()), bson::CTypeError);
    EXPECT_TRUE(service().interfaces().empty());
}

} // namespace
