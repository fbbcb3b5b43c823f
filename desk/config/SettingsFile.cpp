#include "desk/config/SettingsFile.h"

#include "desk/config/TextFile.h"

#include <boost/make_shared.hpp>

#include <QDomDocument>

#include <algorithm>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace desk {
namespace {

const QString kRootTag = QStringLiteral("settings");
const QString kInterfacesTag = QString::fromLatin1(knservice::kInterfacesTag);
const QString kDataAttribute = QString::fromLatin1(knservice::kInterfaceDataAttribute);

/// Words for each field type, for messages about what a field must be.
const std::map<bson::EType, const char*> kExpected = {
    {bson::EType::String, "a text in quotes"},
    {bson::EType::Bool, "true or false"},
    {bson::EType::Int32, "a whole number of 32 bits"},
    {bson::EType::Array, "a list of texts"},
};

std::string inQuotes(const std::string& text) {
    return "\"" + text + "\"";
}

std::string listOf(const std::vector<std::string>& words) {
    std::string list;
    for (const std::string& word : words)
        list += (list.empty() ? "" : ", ") + word;
    return list;
}

using knservice::TradeInterfaceData;
using knservice::TradeInterfaceDataPtr;
using knservice::TradeInterfaceList;

/// State of one reading of the file: the target of its mistakes, and the interfaces that could be read.
struct CReading {
    CDiagnostics& diagnostics;
    TradeInterfaceList interfaces;

    void mistake(const QDomNode& node, const std::string& message) const {
        diagnostics.add(kSettingsFile, node.lineNumber(), message);
    }
};

/// Finds unknown keys and keys that are defined twice. The order service ignores unknown keys and uses the
/// first of two equal keys. In a file that a person writes, both are mistakes.
std::vector<std::string> mistakesOfKeys(const bson::BSONObj& object) {
    const std::vector<std::string> known = TradeInterfaceData::storedKeys();
    std::vector<std::string> mistakes;
    std::map<std::string, int> times;
    for (const std::string& key : bson::keysOf(object)) {
        if (std::find(known.begin(), known.end(), key) == known.end()) {
            mistakes.push_back("unknown key \"" + key + "\"; expected one of " + listOf(known));
        } else if (++times[key] == 2) {
            mistakes.push_back("key \"" + key + "\" is defined twice");
        }
    }
    return mistakes;
}

/// Describes the entry of the white list, counted from 1, that is not a text or whose text is not a JSON
/// object.
std::string mistakeOfWhitelist(const bson::BSONObj& object) {
    std::vector<std::string> entries;
    const auto nameOf = [](std::size_t place) { return "whitelist entry " + std::to_string(place + 1); };
    try {
        bson::readField(object, "whitelist", entries);
    } catch (const bson::CTypeError& error) {
        return nameOf(std::stoul(error.key())) +
               " is not a text; expected the JSON text of an entry in quotes";
    }
    for (std::size_t place = 0; place < entries.size(); ++place) {
        try {
            bson::fromjson(entries[place]);
        } catch (const bson::CJsonError& error) {
            return nameOf(place) + ": " + error.what();
        }
    }
    return {};
}

std::string mistakeOfField(const bson::BSONObj& object, const bson::CError& error) {
    const auto* wrongType = dynamic_cast<const bson::CTypeError*>(&error);
    const std::vector<std::string> known = TradeInterfaceData::storedKeys();
    if (wrongType == nullptr || std::find(known.begin(), known.end(), wrongType->key()) == known.end()) {
        const std::string mistake = mistakeOfWhitelist(object);
        return mistake.empty() ? error.what() : mistake;
    }
    return std::string(error.what()) + "; expected " + kExpected.at(wrongType->wanted());
}

/// An element is later written under the name in its record. So the element and the record must have the same
/// name, and the name must not be empty.
std::string mistakeOfName(const std::string& tag, const TradeInterfaceData& record) {
    if (record.m_strInterface == tag) return {};
    const std::string found =
        record.m_strInterface.empty() ? "missing or empty" : inQuotes(record.m_strInterface);
    return "m_strInterface is " + found + "; expected " + inQuotes(tag) + ", like the element";
}

/// Returns all mistakes of an interface. Fills the record if there are none.
std::vector<std::string> fillRecord(const QDomElement& element, TradeInterfaceData& record) {
    const std::string text = element.attribute(kDataAttribute).toStdString();
    bson::BSONObj object;
    try {
        object = bson::fromjson(text);
    } catch (const bson::CJsonError& error) {
        return {error.what()};
    }
    std::vector<std::string> mistakes = mistakesOfKeys(object);
    std::string mistake;
    try {
        record.fillFromJson(text);
        mistake = mistakeOfName(element.tagName().toStdString(), record);
    } catch (const bson::CError& error) {
        mistake = mistakeOfField(object, error);
    }
    if (!mistake.empty()) mistakes.push_back(mistake);
    return mistakes;
}

void readInterface(const QDomElement& element, CReading& reading) {
    const std::string name = "interface " + inQuotes(element.tagName().toStdString()) + ": ";
    if (!element.hasAttribute(kDataAttribute) || element.attributes().size() > 1 ||
        !element.firstChildElement().isNull()) {
        return reading.mistake(element, name + "expected the one attribute \"interfacedata\" and no more");
    }
    const auto record = boost::make_shared<TradeInterfaceData>();
    const std::vector<std::string> mistakes = fillRecord(element, *record);
    for (const std::string& mistake : mistakes)
        reading.mistake(element, name + mistake);
    if (mistakes.empty()) reading.interfaces.push_back(record);
}

void readRoot(const QDomElement& root, CReading& reading) {
    if (root.tagName() != kRootTag) {
        return reading.mistake(root, "is a document of " + inQuotes(root.tagName().toStdString()) +
                                         "; expected one of \"settings\"");
    }
    for (QDomElement part = root.firstChildElement(); !part.isNull(); part = part.nextSiblingElement()) {
        if (part.tagName() != kInterfacesTag || !part.previousSiblingElement(kInterfacesTag).isNull()) {
            reading.mistake(part, "unexpected element " + inQuotes(part.tagName().toStdString()) +
                                      "; expected exactly one \"interfaceTrade\"");
            continue;
        }
        for (QDomElement child = part.firstChildElement(); !child.isNull();
             child = child.nextSiblingElement())
            readInterface(child, reading);
    }
}

TradeInterfaceList readText(const std::string& text, CDiagnostics& diagnostics) {
    QDomDocument document;
    QString reason;
    int line = 0;
    CReading reading{diagnostics, {}};
    if (!document.setContent(QByteArray::fromStdString(text), &reason, &line)) {
        diagnostics.add(kSettingsFile, line,
                        "is not XML: " + reason.toStdString() +
                            "; expected <settings> with <interfaceTrade> in it");
    } else {
        readRoot(document.documentElement(), reading);
    }
    return reading.interfaces;
}

/// Whether the record that was read back is the same, and no bytes of its texts had to be replaced.
bool isSameInterface(const TradeInterfaceData& record, const TradeInterfaceData& again) {
    const auto isWhole = [](const boost::shared_ptr<knservice::IData>& entry) {
        return entry == nullptr || entry->toBson().isUtf8();
    };
    return record.toJson() == again.toJson() && record.m_strInterface == again.m_strInterface &&
           record.m_strAccount == again.m_strAccount && record.m_strAccountKey == again.m_strAccountKey &&
           record.m_strStock == again.m_strStock &&
           std::all_of(record.whitelist.begin(), record.whitelist.end(), isWhole);
}

/// Returns how the interfaces that were read back differ; empty if they are the same.
std::string differenceOf(TradeInterfaceList interfaces, const TradeInterfaceList& again) {
    interfaces.remove(nullptr);
    if (interfaces.size() != again.size()) return "an interface has a name that XML cannot contain";
    const auto [found, other] =
        std::mismatch(interfaces.begin(), interfaces.end(), again.begin(),
                      [](const auto& a, const auto& b) { return isSameInterface(*a, *b); });
    if (found == interfaces.end()) return {};
    return "interface " + inQuotes((*found)->m_strInterface) + " would be read back as something else";
}

} // namespace

void readSettings(const std::string& folder, CDeskConfig& config, CDiagnostics& diagnostics) {
    std::string text;
    const EFileRead read = readTextFile(folder + "/" + kSettingsFile, text);
    if (read == EFileRead::Missing) return;
    if (read == EFileRead::Unreadable) {
        diagnostics.add(kSettingsFile, 0, "cannot be read; expected a file, or none");
        return;
    }
    readText(text, diagnostics);
    config.settings = text;
}

utils::KNError saveSettings(const std::string& folder, const std::string& text,
                            const TradeInterfaceList& interfaces) {
    constexpr int kCannotBeReadAgain = 2;
    const std::string path = (std::filesystem::path(folder) / kSettingsFile).string();
    CDiagnostics diagnostics;
    const TradeInterfaceList again = readText(text, diagnostics);
    const std::vector<CDiagnostic> mistakes = diagnostics.take();
    if (!mistakes.empty()) {
        return {kCannotBeReadAgain, path + " is not changed, because the new file could not be read again: " +
                                        mistakes[0].message};
    }
    const std::string difference = differenceOf(interfaces, again);
    if (!difference.empty()) return {kCannotBeReadAgain, path + " is not changed: " + difference};
    return replaceTextFile(std::filesystem::absolute(folder).lexically_normal().string(), kSettingsFile,
                           text);
}

} // namespace desk
